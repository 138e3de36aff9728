#include "import/DatabaseImport.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <memory>
#include <set>
#include <utility>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>
#include <QuilonUtilities/FED_Failure.h>

#include "database/BlockSummary.h"
#include "database/DatabaseFolder.h"
#include "database/Provenance.h"
#include "database/Publication.h"
#include "import/MeshComparison.h"
#include "import/OpenedDatabase.h"
#include "import/PartImport.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "progress/Listener.h"
#include "readers/Readers.h"
#include "selection/KindRequests.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

using Descriptors = std::vector<FED_DataDescriptor>;

constexpr const char* kWaysOut =
    "--replace puts this import in its place, --iteration N beside it, --keep-others mixes the two";

int KindOf(const FED_DataDescriptor& descriptor) { return descriptor.GetInteger(FED_DataDescriptor::OnfId); }

bool IsMatrix(const FED_DataDescriptor& descriptor)
{
  return OnfKind::HoldsMatrices(KindOf(descriptor)) || OnfKind::HoldsElementMatrices(KindOf(descriptor));
}

std::string JoinedNames(const std::vector<std::string>& names)
{
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ",") + name;
  return list;
}

/// @return the options that are not the default
std::vector<ImportSetting> SettingsOf(const DatabaseImportOptions& options)
{
  std::vector<ImportSetting> settings = {{ImportSettingName::Program, options.program}};
  const ImportOptions&       import   = options.import;
  if (options.request) settings.push_back({"request", *options.request});
  if (import.averageBy.border == AverageBy::Material) settings.push_back({"average-by", "material"});
  if (import.averageBy.border == AverageBy::Section) settings.push_back({"average-by", "section"});
  if (import.averageBy.border == AverageBy::Sets)
    settings.push_back({"average-by", JoinedNames(import.averageBy.sets)});
  if (import.deck.includeRule == DeckOptions::SolverOnly) settings.push_back({"include-rule", "solver"});
  if (import.deck.includeRule == DeckOptions::IncludingFile) settings.push_back({"include-rule", "including-file"});
  if (!import.deck.workingDirectory.empty()) settings.push_back({"run-in", import.deck.workingDirectory.string()});
  if (import.deck.allowOutside) settings.push_back({"allow-outside", "yes"});
  if (import.maxDeviation != kMaxDeviation) settings.push_back({"max-deviation", FormatNumber(import.maxDeviation)});
  if (import.strict) settings.push_back({"strict", "yes"});
  if (import.keepWholeSteps) settings.push_back({"keep-whole-steps", "yes"});
  return settings;
}

/// @return whether an import that is on record is the one that is described, and was whole
bool IsSameImport(const ImportProvenance& former, const ImportProvenance& now)
{
  std::vector<ImportSetting> settings = former.settings;
  std::erase_if(settings, [](const ImportSetting& setting) { return setting.name == ImportSettingName::Blocks; });
  const std::vector<ImportedFile> files = former.MainFiles();
  return settings == now.settings &&
         std::equal(files.begin(), files.end(), now.files.begin(), now.files.end(),
                    [](const ImportedFile& a, const ImportedFile& b) { return a.IsSameAs(b); });
}

/// @return how many blocks the iteration had behind the import, more than it can have where that is not on record
std::size_t NumBlocksOf(const ImportProvenance& import)
{
  std::size_t        number = std::numeric_limits<std::size_t>::max();
  const std::string* text   = import.FindSetting(ImportSettingName::Blocks);
  if (text != nullptr) std::from_chars(text->data(), text->data() + text->size(), number);
  return number;
}

bool HoldsResults(const ImportedFile& file)
{
  return file.role == ImportRole::Results || file.role == ImportRole::Prints;
}

bool ShareResults(const std::vector<ImportProvenance>& former, const ImportProvenance& now)
{
  for (const ImportProvenance& import : former)
    for (const ImportedFile& file : import.files)
      for (const ImportedFile& other : now.files)
        if (HoldsResults(file) && file.role == other.role && file.name == other.name) return true;
  return false;
}

std::string ListFiles(const std::vector<ImportProvenance>& imports)
{
  std::string list;
  for (const ImportProvenance& import : imports) list += (list.empty() ? "" : ", ") + import.ListFiles();
  return list;
}

/// @return "12 nodes (1-5, 9) and 1 element (3)"
std::string DescribeDifference(const MeshComparison& mesh)
{
  std::set<int> nodes = mesh.nodesOfFirst;
  nodes.insert(mesh.nodesOfSecond.begin(), mesh.nodesOfSecond.end());
  std::set<int> elements = mesh.elementsOfFirst;
  elements.insert(mesh.elementsOfSecond.begin(), mesh.elementsOfSecond.end());
  elements.insert(mesh.elementsOfOtherNodes.begin(), mesh.elementsOfOtherNodes.end());
  std::string text;
  if (!nodes.empty()) text = Counted(nodes.size(), "node") + " (" + FormatIds(nodes) + ")";
  if (!elements.empty())
    text += (text.empty() ? "" : " and ") + Counted(elements.size(), "element") + " (" + FormatIds(elements) + ")";
  return text;
}

