#include "commands/WriteReport.h"

#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

void ReportWritten(Output& output, bool json, const std::string& folder, std::size_t blocks, bool verified)
{
  if (json) {
    Json report{{"output", folder}, {"blocks", blocks}};
    if (verified) report["verified"] = true;
    PrintJson(output, report);
  } else {
    output.Write(folder + ": " + Counted(blocks, "block") + " written" + (verified ? ", read back and equal" : "") +
                 '\n');
  }
}

}  // namespace quilon
