#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <CLI/CLI.hpp>

#include "commands/MatrixCommands.h"
#include "commands/NumberOptions.h"
#include "commands/WaitOption.h"
#include "database/DatabaseFolder.h"
#include "database/Publication.h"
#include "FED_YaleMatrixStorage.h"
#include "FEM_ResultUtil.h"
#include "import/OpenedDatabase.h"
#include "kinds/UserKindPool.h"
#include "matrix/MatrixBlocks.h"
#include "matrix/MatrixFile.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/QuilonDatabaseUtils.h"
#include "selection/Selection.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

struct Options
{
  std::vector<std::string> files;
  std::string              output;
  std::string              target;
  std::string              dofs;
  int                      index = 1;
  std::optional<int>       element;
  int                      pair    = 0;
  bool                     swapped = false;
  double                   wait    = 0;
  bool                     json    = false;
};

/// One line of the report.
struct StoredMatrix
{
  std::string        file;
  FED_DataDescriptor descriptor;
  int                index;  // or the element
  std::size_t        numRows;
  std::size_t        numColumns;
  std::size_t        numValues;
};

/// What is stored goes beside what the database has in the same blocks: these are taken from it first.
class TargetDatabase
{
public:
  TargetDatabase(const std::string& output, Publication& publication, Console& console) : target_(publication.Target())
  {
    const bool isThere = IsOnfFolder(output) || IsWorkingDatabase(output);
    if (isThere) existing_ = std::make_unique<OpenedDatabase>(output, console, OpenedDatabase::DeriveNothing);
  }

  FED_Database& Get() noexcept { return target_; }

  /// To be called for every block before it is written.
  void Take(const FED_DataDescriptor& descriptor)
  {
    if (!existing_ || !existing_->Get().HasDataBlock(descriptor) || target_.HasDataBlock(descriptor)) return;
    const std::unique_ptr<FED_ResultDatabase> copy = existing_->Copy({descriptor});
    QuilonDatabaseUtils::copy_datablocks(*copy, target_, FED_DataDescriptorPattern(),
                                         QuilonDatabaseUtils::CopyEmptyBlocks);
  }

private:
  FED_Database&                   target_;
  std::unique_ptr<OpenedDatabase> existing_;
};

int OnfOf(matrix::MatrixFile::Role role)
{
  switch (role) {
    case matrix::MatrixFile::Stiffness:
      return OnfKind::StiffnessMatrix;
    case matrix::MatrixFile::Mass:
      return OnfKind::MassMatrix;
    case matrix::MatrixFile::Untold:
      break;
  }
  return 0;
}

/// @return 0 to 2
int PairOf(const Options& options, const matrix::MatrixFile& file, const std::string& name)
{
  if (options.pair != 0) return options.pair - 1;
  switch (file.role) {
    case matrix::MatrixFile::Stiffness:
      return 0;
    case matrix::MatrixFile::Mass:
      return 1;
    case matrix::MatrixFile::Untold:
      break;
  }
  Fail(name + ": nothing says which matrix of the element it is, expected --pair 1, 2 or 3");
}

class Import
{
public:
  Import(const Options& options, CommandContext& context, Publication& publication)
      : options_(options),
        context_(context),
        target_(options.output, publication, context.console),
        kinds_(target_.Get())
  {}

  void Store(const std::string& name)
  {
    const matrix::MatrixFile file =
        matrix::ReadMatrixFile(name, options_.dofs, [&](std::uint64_t done, std::uint64_t total) {
          ThrowIfInterrupted();
          context_.console.Progress("reading " + name, done, total);
        });
    const bool isWhole = !options_.element;
    const int  onf =
        isWhole ? OnfOf(file.role) : OnfKind::StiffnessMatrix;  // of an element's matrix only the keys are used
    FED_DataDescriptor descriptor = TargetOf(onf, name);
    if (isWhole)
      StoreWhole(file, descriptor, name);
    else
      descriptor = StoreOfElement(file, descriptor, name);
    stored_.push_back({name, descriptor, options_.element.value_or(options_.index), file.matrix.GetNumRows(),
                       file.matrix.GetNumColumns(), file.matrix.GetValues().GetSize()});
  }

  const std::vector<StoredMatrix>& GetStored() const noexcept { return stored_; }

private:
  FED_DataDescriptor TargetOf(int onf, const std::string& name)
  {
    if (options_.target.empty() && onf == 0)
      Fail(name +
           ": nothing says what the matrix is, expected --as KIND, such as stiffness, mass or a name of your own");
    return matrix::ParseTarget(options_.target, onf, kinds_);
  }

