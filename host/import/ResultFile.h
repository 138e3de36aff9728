#pragma once

/// @file
/// Results of one file into a database.

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "FEMResultFile.h"
#include "import/AverageComparison.h"
#include "import/EndCheck.h"
#include "import/ImportJob.h"
#include "import/NodalAverages.h"
#include "import/PointCollector.h"
#include "import/StepMatcher.h"
#include "import/ValueComparison.h"
#include "results/ResultReader.h"

namespace quilon {

/// Reads the mesh, the list of results and the fields of one file of a job, whoever wrote it.
///
/// Fields that the catalogue knows become blocks of their kind, others user kinds of their name. Of fields that name
/// their step, a value that the job's prints have with more digits stays; one that does not round to it, as in axes of
/// its own, is replaced. The program's own nodal stress and strain go to 521 and 531, or, in a result that has an
/// average of ours, to 522 and 532; the two are then compared. Vectors of nodes with axes of their own are kept apart.
class ResultFile : public FEMResultFile, private ResultSink
{
public:
  enum Pass : int
  {
    PassMesh    = 1,  ///< mesh and list of results only: the job's prints are read between
    PassResults = 2,  ///< fields of a file whose mesh is known
    PassAll     = 3,
    PassSteps   = 4,  ///< list of results only, of a file whose job has its mesh elsewhere
    PassHeads   = 5   ///< all but the fields' rows: kinds are allotted and scalars are set
  };

  /// A field that is read by itself.
  struct Head
  {
    FieldMark  mark;
    StepKey    key;   ///< of its result
    ResultStep step;  ///< as the file has it
  };

  /// @param reader, job borrowed
  ResultFile(const ResultReader& reader, Pass pass, ImportJob& job);

  /// @throws FED_Failure as the reader does, and for a field that belongs to no result of the job
  void Read() override;

  /// Reads the file as PassHeads says, of a job whose only file it is.
  /// @return its fields in order; nothing where they cannot be read one by one
  /// @throws FED_Failure as Read() does
  std::vector<Head> ReadHeads();

  /// Reads one field more, with PassResults: of the results in their order.
  void ReadField(const FieldMark& mark);

  /// @return the result from which on nothing is whole when Read() failed, nothing when none had begun
  const std::optional<StepKey>& FirstBroken() const noexcept
  {
    if (behindLast_) return behindLast_;
    return endCheck_ && endCheck_->FirstMissing() ? endCheck_->FirstMissing() : current_;
  }

  /// @return whether a result is whole before that one
  bool HasWhole() const noexcept { return hasWhole_ || behindLast_; }

private:
  void OnNodes(std::span<const int> ids, std::span<const double> coordinates) override;
  void OnElements(std::span<const MeshElement> elements) override;
  void OnNodeSets(std::span<const ModelSet> sets) override;
  void OnElementSets(std::span<const ModelSet> sets) override;
  void OnMaterials(std::span<const ModelMaterial> materials) override;
  void OnSteps(std::span<const ResultStep> steps) override;
  void OnModes(std::span<const ResultMode> modes) override;
  bool OnFieldBegin(const ResultField& field) override;
  void OnRows(const ResultField& field, std::span<const ResultRow> rows) override;
  void OnFieldEnd(const ResultField& field) override;
  void OnCutBehindField() override;
  void OnSkipped(const std::string& reason, std::size_t rows) override;
  bool HasNode(int id) const override { return job_.HasNode(id); }

  void SaveMesh();
  void BeginResult(const StepKey& key);
  bool BeginListedField(const ResultField& field);
  bool BeginPrintedField(const ResultField& field);
  bool BeginMatchedField(const ResultField& field, const StepMatcher::Match& match);
  bool CheckRepeated(const ResultField& field, std::span<const ResultRow> rows);
  void SetResultScalars(const StepKey& key, const ResultStep& step);
  void OpenField(const ResultField& field);
  void OpenView(int onf, bool isList);
  int  FindKind(const ResultField& field);
  void Skip(const std::string& reason) { skipReason_ = reason; }

  void ReadNodeRows(const ResultField& field, std::span<const ResultRow> rows);
  void ReadElementRows(std::span<const ResultRow> rows);
  void WriteRow(const ResultRow& row);
  void KeepLocalRow(const ResultField& field, const ResultRow& row);
  void WriteTotals(const ResultField& field, const ResultRow& row);
  bool IsInPrints(const ResultRow& rounded);

  const ResultReader&                               reader_;
  ImportJob&                                        job_;
  bool                                              meshSaved_ = false;
  NodalAverages                                     averages_;
  std::unique_ptr<EndCheck>                         endCheck_;  // null for a file with an end mark
  PointCollector                                    points_;
  std::optional<StepKey>                            current_;
  bool                                              hasWhole_ = false;  // another result came before the current one
  std::map<std::string, std::vector<std::uint64_t>> prints_;  // of rows by identity and batch, of the current result
  std::set<std::string>                             names_;   // fields of the current result that name their step
  std::set<std::string>                             former_;  // those of the result before it in the same step
  std::optional<StepKey> behindLast_;                         // of a file that was cut behind a result that is whole
  std::vector<Head>      heads_;                              // without marks

  // The field being read.
  bool                               isListed_ = false;  // it names its step
  bool                               isRead_   = false;
  std::string                        skipReason_;  // of its rows when they are not read
  std::optional<StepMatcher::Match>  repeated_;    // it repeats a field of its result: its rows tell what it is
  std::size_t                        batch_ = 0;   // of its rows
  std::unique_ptr<FED_IdDataBlock>   view_;
  FED_IdDataRecord*                  record_ = nullptr;  // of a list
  std::unique_ptr<FED_IdDataBlock>   localView_;         // of rows in local systems, once there are any
  std::unique_ptr<AverageComparison> comparison_;
  std::unique_ptr<ValueComparison>   values_;  // null unless its block has rows of the prints
  std::vector<double>                list_;
};

}  // namespace quilon
