#include "IdOrderWriter.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <numeric>
#include <optional>
#include <utility>

#include "Checksum.h"
#include "IdOrderLayout.h"
#include "ResultDataBlock.h"
#include "UnfinishedFile.h"

namespace {

// A page is what is read for one index; it has one row at the least.
constexpr std::size_t kPageBytes = std::size_t{128} << 10;

// Ascending indices at which any of the blocks has a record.
std::vector<std::uint32_t> UniteKeys(const std::vector<IdOrderSource>& sources)
{
  std::vector<std::uint32_t> all;
  std::vector<std::uint32_t> united;
  for (const IdOrderSource& source : sources) {
    const std::vector<std::size_t> indices = source.rows->GetIndices();
    if (std::equal(indices.begin(), indices.end(), all.begin(), all.end())) continue;
    united.clear();
    std::set_union(all.begin(), all.end(), indices.begin(), indices.end(), std::back_inserter(united));
    all.swap(united);
  }
  return all;
}

class OrderWriter
{
public:
  OrderWriter(FED_FileLayer& files, const std::filesystem::path& folder, const std::vector<IdOrderSource>& sources,
              std::size_t width, std::size_t memory)
      : files_(files),
        sources_(sources),
        newPath_(folder / kNewIdOrderName),
        tilesPath_(folder / kIdOrderTilesName),
        memory_(memory)
  {
    head_.width = width;
    head_.keys  = UniteKeys(sources);
    for (const IdOrderSource& source : sources) head_.blocks.push_back(source.block);
    head_.rowCount   = head_.keys.size();
    head_.firstKey   = head_.keys.empty() ? 0 : head_.keys.front();
    head_.keysAreRun = !head_.keys.empty() && head_.keys.back() - head_.firstKey + 1 == head_.keys.size();
    for (const IdOrderSource& source : sources) chunkKeys_.push_back(FindChunkKeys(*source.rows));
    stride_ = CountRowBytes(sources.size(), width);
    // Powers of two, so that slabs have whole pages.
    slabRows_         = sources.front().rows->GetRowsPerChunk();
    head_.rowsPerPage = std::min(std::bit_floor(std::max<std::size_t>(1, kPageBytes / stride_)), slabRows_);
  }

  WrittenIdOrder Write(const std::filesystem::path& folder)
  {
    UnfinishedFile                  unfinished(files_, newPath_);
    UnfinishedFile                  unfinishedTiles(files_, tilesPath_);
    StoreFile                       file(files_, newPath_, FED_FileLayer::Create);
    const std::vector<std::uint8_t> head = EncodeIdOrderHead(head_);
    file.WriteAt(0, head.data(), head.size());
    end_ = head.size();
    for (std::size_t first = 0; first < head_.keys.size(); first += slabRows_)
      WriteSlab(first, std::min(slabRows_, head_.keys.size() - first), file);
    file.Flush();
    file.Close();
    written_.file                    = GetIdOrderName(head_.blocks);
    const std::filesystem::path path = folder / written_.file;
    RequireSuccess(files_.Rename(newPath_, path), path, "rename a new file to");
    unfinished.Keep();
    RequireSuccess(files_.FlushFolder(folder), folder, "flush");
    written_.rowCount  = head_.rowCount;
    written_.fileBytes = end_;
    return written_;
  }

private:
  // The rows of a slab of some of the blocks: for each row a byte a block, whether it has the record, then the records.
  struct Tile
  {
    std::size_t   firstBlock;
    std::size_t   numBlocks;
    std::uint64_t offset;  // in the file of tiles
  };

  // The least and the greatest index of the rows of a chunk.
  struct ChunkKeys
  {
    std::uint32_t least;
    std::uint32_t greatest;
  };