  void StoreWhole(const matrix::MatrixFile& file, const FED_DataDescriptor& descriptor, const std::string& name)
  {
    CheckTwice(descriptor, name);
    Put(file.matrix, descriptor);
    if (file.dofs.empty()) return;
    const FED_DataDescriptor dofs   = matrix::DofDescriptor(descriptor, kinds_);
    const auto               former = dofsOf_.emplace(dofs, file.dofs);
    if (!former.second && former.first->second != file.dofs)
      Fail(name + ": its degrees of freedom are not those of the matrix before it, expected the same or other keys");
    Put(matrix::DofMatrix(file.dofs), dofs);
  }

  FED_DataDescriptor StoreOfElement(const matrix::MatrixFile& file, const FED_DataDescriptor& descriptor,
                                    const std::string& name)
  {
    const int                            pair = PairOf(options_, file, name);
    const FEM_ResultUtil::MatricesOnfLoc six(descriptor);
    const auto& [first, second] = six.pairs[static_cast<std::size_t>(pair)];
    CheckTwice(first, name);
    target_.Take(first);
    target_.Take(second);
    matrix::StoreElementMatrix(target_.Get(), descriptor, *options_.element, pair, options_.swapped, file.matrix,
                               file.dofs, name);
    return options_.swapped ? first : second;
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

  const Options&                                         options_;
  CommandContext&                                        context_;
  TargetDatabase                                         target_;
  UserKindPool                                           kinds_;
  std::set<FED_DataDescriptor>                           targets_;
  std::map<FED_DataDescriptor, std::vector<matrix::Dof>> dofsOf_;
  std::vector<StoredMatrix>                              stored_;
};

void Report(const Options& options, Output& output, const std::vector<StoredMatrix>& stored, std::size_t blocks)
{
  const char* const place = options.element ? "element" : "index";
  if (options.json) {
    Json list = Json::array();
    for (const StoredMatrix& one : stored)
      list.push_back({{"file", one.file},
                      {"block", ToSelectionText(one.descriptor)},
                      {place, one.index},
                      {"rows", one.numRows},
                      {"columns", one.numColumns},
                      {"values", one.numValues}});
    const Json report{{"output", options.output}, {"blocks", blocks}, {"matrices", std::move(list)}};
    return output.Write(JsonText(report, 2) + '\n');
  }
  output.Write(options.output + ": " + Counted(blocks, "block") + " written\n");
  for (const StoredMatrix& one : stored)
    output.Write("  " + ToSelectionText(one.descriptor) + ", " + place + ' ' + std::to_string(one.index) + ": " +
                 std::to_string(one.numRows) + " x " + std::to_string(one.numColumns) + ", " +
                 Counted(one.numValues, "value") + " of " + one.file + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  if (options.index < 0) Fail("--index is " + std::to_string(options.index) + ", expected 0 or more");
  if (options.pair < 0 || options.pair > 3) Fail("--pair is " + std::to_string(options.pair) + ", expected 1, 2 or 3");
  if (!options.element && (options.pair != 0 || options.swapped))
    Fail("--pair and --swapped are for the matrix of an element, expected --element ID with them");

  Publication publication(options.output, Publication::AnyDatabase, PatienceOf(options.wait, context.console));
  Import      import(options, context, publication);
  for (const std::string& file : options.files) import.Store(file);
  const std::size_t blocks = publication.Publish();
  Report(options, context.output, import.GetStored(), blocks);
}

}  // namespace

CommandFunction DefineMatrixImport(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("FILE", options->files, "Matrices: .sti and .mas of the solver, Matrix Market, Yale text")->required();
  app.add_option("-o,--output", options->output,
                 "Database to write, .fed or ONF folder; other matrices and blocks of it stay")
      ->required()
      ->type_name("OUT");
  app.add_option("--as", options->target,
                 "What it is: stiffness, mass, an ONF id or a name of your own, and its keys (default: by extension)")
      ->type_name("KIND@KEY=VALUE,...");
  AddIntegerOption(app, "--index", options->index, "Matrix index in its block (default: 1)");
  app.add_option("--dof", options->dofs, "The .dof file that names the rows (default: the one beside a .sti or .mas)")
      ->type_name("FILE");
  AddIntegerOption(app, "--element", options->element, "Keep it in full as the matrix of this element");
  AddIntegerOption(app, "--pair", options->pair, "Which matrix of the element: 1 (.sti), 2 (.mas) or 3");
  app.add_flag("--swapped", options->swapped, "Matrix in the first half of the pair, description in the second");
  AddWaitOption(app, options->wait);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "The degrees of freedom of a .dof file are kept beside the matrix, in a block 'matrix-dofs' with the same keys.\n"
      "\n"
      "Examples:\n"
      "  quilon matrix import job.sti job.mas -o job.onf\n"
      "  quilon matrix import damping.mtx --as damping@lc=2 -o job.onf\n"
      "  quilon matrix import part.sti --element 12 -o job.onf");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
