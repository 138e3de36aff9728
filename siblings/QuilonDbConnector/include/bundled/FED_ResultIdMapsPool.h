#pragma once

/// @file
/// The id maps of the bundled database.

#include "quilon_language.h"

#include <array>
#include <cstddef>
#include <memory>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"
#include "QuilonUtilities/QuilonContainer.h"

class ChunkStore;

/// Id maps for the kinds 0 to 14.
///
/// On disk a map is read as a whole when it is first asked for more than its count.
///
/// Memory: 4 to 5 bytes per id where they ascend densely, 8 where they are dense in any order, else up to 36.
class QUILON_DB_CONNECTOR_API FED_ResultIdMapsPool final : public FED_IdMapsPool
{
public:
  static constexpr int kNumKinds = 15;

  FED_ResultIdMapsPool();
  FED_ResultIdMapsPool(FED_ResultIdMapsPool&& other) noexcept;
  FED_ResultIdMapsPool& operator=(FED_ResultIdMapsPool&& other) noexcept;
  ~FED_ResultIdMapsPool() override;

  /// All throw FED_Failure unless 0 <= kind <= 14: ids of other kinds are indices themselves and have no map.
  std::size_t FindIndex(int kind, int id) const override;
  /// @throws std::bad_alloc; the maps are then as before
  std::size_t FindOrAddIndex(int kind, int id) override;
  int         GetId(int kind, std::size_t index) const override;

  /// @return the number of ids of the kind; their indices are 1 to this number
  std::size_t GetCount(int kind) const;

  /// Makes the maps those of a store, which reads each when it is first asked for more than its count. For databases.
  /// @param store borrowed
  void Attach(const ChunkStore& store);

  /// Ids that were added since Attach() or MarkStored().
  struct Growth
  {
    std::size_t                      firstIndex;
    QuilonContainer::Span<const int> ids;  ///< valid until the next id is added
  };
  Growth GetGrowth(int kind) const;
  void   MarkStored() noexcept;

private:
  class IdMap;

  IdMap& GetMap(int kind) const;

  std::array<std::unique_ptr<IdMap>, kNumKinds> maps_;
};
