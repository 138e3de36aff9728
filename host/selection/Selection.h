#pragma once

/// @file
/// Which blocks of a database a command works on.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"

namespace quilon {

class KindTable;

/// One entry of a list of numbers: "5", "1-9", "1:9", "1:9:2" (both ends included, every second), "first", "last",
/// "none" or "all".
struct NumberRange
{
  enum Form
  {
    Numbers,  ///< first, first + stride, ... up to last
    First,    ///< the least number there is
    Last,     ///< the greatest number there is
    None,     ///< no number at all
    All       ///< any number
  };
  Form form   = Numbers;
  int  first  = 0;
  int  last   = 0;
  int  stride = 1;

  /// @return whether a range of numbers holds this one
  bool Holds(int number) const noexcept;
};

/// Reads "1,5-9,last".
/// @param what the thing that the numbers count, for messages: "record id", "value of 'lc'"
/// @throws FED_Failure for anything else
std::vector<NumberRange> ParseNumberRanges(std::string_view text, const std::string& what);

/// A result index as users write it.
struct IndexKey
{
  FED_DataDescriptor::ResultIndex index;
  const char*                     key;   ///< "lc", which tables and JSON have
  const char*                     name;  ///< "load-case", which is understood as well
};

/// The keys of all indices but the ONF id, in the order in which people read them.
const std::vector<IndexKey>& GetIndexKeys();

/// @return the block's key as a selection that a user can write: "521@it=0,lc=2,sub=3"
std::string ToSelectionText(const FED_DataDescriptor& descriptor);

/// @return whether the block belongs to every result step, as coordinates do: load case, substep and increment are
/// unset
bool BelongsToAllSteps(const FED_DataDescriptor& descriptor);

/// @return whether the block belongs to one result step: it is no history and does not belong to all
bool HasResultStep(const FED_DataDescriptor& descriptor);

/// @return the result step of a block, see Selection::SetSteps(): its key without all else
FED_DataDescriptor GetResultStep(const FED_DataDescriptor& descriptor);

/// @return the result steps of these blocks in the order in which steps are counted
std::vector<FED_DataDescriptor> ListResultSteps(const std::vector<FED_DataDescriptor>& descriptors);

/// A selection: KIND,KIND.COMPONENT,...@KEY=VALUES,KEY=VALUES,...
///
/// Kinds are ONF ids or names (KindTable::Resolve()), or "all"; without any, every kind is meant. The name of a
/// quantity selects the scalar histories of it. A component (see Component) stands behind the last dot, unless the
/// whole is the name of a kind. Keys are those of GetIndexKeys() in either form. Values are number ranges, those of
/// "group" names, too (KindTable::ResolveGroup()); an entry without "=" goes on with the values of the key before it. A
/// key matches only blocks that have the index set, "none" only those that have not. "first" and "last" are answered
/// per kind, key by key in the order written, from the blocks that all keys without these words leave.
class Selection
{
public:
  /// Selects everything.
  Selection() = default;
  /// @throws FED_Failure for what is no selection, with a suggestion for what nearly is one
  Selection(std::string_view text, const KindTable& kinds);

  /// Keeps result steps by their position. A result step is a set of blocks with equal iteration, analysis, load case,
  /// substep and increment; steps are ordered by these values and counted from 1 over the whole database, whatever else
  /// is selected. Histories belong to every step of their load case, and blocks without load case, substep and
  /// increment to all steps.
  /// @param text number ranges such as "1:9:2" or "last"
  void SetSteps(std::string_view text);

  /// @return whether kinds are asked for; without any, every kind is meant
  bool NamesKinds() const noexcept { return !kinds_.empty(); }

  /// @param descriptors of the whole database
  /// @return the selected ones, in the order given
  std::vector<FED_DataDescriptor> Apply(const std::vector<FED_DataDescriptor>& descriptors) const;

  /// @param onf a kind, or the quantity of scalar histories
  /// @return the names of the components that were asked for, in the order written, each once; where the kind also
  ///         stands without one, the stored ones come at its place. Nothing: no component was asked for.
  std::vector<std::string> ComponentsOf(int onf) const;

  /// @return whether a component was asked for
  bool HasComponents() const noexcept;

private:
  struct KindChoice
  {
    int         onf = 0;
    std::string component;  ///< empty: the kind as it is
  };
  struct Criterion
  {
    FED_DataDescriptor::ResultIndex index;
    std::vector<NumberRange>        values;
  };

  static KindChoice ReadKind(std::string_view text, const KindTable& kinds);
  void              ReadCriterion(std::string_view entry, std::string_view text, const KindTable& kinds);
  bool              MatchesKind(const FED_DataDescriptor& descriptor) const;

  std::vector<KindChoice>  kinds_;     // in the order written; empty: any
  std::vector<Criterion>   criteria_;  // in the order written
  std::vector<NumberRange> steps_;     // empty: any
};

}  // namespace quilon
