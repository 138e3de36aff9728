#include "bundled/FED_ColumnDataBlock.h"

FED_HeldChunk::~FED_HeldChunk() = default;

FED_ColumnDataBlock::~FED_ColumnDataBlock() = default;
