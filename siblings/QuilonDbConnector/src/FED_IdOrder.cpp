#include "bundled/FED_IdOrder.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include "ByteWriter.h"
#include "Checksum.h"
#include "IdOrderLayout.h"
#include "KeyTable.h"

namespace {

constexpr char             kMagic[8] = {'Q', 'U', 'I', 'L', 'O', 'R', 'D', '\n'};
constexpr std::uint32_t    kVersion  = 1;
constexpr std::string_view kPrefix   = "by-id-";
constexpr std::string_view kSuffix   = ".order";
constexpr std::size_t      kDigits   = 16;

constexpr std::size_t kBlockBytes = 4 * FED_DataDescriptor::kNumIndices + 4 + 8;
constexpr std::size_t kFixedBytes = sizeof(kMagic) + 4 + 4 + 8 + 8 + 8 + 4 + 4 + 8;  // before the first block

void PutBlock(ByteWriter& out, const FED_OrderedBlock& block)
{
  for (const int value : block.descriptor.values) out.Put(value);
  out.Put(block.descriptor.mask);
  out.Put(block.print);
}

// Takes numbers of bytes that are known to be there and whole.
class HeadReader
{
public:
  explicit HeadReader(const std::uint8_t* bytes) : next_(bytes) {}

  template <typename T>
  T Take()
  {
    T number;
    std::memcpy(&number, next_, sizeof(T));
    next_ += sizeof(T);
    return number;
  }

private:
  const std::uint8_t* next_;
};

constexpr const char* kDamaged = "its head is damaged; the file can be removed, the database does without it";

}  // namespace

std::uint64_t GetPageChecksum(const std::uint8_t* rows, std::size_t count, std::uint64_t page)
{
  RunningChecksum checksum;
  checksum.Add(rows, count);
  checksum.Add(&page, sizeof(page));
  return checksum.Get();
}

std::vector<std::uint8_t> EncodeIdOrderHead(const IdOrderHead& head)
{
  const std::size_t   keyBytes  = head.keysAreRun ? 0 : 4 * head.keys.size();
  const std::uint64_t headBytes = kFixedBytes + head.blocks.size() * kBlockBytes + keyBytes + 8;
  ByteWriter          out;
  out.Reserve(static_cast<std::size_t>(headBytes));
  out.Put(kMagic, sizeof(kMagic));
  out.Put(kVersion);
  out.Put(static_cast<std::uint32_t>(head.width));
  out.Put(headBytes);
  out.Put(head.rowCount);
  out.Put(head.rowsPerPage);
  out.Put(static_cast<std::uint32_t>(head.keysAreRun ? 1 : 0));
  out.Put(head.firstKey);
  out.PutCount(head.blocks.size());
  for (const FED_OrderedBlock& block : head.blocks) PutBlock(out, block);
  if (keyBytes > 0) out.Put(head.keys.data(), keyBytes);
  out.Put(GetChecksum(out.GetBytes().data(), out.GetSize()));
  return std::move(out.GetBytes());
}

std::string GetIdOrderName(const std::vector<FED_OrderedBlock>& blocks)
{
  ByteWriter out;
  for (const FED_OrderedBlock& block : blocks) PutBlock(out, block);
  return std::string(kPrefix) + FormatChecksum(GetChecksum(out.GetBytes().data(), out.GetSize())) +
         std::string(kSuffix);
}

bool IsIdOrderName(const std::string& name)
{
  return name.size() == kPrefix.size() + kDigits + kSuffix.size() && name.compare(0, kPrefix.size(), kPrefix) == 0 &&
         name.compare(name.size() - kSuffix.size(), kSuffix.size(), kSuffix) == 0 &&
         name.find_first_not_of("0123456789abcdef", kPrefix.size()) == kPrefix.size() + kDigits;
}

FED_IdOrder::FED_IdOrder(StoreFile file) : file_(std::move(file)), fileBytes_(file_.GetSize()) {}

FED_IdOrder::FED_IdOrder(FED_FileLayer& files, const std::filesystem::path& path)
    : FED_IdOrder(StoreFile(files, path, FED_FileLayer::Read))
{
  if (const std::string wrong = ReadHead(); !wrong.empty()) ThrowFileFailure(path, wrong);
}

std::optional<FED_IdOrder> FED_IdOrder::Find(FED_FileLayer& files, const std::filesystem::path& path)
{
  std::optional<FED_IdOrder> order = FED_IdOrder(StoreFile(files, path, FED_FileLayer::Read));
  if (!order->ReadHead().empty()) order.reset();
  return order;
}

