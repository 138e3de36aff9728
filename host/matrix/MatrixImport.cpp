#include "matrix/MatrixImport.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include <bundled/FED_BlockCopy.h>
#include <bundled/OnfKinds.h>

#include "database/DatabaseFolder.h"
#include "database/Publication.h"
#include "database/StoredDatabase.h"
#include "FED_YaleMatrixStorage.h"
#include "FEM_ResultUtil.h"
#include "kinds/UserKindPool.h"
#include "matrix/MatrixBlocks.h"
#include "matrix/MatrixFile.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"
#include "text/Failure.h"

namespace quilon::matrix {

namespace {

/// What is stored goes beside what the database has in the same blocks: these are taken from it first.
class TargetDatabase
{
public:
  TargetDatabase(const std::filesystem::path& output, Publication& publication) : target_(publication.Target())
  {
    if (IsOnfFolder(output) || IsWorkingDatabase(output)) existing_ = StoredDatabase::OpenIfThere(output);
  }

  FED_Database& Get() noexcept { return target_; }

  /// To be called for every block before it is written.
  void Take(const FED_DataDescriptor& descriptor)
  {
    if (!existing_ || !existing_->Get().HasDataBlock(descriptor) || target_.HasDataBlock(descriptor)) return;
    FED_CopyBlock(existing_->Get(), target_, descriptor);
  }

private:
  FED_Database&                   target_;
  std::unique_ptr<StoredDatabase> existing_;  // null where nothing stands
};

int OnfOf(MatrixFile::Role role)
{
  switch (role) {
    case MatrixFile::Stiffness:
      return OnfKind::StiffnessMatrix;
    case MatrixFile::Mass:
      return OnfKind::MassMatrix;
    case MatrixFile::Untold:
      break;
  }
  return 0;
}

/// @return 0 to 2
int PairOf(const MatrixImportOptions& options, MatrixFile::Role role, const std::string& name)
{
  if (options.pair != 0) return options.pair - 1;
  switch (role) {
    case MatrixFile::Stiffness:
      return 0;
    case MatrixFile::Mass:
      return 1;
    case MatrixFile::Untold:
      break;
  }
  Fail(name + ": nothing says which matrix of the element it is, expected --pair 1, 2 or 3");
}

class Import
{
public:
  Import(const MatrixImportOptions& options, Publication& publication, Listener& listener)
      : options_(options), listener_(listener), target_(options.output, publication), kinds_(target_.Get())
  {}

  /// Names what the options do not say of a file, before time goes into reading.
  void RequireTarget(const std::string& name)
  {
    TargetOf(RoleOf(name), name);
    if (options_.element) PairOf(options_, RoleOf(name), name);
  }

  void Store(const std::string& name)
  {
    const MatrixFile   file       = ReadMatrixFile(name, options_.dofs, [&](std::uint64_t done, std::uint64_t total) {
      ThrowIfInterrupted();
      listener_.Progress("reading " + name, done, total);
    });
    FED_DataDescriptor descriptor = TargetOf(file.role, name);
    if (!options_.element)
      StoreWhole(file, descriptor, name);
    else
      descriptor = StoreOfElement(file, descriptor, name);
    stored_.push_back({name, descriptor, options_.element.value_or(options_.index), file.matrix.GetNumRows(),
                       file.matrix.GetNumColumns(), file.matrix.GetValues().GetSize()});
  }

  const std::vector<StoredMatrix>& GetStored() const noexcept { return stored_; }

private:
  FED_DataDescriptor TargetOf(MatrixFile::Role role, const std::string& name)
  {
    // Of an element's matrix only the keys are used.
    const int onf = options_.element ? OnfKind::StiffnessMatrix : OnfOf(role);
    if (options_.target.empty() && onf == 0)
      Fail(name +
           ": nothing says what the matrix is, expected --as KIND, such as stiffness, mass or a name of your own");
    return ParseTarget(options_.target, onf, kinds_);
  }

  void StoreWhole(const MatrixFile& file, const FED_DataDescriptor& descriptor, const std::string& name)
  {
    CheckTwice(descriptor, name);
    Put(file.matrix, descriptor);
    if (file.dofs.empty()) return;
    const FED_DataDescriptor dofs   = DofDescriptor(descriptor, kinds_);
    const auto               former = dofsOf_.emplace(dofs, file.dofs);
    if (!former.second && former.first->second != file.dofs)
      Fail(name + ": its degrees of freedom are not those of the matrix before it, expected the same or other keys");
    Put(DofMatrix(file.dofs), dofs);
  }

  FED_DataDescriptor StoreOfElement(const MatrixFile& file, const FED_DataDescriptor& descriptor,
                                    const std::string& name)
  {
    const int                            pair = PairOf(options_, file.role, name);
    const FEM_ResultUtil::MatricesOnfLoc six(descriptor);
    const auto& [first, second] = six.pairs[static_cast<std::size_t>(pair)];
    CheckTwice(first, name);
    target_.Take(first);
    target_.Take(second);
    StoreElementMatrix(target_.Get(), descriptor, *options_.element, pair, options_.isSwapped, file.matrix, file.dofs,
                       name);
    return options_.isSwapped ? first : second;
  }

  void CheckTwice(const FED_DataDescriptor& descriptor, const std::string& name)
  {
    if (!targets_.insert(descriptor).second)
      Fail(name + ": a matrix for " + ToSelectionText(descriptor) + " was given before, expected one for each");
  }

  void Put(const FED_YaleMatrix& matrix, const FED_DataDescriptor& descriptor)
  {
    target_.Take(descriptor);
    FED_YaleMatrixStorage::Store(matrix, target_.Get(), descriptor, static_cast<std::size_t>(options_.index));
  }

  const MatrixImportOptions&                     options_;
  Listener&                                      listener_;
  TargetDatabase                                 target_;
  UserKindPool                                   kinds_;
  std::set<FED_DataDescriptor>                   targets_;
  std::map<FED_DataDescriptor, std::vector<Dof>> dofsOf_;
  std::vector<StoredMatrix>                      stored_;
};

}  // namespace

MatrixImportReport ImportMatrices(const MatrixImportOptions& options, Listener& listener)
{
  if (options.index < 0) Fail("--index is " + std::to_string(options.index) + ", expected 0 or more");
  if (options.pair < 0 || options.pair > 3) Fail("--pair is " + std::to_string(options.pair) + ", expected 1, 2 or 3");
  if (!options.element && (options.pair != 0 || options.isSwapped))
    Fail("--pair and --swapped are for the matrix of an element, expected --element ID with them");

  Publication publication(options.output, Publication::AnyDatabase, options.patience);
  Import      import(options, publication, listener);
  for (const std::string& file : options.files) import.RequireTarget(file);
  for (const std::string& file : options.files) import.Store(file);
  MatrixImportReport report;
  report.blocks   = publication.Publish();
  report.matrices = import.GetStored();
  return report;
}

}  // namespace quilon::matrix
