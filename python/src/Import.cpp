#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <pybind11/stl.h>

#include "Database.h"
#include "database/DatabaseFolder.h"
#include "database/Publication.h"
#include "import/ResultImport.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "Reports.h"
#include "selection/KindRequests.h"
#include "text/Failure.h"

namespace quilon::python {

namespace {

struct Outcome
{
  std::size_t  blocks = 0;
  ImportReport report;
};

Outcome Import(const std::vector<std::filesystem::path>& files, const std::string& output, ImportOptions options,
               const std::optional<std::string>& request, Listener& listener)
{
  RequireDatabaseName(output);
  Publication  publication(output);
  KindRequests requests = KindRequests::Nothing();
  if (request) {
    requests         = KindRequests(*request, KindTable());
    options.requests = &requests;
  }
  options.progress = [&](const std::string& phase, std::uint64_t done, std::uint64_t total) {
    ThrowIfInterrupted();
    listener.Progress(phase, done, total);
  };
  options.deck.progress = [&](std::uint64_t done, std::uint64_t total) {
    ThrowIfInterrupted();
    listener.Progress("reading deck", done, total);
  };
  Outcome outcome;
  outcome.report = ImportResults(files, publication.Target(), options);
  if (publication.Target().GetDataDescriptors(FED_DataDescriptorPattern()).empty())
    Fail(files.front().string() + ": no results, nothing is written");
  outcome.blocks = publication.Publish();
  return outcome;
}

py::dict ImportFiles(const std::vector<std::string>& files, const std::string& output, const std::string& border,
                     const std::vector<std::string>& sets, int iteration, bool strict,
                     const std::optional<std::string>& request, const std::string& groups, bool allowOutside,
                     py::object progress)
{
  ImportOptions options;
  options.iteration         = iteration;
  options.strict            = strict;
  options.groups            = groups;
  options.deck.allowOutside = allowOutside;
  if (border == "material")
    options.averageBy = {AverageBy::Material, {}};
  else if (border == "section")
    options.averageBy = {AverageBy::Section, {}};
  else if (border == "sets")
    options.averageBy = {AverageBy::Sets, sets};

  CallListener  listener(std::move(progress));
  const Outcome outcome = Work([&] {
    return Import({files.begin(), files.end()}, output, std::move(options), request, listener);
  });

  py::list deviations, skipped, notices;
  for (const AverageDeviation& deviation : outcome.report.deviations)
    deviations.append(py::make_tuple(deviation.elementType, deviation.quantity, deviation.nodes, deviation.largest));
  for (const SkippedRows& rows : outcome.report.skipped) skipped.append(py::make_tuple(TextOf(rows.reason), rows.rows));
  for (const std::string& notice : outcome.report.notices) notices.append(TextOf(notice));
  py::dict result;
  result["blocks"]     = outcome.blocks;
  result["deviations"] = deviations;
  result["skipped"]    = skipped;
  result["notices"]    = notices;
  return result;
}

}  // namespace

void DefineImport(py::module_& module) { module.def("import_results", &ImportFiles); }

}  // namespace quilon::python
