#pragma once

/// @file
/// Kinds of results by name.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class FED_DataDescriptor;
class FED_Database;

namespace quilon {

/// @return the quantity of a block of scalar histories that says which it holds, 0 for any other block
int GetQuantity(const FED_DataDescriptor& descriptor);

/// @return the kind that a block is called by: the quantity of scalar histories that say which they hold, else its own
int GetNamedKind(const FED_DataDescriptor& descriptor);

/// The names of the catalogue and those that a database gives to its user kinds.
class KindTable
{
public:
  /// The catalogue alone.
  KindTable();
  /// The catalogue and the names of the database's user kinds.
  /// @param database borrowed for ResolveGroup()
  explicit KindTable(const FED_Database& database);

  /// Adds the user kinds that only another database names. One whose ONF id has another name here resolves to the
  /// negative of the id, which is no kind of this database.
  void AddForeign(const KindTable& other);

  /// Finds the kind that a user wrote. In this order, letters compared without their case: an ONF id; a kind's name;
  /// its name without a leading "nodal-"; the beginning of exactly one name; the beginning of exactly one name without
  /// "nodal-".
  /// @throws FED_Failure for a text that names no kind (a near miss gets a suggestion) or several
  int Resolve(std::string_view text) const;

  /// Finds the group of nodal averages (OnfIndex::Group) that a user named: by a material or an element set of the
  /// database, of which one has averages. Letters are compared without their case where none is exactly the same.
  /// @throws FED_Failure for a name of neither, for one without averages, and for one of two groups
  int ResolveGroup(std::string_view name) const;

  /// @return the ONF id of the kind with exactly this name; nothing when there is none
  std::optional<int> FindByName(const std::string& name) const;

  /// @return the name that the database gives the kind, else the catalogue's
  std::string GetName(int onf) const;

  /// @return the name of what the block holds: of its quantity for a block of scalar histories that says which, else of
  ///         its kind
  std::string GetName(const FED_DataDescriptor& descriptor) const;

private:
  struct Kind
  {
    std::string name;
    std::string folded;     ///< the name in lower case
    std::string shortName;  ///< folded, without a leading "nodal-"
    int         onf = 0;
  };

  void Add(const std::string& name, int onf);

  std::vector<Kind>   kinds_;
  const FED_Database* database_ = nullptr;
};

}  // namespace quilon
