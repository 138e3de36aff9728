#pragma once

/// @file
/// Files of orders by id: names and the layout of their rows.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct FED_OrderedBlock;

/// What the head of an order by id says.
struct IdOrderHead
{
  std::size_t                   width       = 1;  ///< doubles of a record
  std::uint64_t                 rowCount    = 0;
  std::uint64_t                 rowsPerPage = 1;
  bool                          keysAreRun  = true;
  std::uint32_t                 firstKey    = 0;
  std::vector<std::uint32_t>    keys;  ///< where they are no run
  std::vector<FED_OrderedBlock> blocks;
};

/// Rows of an order: a bit for each block, whether it has the record, then the records of all.
constexpr std::size_t CountPresenceBytes(std::size_t blocks) noexcept { return (blocks + 63) / 64 * 8; }
constexpr std::size_t CountRowBytes(std::size_t blocks, std::size_t width) noexcept
{
  return CountPresenceBytes(blocks) + blocks * width * sizeof(double);
}

/// Behind the rows of each page.
inline constexpr std::size_t kPageChecksumBytes = 8;

/// @return the checksum of the rows of a page, which knows the page's number
std::uint64_t GetPageChecksum(const std::uint8_t* rows, std::size_t count, std::uint64_t page);

/// @return the head as bytes; pages follow at once
std::vector<std::uint8_t> EncodeIdOrderHead(const IdOrderHead& head);

/// @return "by-id-0123456789abcdef.order", named by the blocks and their records
std::string GetIdOrderName(const std::vector<FED_OrderedBlock>& blocks);
bool        IsIdOrderName(const std::string& name);

/// Files of an order that is being written, which nobody needs when its writer is gone.
inline constexpr const char* kNewIdOrderName   = "order.new";
inline constexpr const char* kIdOrderTilesName = "order.tiles";
inline bool                  IsUnfinishedIdOrder(const std::string& name)
{
  return name == kNewIdOrderName || name == kIdOrderTilesName;
}
