#pragma once

/// @file
/// Results of a .frd into a database.

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "calculix/FrdReader.h"
#include "FEMResultFile.h"
#include "import/ImportJob.h"

namespace quilon::calculix {

/// Reads the mesh, the list of results and the data sets of a .frd.
///
/// Data sets that the catalogue knows become blocks of their kind, others user kinds of their name. A value that the
/// job's .dat has with more digits stays; one that does not round to the .frd's, as in axes of its own, is replaced.
/// The solver's own nodal stress and strain go to 521 and 531, or, in a result that has an average of ours, to 522 and
/// 532; the two are then compared at every node all of whose elements we have averaged.
class FrdResultFile : public FEMResultFile, private FrdSink
{
public:
  enum Pass : int
  {
    PassMesh    = 1,  ///< mesh and list of results only: a .dat is read between
    PassResults = 2,  ///< data sets of a file whose mesh is known
    PassAll     = 3
  };

  /// @param job borrowed
  FrdResultFile(const std::filesystem::path& path, Pass pass, ImportJob& job);

  /// @throws FED_Failure as ReadFrd() does
  void Read() override;

  /// @return the result that was being read when Read() failed, nothing when none had begun
  const std::optional<StepKey>& Current() const noexcept { return current_; }

private:
  /// Our averages beside the solver's in the data set being read.
  struct Comparison
  {
    Comparison(Quantity quantity, const FED_DataBlock& average, const FED_DataBlock& count, const FED_IdMapsPool& pool);

    struct Deviation
    {
      std::size_t nodes   = 0;
      double      largest = 0.0;
    };

    Quantity                         quantity;
    FED_ConstIdDataBlock             averages;
    FED_ConstIdDataBlock             counts;
    double                           largestMagnitude = 0.0;
    std::map<std::string, Deviation> byElementType;
  };

  void OnNodes(std::span<const int> ids, std::span<const double> coordinates) override;
  void OnElements(std::span<const FrdElement> elements) override;
  void OnDatasetBegin(const FrdDataset& dataset) override;
  void OnRows(const FrdDataset& dataset, std::span<const int> ids, std::span<const double> values,
              std::int64_t line) override;
  void OnDatasetEnd(const FrdDataset& dataset) override;

  void SaveMesh();
  void SetResultScalars(const StepKey& key, const FrdDataset& dataset);
  int  FindKind(const StepKey& key, const FrdDataset& dataset);
  void BeginComparison(const StepKey& key, const FrdDataset& dataset);
  void Compare(int id, const double* theirs);
  bool HasMoreDigits(int id, const double* rounded, std::size_t numComponents) const;
  void Skip(const std::string& reason) { skipReason_ = reason; }

  std::filesystem::path            path_;
  ImportJob&                       job_;
  bool                             meshSaved_ = false;
  std::optional<StepKey>           current_;
  std::set<std::string>            names_;            // data sets of the current result
  std::string                      skipReason_;       // of the current data set, empty when it is read
  std::unique_ptr<FED_IdDataBlock> view_;             // of the current data set, null when it is not read
  bool                             isInDat_ = false;  // the block of the current data set has rows of the .dat
  FED_IdDataRecord*                record_  = nullptr;
  std::vector<double>              list_;
  std::unique_ptr<Comparison>      comparison_;
};

}  // namespace quilon::calculix
