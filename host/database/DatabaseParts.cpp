#include "database/DatabaseParts.h"

#include <algorithm>

#include <bundled/FED_ResultDatabase.h>

#include "database/FreshDatabase.h"
#include "database/MemoryLimit.h"
#include "database/WatchedFiles.h"

namespace quilon {

namespace {

/// How much of a part stays in memory does not depend on how many are written at a time: what is written would.
FED_ResultDatabaseOptions OptionsOf(WatchedFiles& files)
{
  constexpr std::size_t     kUsual  = std::size_t{32} << 20;
  constexpr std::size_t     kLeast  = std::size_t{1} << 16;
  FED_ResultDatabaseOptions options = files.GetOptions();
  const bool                isUsual = options.memoryLimit == FED_ResultDatabaseOptions::kUsualLimit;
  options.memoryLimit               = isUsual ? kUsual : std::max(options.memoryLimit / 4, kLeast);
  return options;
}

}  // namespace

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
