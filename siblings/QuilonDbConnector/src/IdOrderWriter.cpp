#include "IdOrderWriter.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <numeric>
#include <optional>
#include <utility>

#include "bundled/FED_BlockSpans.h"
#include "bundled/FED_ColumnDataBlock.h"
#include "Checksum.h"
#include "IdOrderLayout.h"
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
    // Blocks that have a row for each index, in their order, are copied without looking at indices.
    for (const IdOrderSource& source : sources)
      areSame_.push_back(source.rows->GetRecordCount() == head_.rowCount && FED_SpansAscend(*source.rows));
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
    for (std::uint64_t first = 0; first < head_.rowCount; first += slabRows_)
      WriteSlab(first, static_cast<std::size_t>(std::min<std::uint64_t>(slabRows_, head_.rowCount - first)), file);
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

  std::size_t GetRecordBytes() const noexcept { return head_.width * sizeof(double); }
  std::size_t GetTileStride(std::size_t numBlocks) const noexcept { return numBlocks * (1 + GetRecordBytes()); }

  // One page's rows at the least, and as many as half of the memory takes.
  void WriteSlab(std::uint64_t first, std::size_t numRows, StoreFile& file)
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

  void FillTile(const Tile& tile, std::uint64_t first, std::size_t numRows)
  {
    tile_.assign(numRows * GetTileStride(tile.numBlocks), 0);
    for (std::size_t i = 0; i < tile.numBlocks; ++i) {
      const FED_ColumnDataBlock& block    = *sources_[tile.firstBlock + i].rows;
      const std::size_t          perChunk = block.GetRowsPerChunk();
      const bool                 isSame   = areSame_[tile.firstBlock + i];
      if (!isSame) FindPositions(block);
      for (std::size_t chunk = 0; chunk < block.GetChunkCount(); ++chunk) {
        const std::size_t begin = chunk * perChunk;
        const std::size_t end   = std::min(begin + perChunk, block.GetRecordCount());
        if (!isSame) {
          CopyPlacedRows(block, chunk, begin, end, tile, i, first, numRows);
        } else if (begin < first + numRows && end > first) {
          const double* const values = block.GetDoubleChunk(1, chunk).GetData();
          for (std::size_t row = std::max<std::size_t>(begin, first); row < std::min<std::size_t>(end, first + numRows);
               ++row)
            CopyRow(values + (row - begin) * head_.width, row - first, tile, i);
        }
      }
    }
  }

  // Of each row of the block, where its index stands.
  void FindPositions(const FED_ColumnDataBlock& block)
  {
    positions_.resize(block.GetRecordCount());
    std::size_t at = 0;
    for (const std::size_t index : block.GetIndices()) {
      while (head_.keys[at] < index) ++at;
      positions_[block.GetRow(index)] = static_cast<std::uint32_t>(at);
    }
  }

  void CopyPlacedRows(const FED_ColumnDataBlock& block, std::size_t chunk, std::size_t begin, std::size_t end,
                      const Tile& tile, std::size_t position, std::uint64_t first, std::size_t numRows)
  {
    const auto isHere = [&](std::uint32_t at) { return at >= first && at < first + numRows; };
    if (std::none_of(positions_.begin() + static_cast<std::ptrdiff_t>(begin),
                     positions_.begin() + static_cast<std::ptrdiff_t>(end), isHere))
      return;
    const double* const values = block.GetDoubleChunk(1, chunk).GetData();
    for (std::size_t row = begin; row < end; ++row)
      if (isHere(positions_[row]))
        CopyRow(values + (row - begin) * head_.width, static_cast<std::size_t>(positions_[row] - first), tile,
                position);
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

  FED_FileLayer&                    files_;
  const std::vector<IdOrderSource>& sources_;
  std::filesystem::path             newPath_;
  std::filesystem::path             tilesPath_;
  std::size_t                       memory_;
  IdOrderHead                       head_;
  std::vector<bool>                 areSame_;  // by source
  std::size_t                       stride_   = 0;
  std::size_t                       slabRows_ = 1;
  std::uint64_t                     end_      = 0;  // of what was written
  std::optional<StoreFile>          tilesFile_;
  std::vector<std::uint8_t>         tile_;
  std::vector<std::uint32_t>        positions_;  // of one block's rows
  std::vector<std::uint8_t>         pages_;
  std::vector<std::uint8_t>         out_;
  WrittenIdOrder                    written_;
};

}  // namespace

WrittenIdOrder WriteIdOrder(FED_FileLayer& files, const std::filesystem::path& folder,
                            const std::vector<IdOrderSource>& sources, std::size_t width, std::size_t memory)
{
  return OrderWriter(files, folder, sources, width, memory).Write(folder);
}
