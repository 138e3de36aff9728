#include "database/DatabaseParts.h"

#include <algorithm>
#include <numeric>

#include <bundled/FED_ResultDatabase.h>

#include "database/FreshDatabase.h"
#include "database/MemoryLimit.h"
#include "database/WatchedFiles.h"

namespace quilon {

namespace {

/// @return a fourth of what a user allows, 64 KiB at least; 16 MiB while nobody has set any
std::size_t FourthOfMemory()
{
  constexpr std::size_t kUsual = std::size_t{64} << 20;
  constexpr std::size_t kLeast = std::size_t{1} << 16;
  return std::max(MemoryLimit::GetOr(kUsual) / 4, kLeast);
}

/// How much of a part stays in memory does not depend on how many are written at a time: what is written would.
FED_ResultDatabaseOptions OptionsOf(WatchedFiles& files)
{
  FED_ResultDatabaseOptions options = files.GetOptions();
  options.memoryLimit               = FourthOfMemory();
  return options;
}

}  // namespace

std::uint64_t LeastPartBytes() { return FourthOfMemory(); }

std::vector<std::size_t> DivideIntoParts(const std::vector<std::uint64_t>& bytes, std::size_t most)
{
  const std::uint64_t      total  = std::accumulate(bytes.begin(), bytes.end(), std::uint64_t{0});
  const std::uint64_t      count  = std::clamp<std::uint64_t>(total / LeastPartBytes(), 1, most);
  const std::uint64_t      enough = (total + count - 1) / count;
  std::vector<std::size_t> ends;
  std::uint64_t            part = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0 && part >= enough) {
      ends.push_back(i);
      part = 0;
    }
    part += bytes[i];
  }
  if (!bytes.empty()) ends.push_back(bytes.size());
  return ends;
}

FED_PartBase DatabaseParts::GetBase() const { return database_.GetPartBase(); }

std::vector<PartTicket> DatabaseParts::GiveOut(std::size_t count)
{
  std::vector<PartTicket> tickets;
  for (const FED_DatabasePart& part : database_.ReserveParts(count)) tickets.push_back({folder_.string(), part});
  return tickets;
}

void DatabaseParts::Take(const PartTicket& ticket, std::uint64_t segment)
{
  for (const FED_DataDescriptor& descriptor : database_.TakePart(ticket.part, segment))
    if (fresh_ != nullptr) fresh_->Show(descriptor);
}

WrittenPart::WrittenPart(const PartTicket& ticket, const FED_PartBase& base)
    : files_(std::make_unique<WatchedFiles>()),
      database_(std::make_unique<FED_ResultDatabase>(ticket.folder, ticket.part, base, OptionsOf(*files_)))
{}

WrittenPart::~WrittenPart() = default;

std::uint64_t WrittenPart::Finish() { return database_->FinishPart(); }

}  // namespace quilon
