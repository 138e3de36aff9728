#include "import/ReadLogger.h"

#include <QuilonUtilities/FED_LogMacros.h>

namespace quilon {

void ReadLogger::PrintResultTypeStatus(int reading)
{
  FED_LogMacros::log_msg(FED_LogMacros::LogNotice, "host/calculix/ReadLogger", __LINE__, "|%P|QuilonHost|ReadLogger",
                         "%s results of %s", reading == 1 ? "reading" : "skipping", resultTypeName_.c_str());
}

}  // namespace quilon
