#include "commands/WriteReport.h"

#include "terminal/Format.h"
#include "terminal/JsonText.h"
#include "terminal/Output.h"

namespace quilon {

void ReportWritten(Output& output, bool json, const std::string& folder, std::size_t blocks)
{
  if (json)
    output.Write(JsonText(Json{{"output", folder}, {"blocks", blocks}}, 2) + '\n');
  else
    output.Write(folder + ": " + Counted(blocks, "block") + " written\n");
}

}  // namespace quilon
