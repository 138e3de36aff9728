#include "bundled/OnfFileLayer.h"

#include <atomic>

#include "bundled/FED_LockFileLayer.h"

namespace {

// Databases may be opened in any thread.
std::atomic<FED_FileLayer*> current = nullptr;

}  // namespace

FED_FileLayer* OnfFileLayer::Set(FED_FileLayer* files) noexcept { return current.exchange(files); }

FED_FileLayer& OnfFileLayer::Get() noexcept
{
  static FED_LockFileLayer plain;
  FED_FileLayer* const     files = current;
  return files != nullptr ? *files : plain;
}
