#pragma once

/// @file
/// The outcome of a comparison in words.

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "diff/DatabaseComparison.h"
#include "kinds/KindTable.h"

namespace quilon::diff {

/// A block as people know it.
struct BlockName
{
  std::string block;  ///< the selection of it: "521@it=0,lc=1"
  std::string kind;
  std::string step;   ///< its keys but for the layer: "it=0,lc=1"; "-" without any
  std::string layer;  ///< "-" without one
};

/// Stands for a number that the deck did not state, such as the density of a material.
struct NotStated
{};

/// A value as it is told.
using ReportedValue = std::variant<std::monostate,  // there is none
                                   NotStated, int, float, double, std::string>;

/// @return the text for people and tables: "-" where there is no value, texts in quotation marks
std::string ToText(const ReportedValue& value);

struct DifferenceRow
{
  BlockName          name;
  std::optional<int> id;
  std::string        component;  ///< empty for the record as a whole
  ReportedValue      a;
  ReportedValue      b;
  std::string        rule;
  double             excess   = 0.0;  ///< how many times what is allowed
  double             distance = 0.0;  ///< |a - b|
};

/// A block that one database alone has.
struct OneSidedRow
{
  BlockName   name;
  bool        isSecond = false;  ///< whether B has it
  std::size_t records  = 0;
};

/// The worst difference of one component of a block.
struct ComponentRow
{
  DifferenceRow worst;
  std::size_t   differingValues = 0;
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
  std::size_t                differingRecords = 0;      ///< without a counterpart, too
  bool                       isMissingIgnored = false;  ///< one database alone has it, and that is no difference
  std::vector<DifferenceRow> worst;
};

struct Report
{
  std::string a;  ///< names of the databases
  std::string b;
  bool        isSame = true;

  std::size_t blocks            = 0;      ///< in both databases
  std::size_t differingBlocks   = 0;      ///< of these
  std::size_t missingBlocks     = 0;      ///< in A only
  std::size_t additionalBlocks  = 0;      ///< in B only
  bool        ignoresMissing    = false;  ///< what A alone has is no difference
  bool        ignoresAdditional = false;  ///< what B alone has is no difference
  std::size_t ignoredBlocks     = 0;
  std::size_t records           = 0;  ///< compared
  std::size_t differingRecords  = 0;  ///< of these
  std::size_t missingRecords    = 0;  ///< in A only, of blocks in both
  std::size_t additionalRecords = 0;  ///< in B only, of blocks in both
  std::size_t values            = 0;  ///< floating-point ones, compared
  std::size_t differingValues   = 0;

  std::vector<DifferenceRow> worst;       ///< the worst first, within both limits
  std::vector<ComponentRow>  components;  ///< of the blocks in `worst`, every component that differs
  std::vector<OneSidedRow>   oneSided;    ///< every block that one database alone has
  std::vector<NanRow>        nans;        ///< every one that was let pass
  std::vector<NormRow>       norms;       ///< of all blocks with floating-point values
  std::vector<BlockRow>      all;         ///< every block

  /// @return one line
  std::string Summarize() const;

  /// @return one line on the blocks that only A or only B has: how many of which kinds; empty where there are none
  std::string SummarizeOneSided(bool isSecond) const;

private:
  std::string NameWorst() const;
};

/// @param info its two limits bound what `worst` holds
Report MakeReport(const DatabaseOutcome& outcome, const ComparedDatabase& first, const ComparedDatabase& second,
                  const std::string& firstName, const std::string& secondName,
                  const QuilonDataBlockDiff::CompareInfo& info);

/// @return the report as a JUnit file, a test case for each block
std::string ToJUnit(const Report& report);

}  // namespace quilon::diff