// @return what is wrong with it; empty: nothing
std::string FED_IdOrder::ReadHead()
{
  if (fileBytes_ < kFixedBytes + 8) return kDamaged;
  std::vector<std::uint8_t> bytes(kFixedBytes);
  file_.ReadAt(0, bytes.data(), bytes.size());
  HeadReader fixed(bytes.data() + sizeof(kMagic));
  if (std::memcmp(bytes.data(), kMagic, sizeof(kMagic)) != 0) return kDamaged;
  if (const auto version = fixed.Take<std::uint32_t>(); version != kVersion)
    return "it has version " + std::to_string(version) + ", expected " + std::to_string(kVersion);
  width_                = fixed.Take<std::uint32_t>();
  headBytes_            = fixed.Take<std::uint64_t>();
  rowCount_             = fixed.Take<std::uint64_t>();
  rowsPerPage_          = fixed.Take<std::uint64_t>();
  const bool keysAreRun = fixed.Take<std::uint32_t>() != 0;
  firstKey_             = fixed.Take<std::uint32_t>();
  const auto blockCount = fixed.Take<std::uint64_t>();
  // Counts are claims: memory is asked for as far as the file reaches, and for what has the right checksum.
  if (headBytes_ < kFixedBytes + 8 || headBytes_ > fileBytes_) return kDamaged;
  bytes.resize(static_cast<std::size_t>(headBytes_));
  file_.ReadAt(0, bytes.data(), bytes.size());
  const std::size_t checked = bytes.size() - 8;
  if (HeadReader(bytes.data() + checked).Take<std::uint64_t>() != GetChecksum(bytes.data(), checked)) return kDamaged;
  const std::uint64_t inHead = checked - kFixedBytes;
  const bool          isSane = (width_ == 1 || width_ == 3 || width_ == 6) && rowCount_ > 0 && blockCount > 0 &&
                      rowCount_ <= std::uint64_t{KeyTable::kMaxKey} + 1 && rowsPerPage_ > 0 &&
                      blockCount <= inHead / kBlockBytes &&
                      inHead == blockCount * kBlockBytes + (keysAreRun ? 0 : 4 * rowCount_);
  if (!isSane) return kDamaged;
  HeadReader rest(bytes.data() + kFixedBytes);
  blocks_.resize(static_cast<std::size_t>(blockCount));
  for (FED_OrderedBlock& block : blocks_) {
    for (int& value : block.descriptor.values) value = rest.Take<int>();
    block.descriptor.mask      = rest.Take<std::uint32_t>();
    block.descriptor.cached[0] = block.descriptor.cached[1] = -1;
    block.print                                             = rest.Take<std::uint64_t>();
  }
  if (!keysAreRun) {
    keys_.resize(static_cast<std::size_t>(rowCount_));
    for (std::uint32_t& key : keys_) key = rest.Take<std::uint32_t>();
  }
  const std::uint64_t pageBytes = fileBytes_ - headBytes_;
  if (rowCount_ > pageBytes / GetStride() || pageBytes != rowCount_ * GetStride() + GetPageCount() * kPageChecksumBytes)
    return "it has " + std::to_string(fileBytes_) + " bytes, which its head does not tell of";
  return {};
}

std::size_t FED_IdOrder::GetStride() const noexcept { return CountRowBytes(blocks_.size(), width_); }

std::uint64_t FED_IdOrder::GetPageBytes() const noexcept
{
  return std::min(rowCount_, rowsPerPage_) * GetStride() + kPageChecksumBytes;
}

std::uint64_t FED_IdOrder::CountRows(std::uint64_t page) const noexcept
{
  return std::min(rowsPerPage_, rowCount_ - page * rowsPerPage_);
}

void FED_IdOrder::CheckPage(std::uint64_t page) const
{
  const auto rowBytes = static_cast<std::size_t>(CountRows(page) * GetStride());
  pageNumber_         = std::numeric_limits<std::uint64_t>::max();
  page_.resize(rowBytes + kPageChecksumBytes);
  file_.ReadAt(headBytes_ + page * (rowsPerPage_ * GetStride() + kPageChecksumBytes), page_.data(), page_.size());
  if (HeadReader(page_.data() + rowBytes).Take<std::uint64_t>() != GetPageChecksum(page_.data(), rowBytes, page))
    ThrowFileFailure(GetPath(), "page " + std::to_string(page) +
                                    " is damaged: its checksum is wrong; the file can be removed, the database does "
                                    "without it");
  pageNumber_ = page;
}

void FED_IdOrder::Visit(std::uint32_t index, const Take& take) const
{
  std::uint64_t row = rowCount_;
  if (!keys_.empty()) {
    const auto found = std::lower_bound(keys_.begin(), keys_.end(), index);
    if (found != keys_.end() && *found == index) row = static_cast<std::uint64_t>(found - keys_.begin());
  } else if (index >= firstKey_) {
    row = index - firstKey_;
  }
  if (row >= rowCount_) return;
  if (row / rowsPerPage_ != pageNumber_) CheckPage(row / rowsPerPage_);
  const std::uint8_t* const present = page_.data() + (row % rowsPerPage_) * GetStride();
  const std::uint8_t*       next    = present + CountPresenceBytes(blocks_.size());
  double                    values[6];
  for (std::size_t i = 0; i < blocks_.size(); ++i, next += width_ * sizeof(double)) {
    if ((present[i / 8] >> i % 8 & 1) == 0) continue;
    std::memcpy(values, next, width_ * sizeof(double));
    take(i, values);
  }
}
