#include "text/Failure.h"

#include <system_error>

#include "QuilonUtilities/FED_Failure.h"

namespace quilon {

void Fail(const std::string& message) { throw FED_Failure(message, "|%P|quilon|host"); }

std::string SystemReason(int error)
{
  return error == 0 ? "" : ": " + std::error_code(error, std::generic_category()).message();
}

}  // namespace quilon
