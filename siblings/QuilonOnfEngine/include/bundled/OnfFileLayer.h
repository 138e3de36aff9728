#pragma once

/// @file
/// How ONF text reaches its files.

#include "quilon_language.h"

#include "quilon_contract_export.h"

class FED_FileLayer;

/// Text databases and files are made by code that knows nothing of file layers, so the layer is the process's.
namespace OnfFileLayer {

/// From now on what is opened reaches its files through `files`; null: the operating system's. What is open keeps the
/// layer that it was made with.
/// @param files borrowed
/// @return the former one, null when it was the operating system's
QUILON_ONF_ENGINE_API FED_FileLayer* Set(FED_FileLayer* files) noexcept;

/// @return the layer in force
QUILON_ONF_ENGINE_API FED_FileLayer& Get() noexcept;

}  // namespace OnfFileLayer