class DatabaseImport
{
public:
  DatabaseImport(const std::vector<fs::path>& files, const fs::path& output, const DatabaseImportOptions& options,
                 LockPatience patience, Listener& listener)
      : files_(files),
        output_(output),
        options_(options),
        listener_(listener),
        iteration_(options.import.iteration),
        publication_(output, Publication::AnyDatabase, std::move(patience))
  {
    if (options.request) requests_ = std::make_unique<KindRequests>(*options.request, KindTable());
  }

  DatabaseImportReport Run()
  {
    OpenFormer();
    DescribeFiles();
    if (IsUnchanged()) {
      report_.isUnchanged = true;
      return std::move(report_);
    }
    ImportOptions options = options_.import;
    options.requests      = requests_.get();
    options.parts         = publication_.GetParts();
    FED_Database& target  = publication_.Target();
    try {
      report_.results = ImportResults(files_, target, options);
    } catch (const RefusedImport&) {
      throw;
    } catch (const BrokenBehindResults& failure) {
      NameTheWay(failure);
    } catch (const FED_Failure& failure) {
      if (options.keepWholeSteps && HasBlocks(target)) {
        now_.settings.push_back({ImportSettingName::IsWhole, "no"});
        Publish();
        listener_.Note(output_.string() + ": kept " + Counted(report_.blocks, "block") +
                       " of the steps that were whole");
      } else if (!options.keepWholeSteps && HasResults(target)) {
        NameTheWay(failure);
      }
      throw;
    }
    if (!HasBlocks(target)) Fail(files_.front().string() + ": no results, nothing is written");
    Publish();
    return std::move(report_);
  }

private:
  [[noreturn]] static void NameTheWay(const FED_Failure& failure)
  {
    Fail(failure.GetMessage() + "; --keep-whole-steps writes the results before it that are whole");
  }

  static bool HasBlocks(const FED_Database& database)
  {
    return !database.GetDataDescriptors(FED_DataDescriptorPattern()).empty();
  }

  static bool HasResults(const FED_Database& database)
  {
    const Descriptors blocks = database.GetDataDescriptors(FED_DataDescriptorPattern());
    return std::any_of(blocks.begin(), blocks.end(), HasResultStep);
  }

  Descriptors BlocksOf(const FED_Database& database) const
  {
    FED_DataDescriptorPattern pattern;
    pattern.SetEqual(FED_DataDescriptor::Iteration, iteration_);
    Descriptors blocks = database.GetDataDescriptors(pattern);
    std::erase_if(blocks, [](const FED_DataDescriptor& block) { return OnfKind::IsProvenance(KindOf(block)); });
    return blocks;
  }

  /// Behind the publication, which keeps other writers off: what is found stays as it is.
  void OpenFormer()
  {
    if (!IsWorkingDatabase(output_) && !IsOnfFolder(output_)) return;
    former_        = std::make_unique<OpenedDatabase>(output_, listener_);
    formerBlocks_  = BlocksOf(former_->Get());
    formerImports_ = ReadProvenance(former_->Get(), iteration_);
  }

  ImportedFile Describe(const fs::path& path, const std::string& role, const std::string& name) const
  {
    if (!options_.import.progress) return DescribeFile(path, role, name);
    const std::uint64_t size = StatusOf(path).size;
    return DescribeFile(path, role, name, [&](std::uint64_t bytes) {
      options_.import.progress("looking at " + path.filename().string(), bytes, size);
    });
  }

  void DescribeFiles()
  {
    const JobFiles found = FindReaders(files_);
    const auto     add   = [this](const fs::path& path, const char* role) {
      if (!path.empty()) now_.files.push_back(Describe(path, role, path.filename().string()));
    };
    if (found.deck) {
      deck_ = found.deck->Path();
      add(deck_, ImportRole::Deck);
    }
    for (const ResultJob& job : found.jobs) {
      if (job.results) add(job.results->Path(), ImportRole::Results);
      if (job.prints) add(job.prints->Path(), ImportRole::Prints);
      if (job.status) add(job.status->Path(), ImportRole::Status);
    }
    add(options_.import.groups, ImportRole::Groups);
    if (options_.request && KindRequests::IsPath(*options_.request)) add(*options_.request, ImportRole::Requests);
    now_.settings = SettingsOf(options_);
  }

  /// @return how a file that the deck includes is called, from the folder of the deck
  std::string NameOfInclude(const fs::path& path) const
  {
    const fs::path folder = fs::absolute(deck_).lexically_normal().parent_path();
    return fs::absolute(path).lexically_normal().lexically_proximate(folder).generic_string();
  }

  /// What an import of the same files wrote is not written again, unless blocks of it have been taken out since.
  bool IsUnchanged() const
  {
    if (options_.former == FormerResults::Replaced || formerImports_.empty()) return false;
    if (formerImports_.size() > 1 && options_.former != FormerResults::Kept) return false;
    const ImportProvenance& former = formerImports_.back();
    if (!IsSameImport(former, now_) || formerBlocks_.size() < NumBlocksOf(former)) return false;
    return std::all_of(former.files.begin(), former.files.end(), [this](const ImportedFile& file) {
      if (file.role != ImportRole::Include) return true;
      return Describe(deck_.parent_path() / file.name, file.role, file.name).IsSameAs(file);
    });
  }

