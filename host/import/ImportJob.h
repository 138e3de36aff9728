#pragma once

/// @file
/// What the readers of one job share.

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <QuilonDbConnector/FED_DataDescriptor.h>

#include "import/ElementGroups.h"
#include "import/ReadLogger.h"
#include "import/ResultImport.h"
#include "import/ResultMesh.h"
#include "import/StepMatcher.h"
#include "kinds/UserKindPool.h"
#include "progress/ReadProgress.h"

class FED_DataBlock;
class FED_Database;

namespace quilon::calculix {

/// Scalar quantities: values of result index 10 of a scalar history.
enum ScalarQuantity : int
{
  ScalarTime           = 501,
  ScalarEigenvalue     = 502,
  ScalarFrequency      = 503,
  ScalarBucklingFactor = 504
};

/// Tensors that are averaged at nodes.
enum Quantity : std::size_t
{
  QuantityStress = 0,
  QuantityStrain = 1
};

/// Where the results of one tensor go.
struct TensorKinds
{
  const char* name;     ///< for people
  const char* datKey;   ///< output key of its points in a .dat
  const char* frdName;  ///< data set of the solver's own average in a .frd
  int         average;
  int         solver;  ///< the solver's average where there is one of ours
  int         variance;
  int         error;
  int         count;
  int         elementMean;
  int         points;
};

/// By Quantity.
inline constexpr TensorKinds kTensorKinds[] = {
    {"stress", "S", "STRESS", 521, 522, 550, 551, 552, 561, 582},
    {"strain", "E", "TOSTRAIN", 531, 532, 553, 554, 555, 571, 583},
};

/// What one import tells at its end, gathered over all jobs.
class ImportRecord
{
public:
  void Skip(const std::string& reason, std::size_t rows);
  void Notice(std::string text);
  void AddDeviation(const std::string& elementType, const std::string& quantity, std::size_t nodes, double largest);

  const std::vector<SkippedRows>& Skipped() const noexcept { return report_.skipped; }
  ImportReport                    Take() { return std::move(report_); }

private:
  ImportReport report_;
};

struct ImportedDeck;

/// What a deck and the options say of all jobs of an import.
struct ImportContext
{
  const ImportedDeck* deck = nullptr;  ///< null without a deck
  ElementGroups       groups;
};

/// The files of one job while they are read: its mesh, its results, and what goes where in the database.
///
/// Blocks are noted by result, so that those of a result that turns out broken can be dropped again. Scalars wait until
/// the job is read, because the results of a step share one history.
class ImportJob
{
public:
  /// @param database, options, context, kinds, record borrowed
  /// @param frdPath  for messages; may be empty
  ImportJob(FED_Database& database, const ImportOptions& options, const ImportContext& context, UserKindPool& kinds,
            ImportRecord& record, const std::filesystem::path& frdPath);

  FED_Database&        Database() noexcept { return database_; }
  const ImportOptions& Options() const noexcept { return options_; }
  ImportRecord&        Record() noexcept { return record_; }
  UserKindPool&        Kinds() noexcept { return kinds_; }
  ResultMesh&          Mesh() noexcept { return mesh_; }
  const ImportedDeck*  Deck() const noexcept { return context_.deck; }
  const ElementGroups& Groups() const noexcept { return context_.groups; }
  StepMatcher&         Steps() noexcept { return steps_; }
  ReadLogger&          Logger() noexcept { return logger_; }

  /// @return what a reader calls while it reads the file
  ReadProgress Progress(const std::filesystem::path& path) const;

  /// Completes the mesh from the deck, if there is one, and saves it.
  void SaveMesh();

  /// @param group of elements that a nodal average is over; 0 for all
  /// @return the key of the result's block, noted as written
  FED_DataDescriptor Descriptor(const StepKey& key, int onf, int group = 0);
  /// @return the result's block, noted as written
  FED_DataBlock& Block(const StepKey& key, int onf, std::size_t expectedRecords, int group = 0);

  /// @return whether the result's block was noted as written
  bool HasWritten(const StepKey& key, int onf) const;

  /// @param quantity a ScalarQuantity or a user history
  void SetScalar(const StepKey& key, int quantity, double value);
  /// Writes the scalars of all results before the limit.
  void WriteScalars();

  /// @return blocks that the database had before this job wrote to them
  std::size_t NumOverwritten() const noexcept { return numOverwritten_; }

  /// Remembers that the result has an average of ours.
  void MarkAveraged(const StepKey& key, Quantity quantity);
  bool IsAveraged(const StepKey& key, Quantity quantity) const;

  /// Results from this one on are broken.
  void LimitTo(const StepKey& key);
  bool HasLimit() const noexcept { return limit_.has_value(); }
  bool IsWithin(const StepKey& key) const { return !limit_ || key < *limit_; }
  /// Deletes what was written of results that are broken.
  /// @return the number of results that are whole
  std::size_t DropBroken();

private:
  /// What tells blocks of one result apart: ONF id and group.
  using BlockName = std::pair<int, int>;

  FED_DataDescriptor MakeDescriptor(const StepKey& key, int onf, int group = 0) const;
  void               DropDerived(const StepKey& key, int onf, int group);

  FED_Database&                            database_;
  const ImportOptions&                     options_;
  const ImportContext&                     context_;
  UserKindPool&                            kinds_;
  ImportRecord&                            record_;
  ResultMesh                               mesh_;
  StepMatcher                              steps_;
  ReadLogger                               logger_;
  std::map<StepKey, std::set<BlockName>>   written_;
  std::map<StepKey, std::map<int, double>> scalars_;  // by quantity
  std::set<std::pair<StepKey, Quantity>>   averaged_;
  std::size_t                              numOverwritten_ = 0;
  std::optional<StepKey>                   limit_;
};

}  // namespace quilon::calculix
