#include "import/DatabaseDerivation.h"

#include <map>
#include <set>
#include <string>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "database/BlockSummary.h"
#include "database/DatabaseFolder.h"
#include "database/DatabaseParts.h"
#include "database/Publication.h"
#include "database/StoredDatabase.h"
#include "import/Derivation.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/KindRequests.h"
#include "text/Failure.h"

namespace quilon {

namespace {

using DescriptorSet = std::set<FED_DataDescriptor>;

DescriptorSet DescriptorsOf(const FED_Database& database)
{
  const auto list = database.GetDataDescriptors(FED_DataDescriptorPattern());
  return DescriptorSet(list.begin(), list.end());
}

/// Kinds whose blocks are added to those of another kind and then removed, and the kind that they are added to.
const std::map<int, int> kContributions = {{OnfKind::ElementEnergyContribution, OnfKind::ElementEnergy},
                                           {OnfKind::NodeEnergyContribution, OnfKind::NodeEnergy}};

/// What derivation made of a database.
struct Changes
{
  std::vector<FED_DataDescriptor> added;
  std::vector<FED_DataDescriptor> summed;   // contributions have been added to them
  std::vector<FED_DataDescriptor> removed;  // these contributions

  bool IsEmpty() const noexcept { return added.empty() && summed.empty(); }

  std::vector<FED_DataDescriptor> GetWritten() const
  {
    std::vector<FED_DataDescriptor> written = added;
    written.insert(written.end(), summed.begin(), summed.end());
    return written;
  }
};

Changes Compare(const DescriptorSet& before, const DescriptorSet& after)
{
  Changes changes;
  for (const FED_DataDescriptor& descriptor : after)
    if (!before.contains(descriptor)) changes.added.push_back(descriptor);
  for (const FED_DataDescriptor& descriptor : before) {
    if (after.contains(descriptor)) continue;
    changes.removed.push_back(descriptor);
    FED_DataDescriptor sum = descriptor;
    sum.SetInteger(FED_DataDescriptor::OnfId, kContributions.at(descriptor.GetInteger(FED_DataDescriptor::OnfId)));
    changes.summed.push_back(sum);
  }
  return changes;
}

/// Derives what is requested of all iterations. Blocks without records are not kept.
Changes Derive(FED_Database& database, KindRequests& requests, const TensorSource& source)
{
  const DescriptorSet before = DescriptorsOf(database);
  std::set<int>       iterations;
  for (const FED_DataDescriptor& descriptor : before)
    iterations.insert(descriptor.GetInteger(FED_DataDescriptor::Iteration));
  DerivePrincipals(database, requests, source);
  for (const int iteration : iterations) {
    ThrowIfInterrupted();
    DeriveResults(database, requests, iteration);
  }

  Changes changes = Compare(before, DescriptorsOf(database));
  std::erase_if(changes.added, [&database](const FED_DataDescriptor& descriptor) {
    if (HasRecords(database.GetConstDataBlock(descriptor))) return false;
    database.DeleteDataBlock(descriptor);
    return true;
  });
  return changes;
}

std::vector<DerivedBlock> Report(const Changes& changes, const KindTable& kinds)
{
  std::vector<DerivedBlock> blocks;
  for (const FED_DataDescriptor& descriptor : changes.GetWritten())
    blocks.push_back({descriptor, kinds.GetName(descriptor)});
  return blocks;
}

/// Results go where their sources are, so that memory stays flat.
std::vector<DerivedBlock> DeriveInWorkingDatabase(const DerivationOptions& options)
{
  WatchedFiles       files({}, options.patience);
  FED_ResultDatabase database(options.database, FED_ResultDatabase::ReadWrite, files.GetOptions());
  const KindTable    kinds(database);
  KindRequests       requests(options.requests, kinds);
  // Nobody else writes: the state on the disk is the one that is open here.
  const auto open = [&options, share = options.crew == nullptr ? 1 : options.crew->GetSize()] {
    return StoredDatabase::OpenIfThere(options.database, share);
  };
  DatabaseParts parts(options.database, database, nullptr);
  const Changes changes =
      Derive(database, requests, {nullptr, {options.crew, open, std::to_string(database.GetGeneration())}, &parts});
  if (!changes.IsEmpty()) database.Commit();
  return Report(changes, kinds);
}

/// Without an output the database is an ONF folder, which gets only what it does not have yet.
std::vector<DerivedBlock> DeriveInCopy(const DerivationOptions& options, Listener& listener)
{
  const bool      inPlace = options.output.empty();
  Publication     publication(inPlace ? options.database : options.output, Publication::AnyDatabase, options.patience);
  OpenedDatabase  source(options.database, listener, OpenedDatabase::DeriveNothing);
  const KindTable kinds(source.Get());
  KindRequests    requests(options.requests, kinds);
  const std::vector<FED_DataDescriptor> all    = source.Get().GetDataDescriptors(FED_DataDescriptorPattern());
  FED_Database&                         target = publication.Target();
  source.CopyTo(target, all);
  Readers readers;
  if (options.crew != nullptr) readers = source.GetReaders(*options.crew);
  const Changes changes = Derive(target, requests, {&source.Get(), readers, publication.GetParts()});
  if (!inPlace)
    publication.Publish();
  else if (!changes.IsEmpty())
    publication.PublishBlocks(target, changes.GetWritten(), changes.removed);
  return Report(changes, kinds);
}

/// Does what there is to do for the process that writes.
void HelpToDerive(const DerivationOptions& options, Listener& listener)
{
  OpenedDatabase source(options.database, listener, OpenedDatabase::DeriveNothing);
  // Ids of text get their indices as its blocks are read: all of them in one order, as in the process that copies them.
  for (const FED_DataDescriptor& descriptor : source.Get().GetDataDescriptors(FED_DataDescriptorPattern()))
    source.Get().GetConstDataBlock(descriptor);
  HelpToDerivePrincipals(source.Get(), source.GetReaders(*options.crew));
}

}  // namespace

std::vector<DerivedBlock> DeriveDatabase(const DerivationOptions& options, Listener& listener)
{
  if (options.crew != nullptr && !options.crew->Leads()) {
    HelpToDerive(options, listener);
    return {};
  }
  const bool inPlace = options.output.empty();
  if (inPlace && IsWorkingDatabaseFolder(options.database)) return DeriveInWorkingDatabase(options);
  if (inPlace && !IsOnfFolder(options.database))
    Fail(options.database.string() +
         ": not a database to add results to, expected a working database, an ONF folder or -o OUT");
  return DeriveInCopy(options, listener);
}

}  // namespace quilon
