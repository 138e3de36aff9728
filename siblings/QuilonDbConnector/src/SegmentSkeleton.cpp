#include "SegmentSkeleton.h"

#include <algorithm>
#include <cassert>
#include <map>
#include <string_view>

#include "ByteWriter.h"

namespace {

constexpr std::uint64_t kUndefined = ~std::uint64_t{0};

// Half the places of a node of symbols and of a node of the tree above them; the superblock tells both. Most groups
// have one link or two, and nodes have all their places whether they are taken or not.
constexpr std::size_t kSymbolRank = 2;
constexpr std::size_t kTreeRank   = 2;

constexpr std::size_t kSymbolPlaces   = 2 * kSymbolRank;
constexpr std::size_t kTreePlaces     = 2 * kTreeRank;
constexpr std::size_t kEntryBytes     = 40;
constexpr std::size_t kSuperblock     = 56 + kEntryBytes;
constexpr std::size_t kSymbolsBytes   = 8 + kSymbolPlaces * kEntryBytes;
constexpr std::size_t kTreeBytes      = 24 + (2 * kTreePlaces + 1) * 8;
constexpr std::size_t kHeapHead       = 32;
constexpr std::size_t kObjectHead     = 16;
constexpr std::size_t kMessageHead    = 8;
constexpr std::size_t kGroupObject    = kObjectHead + kMessageHead + 16;
constexpr std::size_t kFillBytes      = 8;
constexpr std::size_t kLayoutBytes    = 24;
constexpr std::size_t kFloatTypeBytes = 24;
constexpr std::size_t kPlainTypeBytes = 16;
constexpr std::size_t kTextTypeBytes  = 8;

std::uint64_t Pad(std::uint64_t bytes) noexcept { return (bytes + 7) & ~std::uint64_t{7}; }

std::size_t Divide(std::size_t count, std::size_t places) noexcept { return (count + places - 1) / places; }

bool IsFloat(const SkeletonData& data) noexcept
{
  return data.type == SkeletonData::Values &&
         (data.element == StoredColumn::Float32 || data.element == StoredColumn::Float64);
}

bool IsText(const SkeletonData& data) noexcept
{
  return data.type == SkeletonData::Values && data.element == StoredColumn::Char;
}

std::size_t GetTypeBytes(const SkeletonData& data) noexcept
{
  return IsFloat(data) ? kFloatTypeBytes : IsText(data) ? kTextTypeBytes : kPlainTypeBytes;
}

std::size_t GetSpaceBytes(const SkeletonData& data) noexcept { return data.width == 1 ? 16 : 24; }

std::size_t GetObjectBytes(const SkeletonData& data) noexcept
{
  return kObjectHead + 4 * kMessageHead + GetSpaceBytes(data) + GetTypeBytes(data) + kFillBytes + kLayoutBytes;
}

// What a name in a group stands for.
struct Link
{
  bool          isGroup;
  std::size_t   position;  // among groups or data
  std::uint64_t name = 0;  // in the group's heap
};

struct Group
{
  std::map<std::string, Link, std::less<>> links;  // in the order that HDF5 searches them in: by unsigned bytes
  std::uint64_t                            object  = 0;
  std::uint64_t                            heap    = 0;
  std::uint64_t                            names   = 0;
  std::uint64_t                            symbols = 0;  // the first node of them
  std::uint64_t                            trees   = 0;  // the first node of the lowest level
  std::uint64_t                            top     = 0;  // the node of the highest level

  // Nodes of symbols, nodes of the tree above them, nodes above those, ..., one.
  std::vector<std::size_t> CountNodes() const
  {
    std::vector<std::size_t> counts{Divide(links.size(), kSymbolPlaces)};
    do counts.push_back(std::max<std::size_t>(1, Divide(counts.back(), kTreePlaces)));
    while (counts.back() > 1);
    return counts;
  }
};

// The tree of groups. Addresses count from behind the user block, as HDF5 counts them.
class Structure
{
public:
  explicit Structure(std::vector<SkeletonData>& data) : data_(data), objects_(data.size())
  {
    groups_.emplace_back();
    for (std::size_t i = 0; i < data.size(); ++i) AddPath(i);
    Place();
  }