  // @return by chunk; empty for a block that has a row for each index, in their order: it is copied without looking
  std::vector<ChunkKeys> FindChunkKeys(const ResultDataBlock& block)
  {
    std::vector<ChunkKeys> found;
    if (block.GetRecordCount() == head_.rowCount && block.RowsAscend()) return found;
    for (std::size_t chunk = 0; chunk < block.GetChunkCount(); ++chunk) {
      block.GetChunkKeys(chunk, keys_);
      const auto [least, greatest] = std::minmax_element(keys_.begin(), keys_.end());
      found.push_back({*least, *greatest});
    }
    return found;
  }

  std::size_t GetRecordBytes() const noexcept { return head_.width * sizeof(double); }
  std::size_t GetTileStride(std::size_t numBlocks) const noexcept { return numBlocks * (1 + GetRecordBytes()); }

  // One page's rows at the least, and as many as half of the memory takes.
  void WriteSlab(std::size_t first, std::size_t numRows, StoreFile& file)
  {
    const std::size_t most = std::max<std::size_t>(1, memory_ / 2 / (numRows * GetTileStride(1)));
    std::vector<Tile> tiles;
    std::uint64_t     offset = 0;
    for (std::size_t block = 0; block < sources_.size(); block += most) {
      tiles.push_back({block, std::min(most, sources_.size() - block), offset});
      FillTile(tiles.back(), first, numRows);
      if (tiles.size() == 1 && most >= sources_.size()) break;  // all of it is in memory
      if (!tilesFile_) tilesFile_.emplace(files_, tilesPath_, FED_FileLayer::Create);
      tilesFile_->WriteAt(offset, tile_.data(), tile_.size());
      offset += tile_.size();
    }
    written_.temporaryBytes    = std::max(written_.temporaryBytes, offset);
    const std::size_t pageRows = static_cast<std::size_t>(head_.rowsPerPage);
    const std::size_t step     = std::max(pageRows, memory_ / 4 / stride_ / pageRows * pageRows);
    for (std::size_t row = 0; row < numRows; row += step)
      WritePages(tiles, offset > 0, first, row, std::min(step, numRows - row), file);
  }

  void FillTile(const Tile& tile, std::size_t first, std::size_t numRows)
  {
    tile_.assign(numRows * GetTileStride(tile.numBlocks), 0);
    for (std::size_t i = 0; i < tile.numBlocks; ++i) {
      const ResultDataBlock&        block     = *sources_[tile.firstBlock + i].rows;
      const std::vector<ChunkKeys>& chunkKeys = chunkKeys_[tile.firstBlock + i];
      for (std::size_t chunk = 0; chunk < block.GetChunkCount(); ++chunk) {
        if (chunkKeys.empty())
          CopyRows(block, chunk, tile, i, first, numRows);
        else if (chunkKeys[chunk].least <= head_.keys[first + numRows - 1] &&
                 chunkKeys[chunk].greatest >= head_.keys[first])
          CopyPlacedRows(block, chunk, tile, i, first, numRows);
      }
    }
  }

  // Rows that stand where they do in the order.
  void CopyRows(const ResultDataBlock& block, std::size_t chunk, const Tile& tile, std::size_t position,
                std::size_t first, std::size_t numRows)
  {
    const std::size_t begin = chunk * block.GetRowsPerChunk();
    const std::size_t end   = std::min(begin + block.GetRowsPerChunk(), block.GetRecordCount());
    if (begin >= first + numRows || end <= first) return;
    const double* const values = block.GetDoubleChunk(1, chunk).GetData();
    for (std::size_t row = std::max(begin, first); row < std::min(end, first + numRows); ++row)
      CopyRow(values + (row - begin) * head_.width, row - first, tile, position);
  }

  // Rows that stand where their index does. Mostly they ascend, so the next place is the one behind the last.
  void CopyPlacedRows(const ResultDataBlock& block, std::size_t chunk, const Tile& tile, std::size_t position,
                      std::size_t first, std::size_t numRows)
  {
    block.GetChunkKeys(chunk, keys_);
    const double*     values = block.GetDoubleChunk(1, chunk).GetData();
    const auto        begin  = head_.keys.cbegin() + static_cast<std::ptrdiff_t>(first);
    const auto        end    = begin + static_cast<std::ptrdiff_t>(numRows);
    const std::size_t width  = head_.width;
    auto              at     = begin;
    for (std::size_t row = 0; row < keys_.size(); ++row, values += width) {
      const std::uint32_t key = keys_[row];
      if (key < *begin || key > *(end - 1)) continue;
      if (at == end || *at != key) at = std::lower_bound(begin, end, key);
      CopyRow(values, static_cast<std::size_t>(at - begin), tile, position);
      ++at;
    }
  }

