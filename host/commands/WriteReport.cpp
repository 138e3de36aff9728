#include "commands/WriteReport.h"

#include "Format.h"
#include "JsonText.h"
#include "Output.h"

namespace quilon {

void ReportWritten(Output& output, bool json, const std::string& folder, std::size_t blocks)
{
  if (json)
    output.Write(JsonText(Json{{"output", folder}, {"blocks", blocks}}, 2) + '\n');
  else
    output.Write(folder + ": " + Counted(blocks, "block") + " written\n");
}

}  // namespace quilon