  std::size_t GetBytes() const noexcept { return end_; }

  std::vector<std::uint8_t> Encode(std::size_t userBlock, std::uint64_t fileBytes)
  {
    out_.Reserve(end_);
    PutSuperblock(userBlock, fileBytes);
    for (const Group& group : groups_) PutGroup(group);
    for (std::size_t i = 0; i < data_.size(); ++i) {
      assert(out_.GetSize() == objects_[i]);
      PutData(data_[i], userBlock);
    }
    assert(out_.GetSize() == end_);
    return std::move(out_.GetBytes());
  }

private:
  void AddPath(std::size_t position)
  {
    const std::string_view path  = data_[position].path;
    std::size_t            group = 0;
    std::size_t            begin = 1;
    for (std::size_t end = path.find('/', begin); end != std::string_view::npos; end = path.find('/', begin)) {
      const std::string_view name  = path.substr(begin, end - begin);
      const auto             found = groups_[group].links.find(name);
      begin                        = end + 1;
      if (found != groups_[group].links.end()) {
        assert(found->second.isGroup);
        group = found->second.position;
        continue;
      }
      groups_[group].links.emplace(name, Link{true, groups_.size()});
      group = groups_.size();
      groups_.emplace_back();
    }
    const bool isNew = groups_[group].links.emplace(path.substr(begin), Link{false, position}).second;
    assert(isNew);
    static_cast<void>(isNew);
  }

  // Everything stands in the order in which it is encoded.
  void Place()
  {
    std::size_t next = kSuperblock;
    const auto  take = [&](std::size_t bytes) {
      const std::size_t at = next;
      next += bytes;
      return at;
    };
    for (Group& group : groups_) {
      const std::vector<std::size_t> nodes = group.CountNodes();
      std::size_t                    names = 8;  // an empty one
      for (auto& [name, link] : group.links) {
        link.name = names;
        names += Pad(name.size() + 1);
      }
      group.object  = take(kGroupObject);
      group.heap    = take(kHeapHead);
      group.names   = take(names);
      group.symbols = take(nodes[0] * kSymbolsBytes);
      group.trees   = next;
      for (std::size_t level = 1; level < nodes.size(); ++level) group.top = take(nodes[level] * kTreeBytes);
    }
    for (std::size_t i = 0; i < data_.size(); ++i) objects_[i] = take(GetObjectBytes(data_[i]));
    end_ = next;
  }

  void PutSuperblock(std::size_t userBlock, std::uint64_t fileBytes)
  {
    constexpr char kSignature[8] = {'\x89', 'H', 'D', 'F', '\r', '\n', '\x1a', '\n'};
    out_.Put(kSignature, sizeof(kSignature));
    out_.PutZeros(5);           // versions
    out_.Put(std::uint8_t{8});  // bytes of an address
    out_.Put(std::uint8_t{8});  // bytes of a length
    out_.PutZeros(1);
    out_.Put(std::uint16_t{kSymbolRank});
    out_.Put(std::uint16_t{kTreeRank});
    out_.Put(std::uint32_t{0});          // flags
    out_.Put(std::uint64_t{userBlock});  // where addresses count from
    out_.Put(kUndefined);                // no free space
    out_.Put(fileBytes);                 // from the start of the file
    out_.Put(kUndefined);                // no driver
    PutEntry(0, groups_.front().object, &groups_.front());
  }

  // @param group null where a data set is meant
  void PutEntry(std::uint64_t name, std::uint64_t object, const Group* group)
  {
    out_.Put(name);
    out_.Put(object);
    out_.Put(group != nullptr ? std::uint32_t{1} : std::uint32_t{0});
    out_.PutZeros(4);
    out_.Put(group != nullptr ? group->top : std::uint64_t{0});
    out_.Put(group != nullptr ? group->heap : std::uint64_t{0});
  }

