#pragma once

/// @file
/// Our nodal averages beside the program's own.

#include <cstddef>
#include <map>
#include <string>

#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "import/TensorKinds.h"

namespace quilon {

class ImportRecord;
class ResultMesh;

/// Compares the averages of one tensor in one result at every node all of whose elements we have averaged.
class AverageComparison
{
public:
  /// @param average, count, pool, mesh borrowed
  AverageComparison(Quantity quantity, const FED_DataBlock& average, const FED_DataBlock& count,
                    const FED_IdMapsPool& pool, ResultMesh& mesh);

  /// @param theirs shape [6]: the program's own average at the node
  void Compare(int id, const double* theirs);

  /// Reports the largest deviations by element type, as fractions of the field's largest magnitude.
  void Report(ImportRecord& record) const;

private:
  struct Deviation
  {
    std::size_t nodes   = 0;
    double      largest = 0.0;
  };

  Quantity                         quantity_;
  FED_ConstIdDataBlock             averages_;
  FED_ConstIdDataBlock             counts_;
  ResultMesh&                      mesh_;
  double                           largestMagnitude_ = 0.0;
  std::map<std::string, Deviation> byElementType_;
};

}  // namespace quilon
