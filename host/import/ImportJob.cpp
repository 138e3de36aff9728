#include "import/ImportJob.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "import/DeckImporter.h"
#include "text/Format.h"

namespace quilon {

namespace {

std::string FormatLength(double length)
{
  char text[32];
  std::snprintf(text, sizeof text, "%.3g", length);
  return text;
}

/// The solver moves nodes of contact and ties, no others: one that nothing ties and that is far off is of another run.
/// @param size  of the model
/// @param limit as a fraction of it
void RefuseStrangers(const std::vector<ResultMesh::MovedNode>& moved, const InputDeck& deck, double size, double limit)
{
  std::set<int> tied;
  for (const InputTiedNodes& one : deck.TiedNodes()) tied.insert(one.nodes.begin(), one.nodes.end());
  for (const ResultMesh::MovedNode& node : moved) {
    if (node.distance <= limit * size || tied.contains(node.id)) continue;
    throw RefusedImport("the files are not of one run, the deck has node " + std::to_string(node.id) +
                            " elsewhere than the results, by " + FormatLength(node.distance) + " of a model of " +
                            FormatLength(size) + ", and nothing that lets the solver move it; expected at most " +
                            FormatLength(limit) + " of the model, which --max-deviation sets",
                        "|%P|QuilonHost|ImportJob");
  }
}

/// A deck of another run, or contact nodes that the solver has moved.
void NoteMoved(const std::vector<ResultMesh::MovedNode>& moved, ImportRecord& record)
{
  constexpr std::size_t kNamed = 5;
  if (moved.empty()) return;
  std::string names;
  for (std::size_t i = 0; i < std::min(kNamed, moved.size()); ++i)
    names += (i == 0 ? "node " : ", node ") + std::to_string(moved[i].id) + " by " + FormatLength(moved[i].distance);
  if (moved.size() > kNamed) names += ", ...";
  record.Notice("the deck has " + Counted(moved.size(), "node") + " elsewhere than the results: " + names +
                "; the solver's coordinates are kept");
  record.Skip("coordinates of the deck that the results contradict", moved.size());
}

}  // namespace

ImportJob::ImportJob(FED_Database& database, const ImportOptions& options_, const ImportContext& context,
                     UserKindPool& kinds_, ImportRecord& record_, const ResultJob& files_)
    : files(files_),
      options(options_),
      deck(context.deck),
      groups(context.groups),
      model(context.model),
      kinds(kinds_),
      record(record_),
      isAlone(context.isAlone),
      wholeMesh(context.wholeMesh),
      mesh(files.results ? files.results->Path() : std::filesystem::path()),
      blocks(database, options_.iteration)
{}

ReadProgress ImportJob::MakeProgress(const std::filesystem::path& path) const
{
  if (!options.progress) return {};
  return [progress = options.progress, phase = "reading " + path.filename().string()](
             std::uint64_t done, std::uint64_t total) { progress(phase, done, total); };
}

std::optional<double> ImportJob::FindLargeDisplacements(const StepKey& key) const
{
  if (deck == nullptr || key.analysis != AnalysisTime) return std::nullopt;
  const std::optional<bool> has = (*deck)->HasLargeDisplacements(key.loadCase);
  if (!has) return std::numeric_limits<double>::quiet_NaN();
  return *has ? std::optional<double>(1.0) : std::nullopt;
}

void ImportJob::SaveMesh()
{
  if (deck != nullptr) {
    const std::vector<ResultMesh::MovedNode> moved = mesh.AddDeck(*deck);
    RefuseStrangers(moved, **deck, mesh.Size(), options.maxDeviation);
    NoteMoved(moved, record);
  }
  mesh.Save(blocks.GetDatabase(), options.iteration);
}

}  // namespace quilon