  void PutObject(std::size_t messages, std::size_t bytes)
  {
    out_.Put(std::uint8_t{1});
    out_.PutZeros(1);
    out_.Put(static_cast<std::uint16_t>(messages));
    out_.Put(std::uint32_t{1});  // one name stands for it
    out_.Put(static_cast<std::uint32_t>(bytes - kObjectHead));
    out_.PutZeros(4);
  }

  void PutMessage(std::uint16_t type, std::size_t bytes, bool isConstant)
  {
    out_.Put(type);
    out_.Put(static_cast<std::uint16_t>(bytes));
    out_.Put(isConstant ? std::uint8_t{1} : std::uint8_t{0});
    out_.PutZeros(3);
  }

  void PutGroup(const Group& group)
  {
    assert(out_.GetSize() == group.object);
    PutObject(1, kGroupObject);
    PutMessage(0x11, 16, false);
    out_.Put(group.top);
    out_.Put(group.heap);
    PutNames(group);
    PutSymbols(group);
    PutTrees(group);
  }

  void PutNames(const Group& group)
  {
    out_.Put("HEAP", 4);
    out_.PutZeros(4);
    out_.Put(group.symbols - group.names);
    out_.Put(std::uint64_t{1});  // nothing is free
    out_.Put(group.names);
    out_.PutZeros(8);
    for (const auto& [name, link] : group.links) {
      out_.Put(name.data(), name.size());
      out_.PutZeros(Pad(name.size() + 1) - name.size());
    }
  }

  void PutSymbols(const Group& group)
  {
    auto        link = group.links.begin();
    std::size_t rest = group.links.size();
    while (rest > 0) {
      const std::size_t count = std::min(rest, kSymbolPlaces);
      out_.Put("SNOD", 4);
      out_.Put(std::uint8_t{1});
      out_.PutZeros(1);
      out_.Put(static_cast<std::uint16_t>(count));
      for (std::size_t i = 0; i < count; ++i, ++link) {
        const Group* const child = link->second.isGroup ? &groups_[link->second.position] : nullptr;
        PutEntry(link->second.name, child != nullptr ? child->object : objects_[link->second.position], child);
      }
      out_.PutZeros((kSymbolPlaces - count) * kEntryBytes);
      rest -= count;
    }
  }

  // Each node's keys are the greatest names of what stands before its first child, and in each of its children.
  void PutTrees(const Group& group)
  {
    const std::vector<std::size_t> nodes = group.CountNodes();
    std::vector<std::uint64_t>     greatest;  // of each child, and before: of nothing
    greatest.push_back(0);
    std::size_t position = 0;
    for (const auto& [name, link] : group.links)
      if (++position % kSymbolPlaces == 0 || position == group.links.size()) greatest.push_back(link.name);
    std::uint64_t children   = group.symbols;
    std::size_t   childBytes = kSymbolsBytes;
    std::uint64_t address    = group.trees;
    for (std::size_t level = 1; level < nodes.size(); ++level) {
      std::vector<std::uint64_t> above{0};
      for (std::size_t node = 0; node < nodes[level]; ++node) {
        const std::size_t first = node * kTreePlaces;
        const std::size_t count = std::min(kTreePlaces, nodes[level - 1] - first);
        const auto        find  = [&](std::size_t other) { return address + other * kTreeBytes; };
        out_.Put("TREE", 4);
        out_.Put(std::uint8_t{0});
        out_.Put(static_cast<std::uint8_t>(level - 1));
        out_.Put(static_cast<std::uint16_t>(count));
        out_.Put(node > 0 ? find(node - 1) : kUndefined);
        out_.Put(node + 1 < nodes[level] ? find(node + 1) : kUndefined);
        out_.Put(greatest[first]);
        for (std::size_t i = 0; i < count; ++i) {
          out_.Put(children + (first + i) * childBytes);
          out_.Put(greatest[first + i + 1]);
        }
        out_.PutZeros((kTreePlaces - count) * 16);
        above.push_back(greatest[first + count]);
      }
      greatest   = std::move(above);
      children   = address;
      childBytes = kTreeBytes;
      address += nodes[level] * kTreeBytes;
    }
  }

