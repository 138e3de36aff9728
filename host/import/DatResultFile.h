#pragma once

/// @file
/// Results of a .dat into a database.

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "calculix/DatReader.h"
#include "FEM_AvgField.h"
#include "FEM_AvgUtil.h"
#include "FEMResultFile.h"
#include "import/ImportJob.h"

namespace quilon::calculix {

/// Reads the blocks of a .dat.
///
/// Stresses and strains of integration points are kept as element records, and so is their mean over the element's
/// points. Extrapolated to the element's nodes, as ExtrapolationRule says, they are averaged at the nodes: mean,
/// variance, count and error are written per result, and once more for every group of elements. An element that several
/// blocks of a result print counts once. Points of oriented solids are turned into global axes where the job has a
/// deck; other points in a local system are kept as a user kind and not averaged, and so are vectors of nodes with axes
/// of their own.
class DatResultFile : public FEMResultFile, private DatSink
{
public:
  /// @param job borrowed; its mesh and its list of results are those of the job's .frd, or empty
  DatResultFile(const std::filesystem::path& path, ImportJob& job);

  /// @throws FED_Failure as ReadDat() does, and for a block that belongs to no result of the job
  void Read() override;

  /// @return the result that was being read when Read() failed, nothing when none had begun
  const std::optional<StepKey>& Current() const noexcept { return current_; }

private:
  /// Nodal averages of one tensor in the current result.
  struct Average
  {
    FEM_AvgField<int, FEM_AvgUtil::AvgData<6>, 6>  sums;
    FEM_AvgField<int, FEM_AvgUtil::StatData<6>, 6> statistics;
  };

  /// By group of elements; 0 for all.
  using Averages = std::map<int, Average>;

  /// Points of the element being read.
  struct Element
  {
    int                 id          = 0;
    std::size_t         numPoints   = 0;
    bool                localSystem = false;
    std::vector<double> values;  // shape [numPoints, values of a row]
  };

  void OnModes(std::span<const DatMode> modes) override;
  void OnBlockBegin(const DatBlock& block) override;
  void OnRows(const DatBlock& block, std::span<const DatRow> rows) override;
  void OnBlockEnd(const DatBlock& block) override;
  void OnSkipped(const std::string& reason, std::size_t rows, std::int64_t line) override;

  [[noreturn]] void Fail(std::int64_t line, const std::string& message) const;

  void BeginResult(const StepKey& key);
  void FinishResult();
  void OpenView(int onf);
  void OpenNodeBlock(const DatBlock& block);
  void OpenElementBlock(const DatBlock& block);
  void OpenPointBlock(const DatBlock& block);

  void WriteRow(const DatRow& row);
  void KeepLocalRow(const DatRow& row);
  bool OpenLocalView(UserHundred hundred, const std::string& key);
  void WriteTotals(const DatBlock& block, const DatRow& row);
  void AddPoint(const DatRow& row);
  void FinishElement();
  void KeepPoints();
  bool TurnPoints();
  void AverageElement();
  void AddToAverage(Average& average, std::span<const int> nodes) const;
  void CountPoints(int frdType);
  void CheckEnd() const;

  void SaveAverages(Quantity quantity, int group, const Average& average);
  void SaveCounts(Quantity quantity, int group, const Average& average);
  void SaveError(Quantity quantity, int group, const Average& average);

  std::filesystem::path  path_;
  ImportJob&             job_;
  std::optional<StepKey> current_;
  std::size_t            resultNumber_ = 0;
  std::size_t            numBlocks_    = 0;  // of the current result
  std::size_t            numExpected_  = 0;  // blocks of the result before, if that is of the same step
  Averages               averages_[2];       // by Quantity
  std::size_t            partialNodes_ = 0;  // averages over some of a node's elements

  // The block being read.
  DatBlock                         block_;
  bool                             isRead_ = false;
  std::string                      skipReason_;  // of its rows when it is not read
  std::optional<Quantity>          quantity_;    // of its points
  std::unique_ptr<FED_IdDataBlock> view_;
  FED_IdDataRecord*                record_  = nullptr;
  std::size_t                      numRows_ = 0;
  Element                          element_;
  std::unique_ptr<FED_IdDataBlock> meanView_;   // of tensors
  std::unique_ptr<FED_IdDataBlock> localView_;  // of rows in local systems, once there are any
  std::vector<double>              nodal_;
  std::vector<double>              list_;

  // What tells a whole file from one that was cut.
  std::map<std::pair<std::string, std::string>, std::pair<std::size_t, std::int64_t>> rowsOfBlock_;
  std::map<int, std::set<std::size_t>>                                                pointsOfType_;
  std::string  cutShort_;  // what the latest block lacks, empty when it is whole
  std::int64_t cutLine_ = 0;
};

}  // namespace quilon::calculix
