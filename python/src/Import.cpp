#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <pybind11/stl.h>

#include "database/DatabaseFolder.h"
#include "import/DatabaseImport.h"
#include "Reports.h"
#include "Text.h"
#include "Work.h"

namespace quilon::python {

namespace {

py::dict ImportFiles(const std::vector<std::string>& files, const std::string& output, const std::string& border,
                     const std::vector<std::string>& sets, int iteration, bool strict,
                     const std::optional<std::string>& request, const std::string& groups, bool allowOutside,
                     const std::string& former, py::object progress)
{
  CallListener          listener(std::move(progress));
  DatabaseImportOptions asked;
  asked.program = "quilon " QUILON_VERSION;
  asked.request = request;
  if (former == "replace") asked.former = FormerResults::Replaced;
  if (former == "keep") asked.former = FormerResults::Kept;
  ImportOptions& options    = asked.import;
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

  options.progress = [&](const std::string& phase, std::uint64_t done, std::uint64_t total) {
    ThrowIfInterrupted();
    listener.Progress(phase, done, total, "B");
  };
  options.deck.progress = [&](std::uint64_t done, std::uint64_t total) {
    ThrowIfInterrupted();
    listener.Progress("reading deck", done, total, "B");
  };
  const DatabaseImportReport outcome = Work([&] {
    RequireDatabaseName(output);
    return ImportIntoDatabase({files.begin(), files.end()}, output, asked, {}, listener);
  });

  py::list deviations, skipped, notices;
  for (const AverageDeviation& deviation : outcome.results.deviations)
    deviations.append(py::make_tuple(deviation.elementType, deviation.quantity, deviation.nodes, deviation.largest));
  for (const SkippedRows& rows : outcome.results.skipped)
    skipped.append(py::make_tuple(TextOf(rows.reason), rows.rows));
  for (const std::string& notice : outcome.results.notices) notices.append(TextOf(notice));
  py::dict result;
  result["blocks"]     = outcome.blocks;
  result["unchanged"]  = outcome.isUnchanged;
  result["replaced"]   = outcome.numReplaced;
  result["removed"]    = outcome.gone.size();
  result["deviations"] = deviations;
  result["skipped"]    = skipped;
  result["notices"]    = notices;
  return result;
}

}  // namespace

void DefineImport(py::module_& module) { module.def("import_results", &ImportFiles); }

}  // namespace quilon::python
