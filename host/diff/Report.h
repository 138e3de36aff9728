#pragma once

/// @file
/// The outcome of a comparison in words.

#include <cstddef>
#include <string>
#include <vector>

#include "diff/DatabaseComparison.h"
#include "selection/KindTable.h"

namespace quilon::diff {

/// A block as people know it.
struct BlockName
{
  std::string block;  ///< the selection of it: "521@it=0,lc=1"
  std::string kind;
  std::string step;   ///< its keys but for the layer: "it=0,lc=1"; "-" without any
  std::string layer;  ///< "-" without one
};

struct DifferenceRow
{
  BlockName   name;
  std::string id;  ///< "-" for the block as a whole
  std::string component;
  std::string a;  ///< "-" where there is none
  std::string b;
  std::string rule;
  double      excess   = 0.0;
  double      distance = 0.0;
};

/// One of what may be millions: its block is named once.
struct NanRow
{
  std::size_t block;  ///< position in Report::all
  int         id;
  std::string component;
  NanSide     side;

  /// @return "A", "B" or "both"
  const char* GetSide() const noexcept;
};

struct NormRow
{
  BlockName  name;
  FieldNorms norms;
  bool       isNegated   = false;
  bool       isDifferent = false;
};

struct BlockRow
{
  BlockName                  name;
  BlockOutcome::Status       status           = BlockOutcome::Same;
  std::size_t                records          = 0;
  std::size_t                differingRecords = 0;  ///< without a counterpart, too
  std::vector<DifferenceRow> worst;
};

struct Report
{
  std::string a;  ///< names of the databases
  std::string b;
  bool        isSame = true;

  std::size_t blocks            = 0;  ///< in both databases
  std::size_t differingBlocks   = 0;  ///< of these
  std::size_t missingBlocks     = 0;  ///< in A only
  std::size_t additionalBlocks  = 0;  ///< in B only
  std::size_t ignoredBlocks     = 0;
  std::size_t records           = 0;  ///< compared
  std::size_t differingRecords  = 0;  ///< of these
  std::size_t missingRecords    = 0;  ///< in A only, of blocks in both
  std::size_t additionalRecords = 0;  ///< in B only, of blocks in both
  std::size_t values            = 0;  ///< floating-point ones, compared
  std::size_t differingValues   = 0;

  std::vector<DifferenceRow> worst;  ///< the worst first, within both limits
  std::vector<NanRow>        nans;   ///< every one that was let pass
  std::vector<NormRow>       norms;  ///< of all blocks with floating-point values
  std::vector<BlockRow>      all;    ///< every block

  /// @return one line
  std::string Summarize() const;
};

/// @param info its two limits bound what `worst` holds
Report MakeReport(const DatabaseOutcome& outcome, const ComparedDatabase& first, const ComparedDatabase& second,
                  const std::string& firstName, const std::string& secondName,
                  const QuilonDataBlockDiff::CompareInfo& info);

/// @return the report as a JUnit file, a test case for each block
std::string ToJUnit(const Report& report);

}  // namespace quilon::diff