  void CopyRow(const double* values, std::size_t row, const Tile& tile, std::size_t position)
  {
    std::uint8_t* const to = tile_.data() + row * GetTileStride(tile.numBlocks);
    to[position]           = 1;
    std::memcpy(to + tile.numBlocks + position * GetRecordBytes(), values, GetRecordBytes());
  }

  void WritePages(const std::vector<Tile>& tiles, bool areInFile, std::uint64_t first, std::size_t row,
                  std::size_t numRows, StoreFile& file)
  {
    pages_.assign(numRows * stride_, 0);
    for (const Tile& tile : tiles) {
      const std::size_t   tileStride = GetTileStride(tile.numBlocks);
      const std::uint8_t* rows       = tile_.data() + row * tileStride;
      if (areInFile) {
        tile_.resize(numRows * tileStride);
        tilesFile_->ReadAt(tile.offset + row * tileStride, tile_.data(), tile_.size());
        rows = tile_.data();
      }
      for (std::size_t i = 0; i < numRows; ++i) PlaceRow(rows + i * tileStride, tile, pages_.data() + i * stride_);
    }
    const std::size_t pageRows = static_cast<std::size_t>(head_.rowsPerPage);
    out_.clear();
    out_.reserve(pages_.size() + (numRows + pageRows - 1) / pageRows * kPageChecksumBytes);
    for (std::size_t i = 0; i < numRows; i += pageRows) {
      const std::uint8_t* const rows     = pages_.data() + i * stride_;
      const std::size_t         count    = std::min(pageRows, numRows - i) * stride_;
      const std::uint64_t       checksum = GetPageChecksum(rows, count, (first + row + i) / pageRows);
      out_.insert(out_.end(), rows, rows + count);
      const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&checksum);
      out_.insert(out_.end(), bytes, bytes + sizeof(checksum));
    }
    file.WriteAt(end_, out_.data(), out_.size());
    end_ += out_.size();
  }

  void PlaceRow(const std::uint8_t* from, const Tile& tile, std::uint8_t* to) const
  {
    for (std::size_t i = 0; i < tile.numBlocks; ++i)
      if (from[i] != 0) to[(tile.firstBlock + i) / 8] |= static_cast<std::uint8_t>(1u << (tile.firstBlock + i) % 8);
    std::memcpy(to + CountPresenceBytes(sources_.size()) + tile.firstBlock * GetRecordBytes(), from + tile.numBlocks,
                tile.numBlocks * GetRecordBytes());
  }

  FED_FileLayer&                      files_;
  const std::vector<IdOrderSource>&   sources_;
  std::filesystem::path               newPath_;
  std::filesystem::path               tilesPath_;
  std::size_t                         memory_;
  IdOrderHead                         head_;
  std::vector<std::vector<ChunkKeys>> chunkKeys_;  // by source
  std::size_t                         stride_   = 0;
  std::size_t                         slabRows_ = 1;
  std::uint64_t                       end_      = 0;  // of what was written
  std::optional<StoreFile>            tilesFile_;
  std::vector<std::uint8_t>           tile_;
  std::vector<std::uint32_t>          keys_;  // of one chunk's rows
  std::vector<std::uint8_t>           pages_;
  std::vector<std::uint8_t>           out_;
  WrittenIdOrder                      written_;
};

}  // namespace

WrittenIdOrder WriteIdOrder(FED_FileLayer& files, const std::filesystem::path& folder,
                            const std::vector<IdOrderSource>& sources, std::size_t width, std::size_t memory)
{
  return OrderWriter(files, folder, sources, width, memory).Write(folder);
}
