#include "bundled/OnfStores.h"

#include <utility>

namespace {

thread_local OnfStores* current = nullptr;

}  // namespace

OnfStore::~OnfStore() = default;

OnfStores::~OnfStores() = default;

OnfStores* OnfStores::Set(OnfStores* stores) noexcept { return std::exchange(current, stores); }

OnfStores* OnfStores::Get() noexcept { return current; }
