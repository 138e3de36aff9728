#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/NumberOptions.h"
#include "commands/PageArguments.h"
#include "import/OpenedDatabase.h"
#include "progress/Interrupt.h"
#include "quilon_version.h"
#include "report/PageServer.h"
#include "report/Report.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"

namespace quilon {

namespace {

struct Options
{
  PageArguments page;
  int           port = 0;
};

#ifdef QUILON_HAS_SERVER
void Run(const Options& options, CommandContext& context)
{
  if (options.port < 0 || options.port > 65535)
    Fail("--port is " + std::to_string(options.port) + ", expected 1 to 65535, or 0 for any");
  OpenedDatabase    database(options.page.database, context.console);
  const PageRequest request = MakePageRequest(options.page, database.Get());
  const std::string program = std::string("quilon ") + kQuilonVersion;
  PageSource        source(request, context.console);
  Json              header = MakePageHeader(request, source, program, context.console);
  header["base"]           = "blob/";
  const PageFrame frame    = MakePageFrame(FileNameOf(options.page.database), program, header, "connect-src 'self'; ");
  PageServer      server(source, frame.begin + frame.end, options.port);
  context.console.ClearProgress();
  context.output.Write(server.GetAddress() + '\n');
  context.output.Flush();
  context.console.Note("Ctrl-C ends");
  server.Run(IsInterrupted);
  ThrowIfInterrupted();
}
#else
void Run(const Options&, CommandContext&)
{
  Fail("this quilon was built without cpp-httplib, which 'serve' needs; 'quilon report' writes a page as a file");
}
#endif

}  // namespace

CommandFunction DefineServe(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddPageArguments(app, options->page);
  AddIntegerOption(app, "--port", options->port, "Port of this machine (default: any that is free)");
  app.footer(
      "Prints an address for a browser on this machine and serves the page of 'quilon\n"
      "report' there, of a database of any size: values are read when the page asks\n"
      "for them. The address holds a token; others get no answer. Ctrl-C ends it.\n"
      "\n"
      "Examples:\n"
      "  quilon serve bracket.fed\n"
      "  quilon serve bracket.fed stress,displacement --port 8080");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
