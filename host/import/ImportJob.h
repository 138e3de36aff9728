#pragma once

/// @file
/// One job while its files are read.

#include <filesystem>
#include <optional>

#include "import/ElementGroups.h"
#include "import/ImportOptions.h"
#include "import/ImportRecord.h"
#include "import/JobBlocks.h"
#include "import/ReadLogger.h"
#include "import/ResultMesh.h"
#include "import/StepMatcher.h"
#include "kinds/UserKindPool.h"
#include "progress/ReadProgress.h"
#include "results/ResultReader.h"

class FED_Database;

namespace quilon {

class ModelBlocks;
class ImportedDeck;

/// What a deck and the options say of all jobs of an import.
struct ImportContext
{
  const ImportedDeck* deck = nullptr;  ///< null without a deck
  ElementGroups       groups;
  ModelBlocks&        model;            ///< sets and materials, whoever tells them
  bool                isAlone = false;  ///< there is one job
  /// Of a part of a job: the mesh of the job; null: it is read whole.
  const ResultMesh* wholeMesh = nullptr;
};

/// The mesh, the results and the blocks of one job, and what its files share with those of other jobs.
struct ImportJob
{
  /// @param database, options, context, kinds, record, files borrowed; the job may have no file at all
  ImportJob(FED_Database& database, const ImportOptions& options, const ImportContext& context, UserKindPool& kinds,
            ImportRecord& record, const ResultJob& files);

  /// @return what a reader calls while it reads the file
  ReadProgress MakeProgress(const std::filesystem::path& path) const;

  /// @return 1 where the deck says that the geometry of the result is the deformed one, a NaN where a deck does not
  ///         have the step, as when it goes on from a restart file; nothing where it is not, or without a deck
  std::optional<double> FindLargeDisplacements(const StepKey& key) const;

  bool IsPart() const noexcept { return wholeMesh != nullptr; }
  bool HasNode(int id) const { return (IsPart() ? *wholeMesh : mesh).HasNode(id); }

  /// Completes the mesh from the deck, if there is one, and saves it. Notes the nodes that the deck has elsewhere.
  /// @throws RefusedImport for a node that is far off and that the deck does not let the solver move
  void SaveMesh();

  const ResultJob&     files;
  const ImportOptions& options;
  const ImportedDeck*  deck;  ///< null without a deck
  const ElementGroups& groups;
  ModelBlocks&         model;
  UserKindPool&        kinds;
  ImportRecord&        record;
  bool                 isAlone;    ///< there is no other job
  const ResultMesh*    wholeMesh;  ///< of a part of a job; null: the job is read whole
  ResultMesh           mesh;
  StepMatcher          steps;
  JobBlocks            blocks;
  ReadLogger           logger;
};

}  // namespace quilon
