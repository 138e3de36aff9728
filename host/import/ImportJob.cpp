#include "import/ImportJob.h"

#include <cstdint>
#include <string>

namespace quilon {

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
  if (deck != nullptr) mesh.AddDeck(*deck);
  mesh.Save(blocks.GetDatabase(), options.iteration);
}

}  // namespace quilon
