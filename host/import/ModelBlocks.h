#pragma once

/// @file
/// Sets and materials on their way into a database.

#include <cstddef>
#include <set>
#include <span>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "results/ResultReader.h"

class FED_Database;

namespace quilon {

class ImportRecord;

/// A block with the iteration and the ONF id alone, and the one record by which it is written.
class RecordWriter
{
public:
  /// @param database borrowed
  RecordWriter(FED_Database& database, int iteration, int onf, std::size_t expectedRecords);

  FED_DataRecord& Fields() { return record_.GetDataRecord(); }
  void            Write(int id) { view_.SetRecord(id, record_); }

private:
  FED_IdDataBlock   view_;
  FED_IdDataRecord& record_;
};

/// Writes the sets (600, 601) and materials (602) of an import, whoever tells them, under their places from 1. Who
/// comes first is heard: the deck, or the first job whose reader has some. What others tell is left out, and reported.
class ModelBlocks
{
public:
  /// @param database, record borrowed
  ModelBlocks(FED_Database& database, int iteration, ImportRecord& record)
      : database_(database), iteration_(iteration), record_(record)
  {}

  void AddNodeSets(std::span<const ModelSet> sets) { AddSets(OnfKind::NodeSet, sets); }
  void AddElementSets(std::span<const ModelSet> sets) { AddSets(OnfKind::ElementSet, sets); }
  void AddMaterials(std::span<const ModelMaterial> materials);

private:
  void AddSets(int onf, std::span<const ModelSet> sets);
  bool IsFirst(int onf, std::size_t count, const char* what);

  FED_Database& database_;
  int           iteration_;
  ImportRecord& record_;
  std::set<int> told_;  // kinds
};

}  // namespace quilon