  /// @throws FED_Failure when what the iteration has is of another mesh
  void RequireSameMesh()
  {
    const MeshComparison mesh = CompareMeshes(former_->Get(), publication_.Target(), iteration_);
    const std::string    held = output_.string() + ": iteration " + std::to_string(iteration_) + " holds ";
    if (!mesh.hasFirst || !mesh.hasSecond) {
      // Without a mesh only the names of the files tell.
      if (ShareResults(formerImports_, now_)) return;
      const std::string files = ListFiles(formerImports_);
      Fail(held + "results" + (files.empty() ? "" : " of " + files) + ", and no mesh tells whether those of " +
           now_.ListFiles() + " belong to them; " + kWaysOut);
    }
    if (mesh.IsSame()) return;
    // A deck has nodes and elements that results leave out: points of reference, springs, masses.
    const bool hadDeck = std::any_of(formerImports_.begin(), formerImports_.end(),
                                     [](const ImportProvenance& import) { return import.HasRole(ImportRole::Deck); });
    const bool hasDeck = now_.HasRole(ImportRole::Deck);
    if (!formerImports_.empty() && hadDeck != hasDeck && (hasDeck ? mesh.IsFirstWithin() : mesh.IsSecondWithin()))
      return;
    Fail(held + "another mesh, " + DescribeDifference(mesh) + " differ; " + kWaysOut);
  }

  /// Names of types stand beside the types: where these are replaced, names that no import brings are of others.
  bool IsOfTypesBefore(const FED_DataDescriptor& block)
  {
    return KindOf(block) == OnfKind::DeckType &&
           publication_.Target().HasDataBlock(FED_DataDescriptor(iteration_, OnfKind::ElementType));
  }

  void FindGone()
  {
    Descriptors former = formerBlocks_;
    if (options_.former != FormerResults::Replaced) std::erase_if(former, IsMatrix);
    if (former.empty()) return;
    if (options_.former == FormerResults::OfSameMesh) RequireSameMesh();
    report_.formerFiles = ListFiles(formerImports_);
    const KindTable kinds(former_->Get());
    for (const FED_DataDescriptor& block : former) {
      if (publication_.Target().HasDataBlock(block)) {
        ++report_.numReplaced;
      } else if (options_.former != FormerResults::Kept || IsOfTypesBefore(block)) {
        report_.gone.push_back(block);
        ++report_.goneByKind[kinds.GetName(block)];
      }
    }
  }

  void Publish()
  {
    FED_Database& target = publication_.Target();
    FindGone();
    for (const fs::path& include : report_.results.includes)
      now_.files.push_back(Describe(include, ImportRole::Include, NameOfInclude(include)));
    Descriptors written = BlocksOf(target);
    std::erase_if(written,
                  [&target](const FED_DataDescriptor& block) { return !HasRecords(target.GetConstDataBlock(block)); });
    const std::size_t numKept = formerBlocks_.size() - report_.numReplaced - report_.gone.size();
    now_.settings.push_back({ImportSettingName::Blocks, std::to_string(written.size() + numKept)});

    IterationProvenance provenance{iteration_, {}};
    if (options_.former == FormerResults::Kept) provenance.imports = formerImports_;
    provenance.imports.push_back(now_);
    WriteProvenance(target, provenance);
    publication_.Publish(report_.gone);
    report_.blocks = written.size();
  }

  const std::vector<fs::path>&    files_;
  const fs::path&                 output_;
  const DatabaseImportOptions&    options_;
  Listener&                       listener_;
  int                             iteration_;
  Publication                     publication_;
  std::unique_ptr<KindRequests>   requests_;  // null: all that can be
  std::unique_ptr<OpenedDatabase> former_;    // null where nothing is there yet
  Descriptors                     formerBlocks_;
  std::vector<ImportProvenance>   formerImports_;
  fs::path                        deck_;
  ImportProvenance                now_;
  DatabaseImportReport            report_;
};

/// Does what there is to do for the process that writes.
void HelpToImport(const std::vector<fs::path>& files, const DatabaseImportOptions& options)
{
  ImportOptions               import = options.import;
  std::optional<KindRequests> requests;
  if (options.request) import.requests = &requests.emplace(*options.request, KindTable());
  HelpToReadParts(files, import);
}

}  // namespace

DatabaseImportReport ImportIntoDatabase(const std::vector<fs::path>& files, const fs::path& output,
                                        const DatabaseImportOptions& options, LockPatience patience, Listener& listener)
{
  if (options.import.crew != nullptr && !options.import.crew->Leads()) {
    HelpToImport(files, options);
    return {};
  }
  return DatabaseImport(files, output, options, std::move(patience), listener).Run();
}

}  // namespace quilon
