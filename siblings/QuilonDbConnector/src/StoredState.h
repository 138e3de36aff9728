#pragma once

/// @file
/// What segments, taken together, hold: which rows of which blocks lie where.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Segment.h"

/// An extent of a segment.
struct ExtentRef
{
  Segment*    segment;
  std::size_t position;  ///< in the index's extents

  const IndexExtent& Get() const noexcept { return segment->GetIndex().extents[position]; }
};

/// Extents of a chunk, later ones behind; none is covered wholly by those behind it.
using ExtentList = std::vector<ExtentRef>;

/// Rows of an extent that no later one replaces.
struct VisibleRows
{
  std::size_t   extent;  ///< position in the list
  std::uint32_t begin;   ///< rows of the block
  std::uint32_t end;
};

/// @return by ascending rows
std::vector<VisibleRows> FindVisibleRows(const ExtentList& extents);

/// Grows by whole segments, in their order.
class StoredState
{
public:
  static constexpr std::size_t kNumKinds = 15;

  /// Takes what is wrong with a segment. When it returns, what is wrong is left out.
  using Complain = std::function<void(const Segment& segment, const std::string& text)>;

  struct Block
  {
    StoredBlock                         stored;  ///< with rowCount and maxKey
    std::vector<StoredColumn>           columns;
    std::map<std::uint32_t, ExtentList> chunks;
  };

  /// Ids of a kind that a segment holds.
  struct IdPiece
  {
    Segment*    segment;
    std::size_t position;  ///< in the index's ids

    const IndexIds& Get() const noexcept { return segment->GetIndex().ids[position]; }
  };

  /// All changes of a merge, prepared.
  struct Replacement
  {
    std::vector<std::pair<ExtentList*, ExtentList>> lists;
    std::array<std::vector<IdPiece>, kNumKinds>     ids;
  };

  /// What is wrong is a FED_Failure that names the segment's file; the state is then of no use any more.
  StoredState();
  explicit StoredState(Complain complain) : complain_(std::move(complain)) {}

  /// Rows of these blocks are passed over wherever they come.
  void ExpectDeleted(const Segment& segment);

  /// Complains when the segment's index contradicts itself or those of earlier segments.
  void Add(Segment& segment);

  /// Complains unless all rows up to a block's last are there.
  void RequireAllRows() const;

  /// Prepares putting a merged segment in the place of those that it stands for.
  /// @param merged null when nothing was left of them
  Replacement PrepareReplacement(const std::vector<Segment*>& window, Segment* merged);
  void        Apply(Replacement& replacement) noexcept;

  const Block*                               FindBlock(BlockUid uid) const noexcept;
  const std::unordered_map<BlockUid, Block>& GetBlocks() const noexcept { return blocks_; }
  const std::vector<IdPiece>&                GetIds(std::size_t kind) const noexcept { return ids_[kind]; }
  std::size_t                                GetIdCount(std::size_t kind) const noexcept;
  const std::map<int, std::string>&          GetNames() const noexcept { return names_; }

private:
  void PrepareLists(const std::vector<Segment*>& window, Segment* merged, Replacement& replacement);
  void PrepareIds(const std::vector<Segment*>& window, Segment* merged, Replacement& replacement) const;
  void Declare(const StoredBlock& block, const Segment& segment);
  void Delete(BlockUid uid) noexcept;
  void AddExtent(const ExtentRef& extent);
  bool Fits(const Block& block, const ExtentRef& extent) const;

  Complain                                    complain_;
  std::unordered_map<BlockUid, Block>         blocks_;
  std::unordered_set<BlockUid>                deleted_;
  std::array<std::vector<IdPiece>, kNumKinds> ids_;
  std::map<int, std::string>                  names_;
};

/// @return "chunk 3 (rows 4096 to 8191) of block ..., field 2", for messages
std::string DescribeColumn(const StoredState::Block& block, const IndexExtent& extent, std::size_t column);
/// @return the same of the record indices
std::string DescribeKeys(const StoredState::Block& block, const IndexExtent& extent);
