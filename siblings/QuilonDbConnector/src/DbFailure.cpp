#include "DbFailure.h"

#include "QuilonUtilities/FED_Failure.h"

void ThrowBlockFailure(const FED_DataDescriptor& descriptor, const std::string& text, const char* tag)
{
  throw FED_Failure("block " + descriptor.ToString() + ": " + text, tag);
}
