#include "bundled/FED_ColumnDataBlock.h"

FED_ColumnDataBlock::~FED_ColumnDataBlock() = default;