  void PutData(const SkeletonData& data, std::size_t userBlock)
  {
    PutObject(4, GetObjectBytes(data));
    PutMessage(0x1, GetSpaceBytes(data), false);
    out_.Put(std::uint8_t{1});
    out_.Put(static_cast<std::uint8_t>(data.width == 1 ? 1 : 2));
    out_.PutZeros(6);
    out_.Put(data.rows);
    if (data.width != 1) out_.Put(std::uint64_t{data.width});
    PutMessage(0x3, GetTypeBytes(data), true);
    PutType(data);
    PutMessage(0x5, kFillBytes, true);
    constexpr std::uint8_t kNoFillValue[8] = {2, 1, 1, 0};  // version, space taken early, never filled, not defined
    out_.Put(kNoFillValue, sizeof(kNoFillValue));
    PutMessage(0x8, kLayoutBytes, false);
    out_.Put(std::uint8_t{3});
    out_.Put(std::uint8_t{1});  // contiguous
    out_.Put(data.offset - userBlock);
    out_.Put(data.GetBytes());
    out_.PutZeros(6);
  }

  void PutType(const SkeletonData& data)
  {
    const std::size_t bytes = data.type == SkeletonData::Bytes ? 1 : GetElementBytes(data.element);
    const auto        bits  = static_cast<std::uint16_t>(8 * bytes);
    const auto        start = [&](unsigned typeClass, std::uint8_t first, std::uint8_t second) {
      out_.Put(static_cast<std::uint8_t>(0x10 | typeClass));  // version 1
      out_.Put(first);
      out_.Put(second);
      out_.PutZeros(1);
      out_.Put(static_cast<std::uint32_t>(bytes));
    };
    if (IsText(data)) {
      start(3, 1, 0);  // filled up with zeros: a lone character is one
    } else if (IsFloat(data)) {
      const bool isDouble = data.element == StoredColumn::Float64;
      start(1, 0x20, static_cast<std::uint8_t>(bits - 1));  // the first bit of the mantissa is understood; the sign
      out_.Put(std::uint16_t{0});
      out_.Put(bits);
      out_.Put(std::uint8_t{isDouble ? std::uint8_t{52} : std::uint8_t{23}});  // exponent: place, bits
      out_.Put(std::uint8_t{isDouble ? std::uint8_t{11} : std::uint8_t{8}});
      out_.Put(std::uint8_t{0});  // mantissa: place, bits
      out_.Put(std::uint8_t{isDouble ? std::uint8_t{52} : std::uint8_t{23}});
      out_.Put(std::uint32_t{isDouble ? 1023u : 127u});
      out_.PutZeros(4);
    } else {
      const bool isSigned = data.type == SkeletonData::Values && data.element == StoredColumn::Int32;
      start(0, isSigned ? 8 : 0, 0);
      out_.Put(std::uint16_t{0});
      out_.Put(bits);
      out_.PutZeros(4);
    }
  }

  std::vector<SkeletonData>& data_;
  std::vector<std::size_t>   objects_;  // addresses
  std::vector<Group>         groups_;   // the first is the root
  std::size_t                end_ = 0;
  ByteWriter                 out_;
};

}  // namespace

SegmentSkeleton::SegmentSkeleton(std::size_t userBlock, std::size_t tail, std::vector<SkeletonData>& data)
{
  Structure     structure(data);
  std::uint64_t next = userBlock + structure.GetBytes();
  for (SkeletonData& set : data) {
    set.offset = Pad(next);
    next       = set.offset + set.GetBytes();
  }
  fileBytes_ = Pad(next) + tail;
  bytes_     = structure.Encode(userBlock, fileBytes_);
}
