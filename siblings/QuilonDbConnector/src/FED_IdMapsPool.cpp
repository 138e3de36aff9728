#include "QuilonDbConnector/FED_IdMapsPool.h"

FED_IdMapsPool::~FED_IdMapsPool() = default;
