#pragma once

/// @file
/// Which record of one database stands for which of another.

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <unordered_map>
#include <vector>

class FED_DataBlock;
class FED_IdMapsPool;

namespace quilon::diff {

/// Ids of one database and those that stand for them in the other.
using IdMap = std::unordered_map<int, int>;

/// Nodes and elements of one mesh under the ids of another.
struct MeshMatch
{
  IdMap nodes;
  IdMap elements;
  bool  hasElements = false;  ///< without, elements keep their ids

  /// @return the map of an entity kind, null for a kind whose ids mean the same in both databases
  const IdMap* Find(int entity) const noexcept;
};

/// Records of two blocks that stand for each other.
struct RecordPair
{
  std::size_t first;
  std::size_t second;
};

/// Consecutive records that stand for as many consecutive ones: first + i for second + i.
struct PairRun
{
  std::size_t first;
  std::size_t second;
  std::size_t count;
};

struct RecordPairs
{
  std::vector<PairRun>     runs;        ///< by ascending index of the first block
  std::vector<std::size_t> firstOnly;   ///< indices of the first block without a counterpart, ascending
  std::vector<std::size_t> secondOnly;  ///< indices of the second block without a counterpart, ascending
  bool sameIndices = true;              ///< whether records stand for each other exactly where they have the same index

  /// Takes pairs by ascending index of the first block.
  void Add(std::size_t first, std::size_t second);

  /// Calls visit(RecordPair) by ascending index of the first block.
  template <typename Visit>
  void ForEach(Visit visit) const
  {
    for (const PairRun& run : runs)
      for (std::size_t i = 0; i < run.count; ++i) visit(RecordPair{run.first + i, run.second + i});
  }
};

/// Pairs the records of blocks by their ids, by their indices, or through a mesh match.
///
/// All blocks of an entity kind share their indices, so that an id is looked up once for all blocks of the kind.
/// Memory: none where ids have the same indices in both, else 4 to 6 bytes an id.
class RecordMatcher
{
public:
  enum Mode
  {
    ById,
    ByIndex
  };

  /// @param first, second id maps of the two databases; borrowed
  /// @param mesh          borrowed; null where ids mean the same in both
  RecordMatcher(Mode mode, const FED_IdMapsPool& first, const FED_IdMapsPool& second, const MeshMatch* mesh);

  RecordPairs Pair(const FED_DataBlock& first, const FED_DataBlock& second);

private:
  /// What is known of the ids of one entity kind.
  struct KnownIds
  {
    std::vector<std::uint32_t> inSecond;  ///< by index of the first, kUnasked until looked up
    // Indices from sameBegin to before sameEnd stand for themselves.
    std::size_t sameBegin = 0;
    std::size_t sameEnd   = 0;
  };

  std::optional<PairRun> FindOneRun(const FED_DataBlock& first, const FED_DataBlock& second, bool byIndex, int entity,
                                    KnownIds& known) const;
  std::size_t            FindInSecond(int entity, std::size_t index, std::vector<std::uint32_t>& known) const;
  std::size_t            LookUp(int entity, std::size_t index) const;

  Mode                    mode_;
  const FED_IdMapsPool&   first_;
  const FED_IdMapsPool&   second_;
  const MeshMatch*        mesh_;
  std::map<int, KnownIds> known_;  // by entity kind
};

}  // namespace quilon::diff
