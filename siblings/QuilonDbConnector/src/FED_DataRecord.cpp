#include "QuilonDbConnector/FED_DataRecord.h"

FED_ConstDataRecord::~FED_ConstDataRecord() = default;

FED_DataRecord::~FED_DataRecord() = default;
