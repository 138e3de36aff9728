#include "import/ImportJob.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "text/Format.h"

namespace quilon {

namespace {

/// A deck of another run, or contact nodes that the solver has moved.
void NoteMoved(const std::vector<ResultMesh::MovedNode>& moved, ImportRecord& record)
{
  constexpr std::size_t kNamed = 5;
  if (moved.empty()) return;
  std::string names;
  for (std::size_t i = 0; i < std::min(kNamed, moved.size()); ++i) {
    char distance[32];
    std::snprintf(distance, sizeof distance, "%.3g", moved[i].distance);
    names += (i == 0 ? "node " : ", node ") + std::to_string(moved[i].id) + " by " + distance;
  }
  if (moved.size() > kNamed) names += ", ...";
  record.Notice("the deck has " + Counted(moved.size(), "node") + " elsewhere than the results: " + names +
                "; the solver's coordinates are kept");
  record.Skip("coordinates of the deck that the results contradict", moved.size());
}

}  // namespace

ImportJob::ImportJob(FED_Database& database, const ImportOptions& options_, const ImportContext& context,
                     UserKindPool& kinds_, ImportRecord& record_, const std::filesystem::path& meshPath)
    : options(options_),
      deck(context.deck),
      groups(context.groups),
      kinds(kinds_),
      record(record_),
      mesh(meshPath),
      blocks(database, options_.iteration)
{}

ReadProgress ImportJob::MakeProgress(const std::filesystem::path& path) const
{
  if (!options.progress) return {};
  return [progress = options.progress, phase = "reading " + path.filename().string()](
             std::uint64_t done, std::uint64_t total) { progress(phase, done, total); };
}

void ImportJob::SaveMesh()
{
  if (deck != nullptr) NoteMoved(mesh.AddDeck(*deck), record);
  mesh.Save(blocks.GetDatabase(), options.iteration);
}

}  // namespace quilon
