#include "text/Failure.h"

#include "QuilonUtilities/FED_Failure.h"

namespace quilon {

void Fail(const std::string& message) { throw FED_Failure(message, "|%P|quilon|host"); }

}  // namespace quilon
