#include "text/Failure.h"

#include <filesystem>
#include <new>
#include <system_error>

#include "QuilonUtilities/FED_Failure.h"

namespace quilon {

void Fail(const std::string& message) { throw FED_Failure(message, "|%P|quilon|host"); }

std::string SystemReason(int error)
{
  return error == 0 ? "" : ": " + std::error_code(error, std::generic_category()).message();
}

std::string MessageOf(const std::exception& exception)
{
  if (dynamic_cast<const std::bad_alloc*>(&exception) != nullptr) return "out of memory";
  if (const auto* refused = dynamic_cast<const std::filesystem::filesystem_error*>(&exception))
    return refused->path1().string() + ": " + refused->code().message();
  return exception.what();
}

}  // namespace quilon
