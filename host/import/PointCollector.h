#pragma once

/// @file
/// Values of integration points, gathered to elements.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "import/StepMatcher.h"
#include "import/TensorKinds.h"
#include "results/ResultReader.h"

namespace quilon {

class EndCheck;
class ImportRecord;
class JobBlocks;
class NodalAverages;
class ResultMesh;
class UserKindPool;
class ImportedDeck;

/// Keeps the points of each element as one record, and of tensors their mean over the element, and hands tensors on to
/// be averaged at nodes. Points of oriented solids are turned into global axes where there is a deck; other points in a
/// local system are kept as a user kind and not averaged.
class PointCollector
{
public:
  /// All borrowed.
  struct Parts
  {
    JobBlocks&          blocks;
    UserKindPool&       kinds;
    ResultMesh&         mesh;
    const ImportedDeck* deck;  ///< null without a deck
    NodalAverages&      averages;
    ImportRecord&       record;
    EndCheck*           endCheck;  ///< null for a file with an end mark
  };

  /// @param path for messages
  PointCollector(std::filesystem::path path, const Parts& parts);

  /// @return false, and rows are not taken, when no user kind is left for the field
  bool Begin(const StepKey& key, const ResultField& field);
  /// @throws FED_Failure for points out of their order
  void Add(const ResultRow& row);
  void End();

private:
  /// Points of the element being read.
  struct Element
  {
    int                 id          = 0;
    std::size_t         numPoints   = 0;
    bool                localSystem = false;
    std::vector<double> values;  // shape [numPoints, values of a row]
  };

  void OpenView(int onf);
  void FinishElement();
  void KeepPoints();
  void KeepLocalPoints();
  void KeepMean();
  bool TurnPoints();

  std::filesystem::path            path_;
  Parts                            parts_;
  StepKey                          key_;       // of the field being read
  std::string                      name_;      // of the field being read
  std::optional<Quantity>          quantity_;  // of the field being read, nothing for other fields
  std::unique_ptr<FED_IdDataBlock> view_;
  FED_IdDataRecord*                record_ = nullptr;
  std::unique_ptr<FED_IdDataBlock> meanView_;   // of tensors
  std::unique_ptr<FED_IdDataBlock> localView_;  // of rows in local systems, once there are any
  Element                          element_;
};

}  // namespace quilon
