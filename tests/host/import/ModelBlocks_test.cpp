#include "import/ModelBlocks.h"

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/ScratchRecord.h"
#include "import/ImportJob.h"
#include "import/ResultFile.h"
#include "mesh/Mesh.h"
#include "text/Format.h"

namespace quilon {
namespace {

using testing::ElementsAre;

/// A result file of a program of its own: one tetrahedron with sets, a material and displacements.
class OtherReader final : public ResultReader
{
public:
  const std::filesystem::path& Path() const noexcept override { return path_; }
  bool                         HasEndMark() const noexcept override { return true; }

  void Read(ResultSink& sink, const ReadProgress&) const override
  {
    const std::vector<int>    nodes       = {1, 2, 3, 4};
    const std::vector<double> coordinates = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
    const std::vector<int>    base        = {3, 1, 2};
    const std::vector<int>    all         = {7};
    const MeshElement         element     = {.id = 7, .type = 3, .material = 2, .nodes = nodes};
    const ModelSet            nodeSets[]  = {{"BASE", base}, {"EMPTY", {}}};
    const ModelSet            bodies[]    = {{"BODY", all}};
    const ModelMaterial       materials[] = {{.name = "AIR"}, {"STEEL", 7.8e-9, 210000.0, 0.3}};
    sink.OnNodes(nodes, coordinates);
    sink.OnElements({&element, 1});
    sink.OnNodeSets(nodeSets);
    sink.OnElementSets(bodies);
    sink.OnMaterials(materials);

    ResultField field;
    field.step                       = {.step = 1, .substep = 1, .value = 1.0};
    field.name                       = "MOVES";
    field.identity                   = "MOVES";
    field.quantity                   = FieldQuantity::Displacement;
    field.numValues                  = 3;
    const std::vector<double> values = {0, 0, 0.5};
    const ResultRow           row    = {.id = 4, .values = values};
    if (sink.OnFieldBegin(field)) sink.OnRows(field, {&row, 1});
    sink.OnFieldEnd(field);
  }

private:
  std::filesystem::path path_ = "job.out";
};

class ModelBlocksTest : public testing::Test
{
protected:
  void Read(ResultFile::Pass pass = ResultFile::PassAll)
  {
    const ImportContext context{nullptr, {}, model_};
    UserKindPool        kinds(database_);
    ResultJob           files;
    files.results     = std::make_unique<OtherReader>();
    files.resultsName = "job.out";
    ImportJob job(database_, options_, context, kinds, record_, files);
    ResultFile(*files.results, pass, job).Read();
  }

  /// @return "NAME density youngsModulus poissonRatio" of a material
  std::string Material(int number) const
  {
    const FED_DataBlock& block = database_.GetConstDataBlock(FED_DataDescriptor(0, OnfKind::Material));
    const ScratchRecord  record(block);
    block.GetRecord(database_.GetIdMapsPool().FindIndex(OnfKind::EntityOf(OnfKind::Material), number), *record);
    std::string text = record->GetString(1);
    for (std::size_t field = 2; field <= 4; ++field) text += ' ' + FormatNumber(record->GetDouble(field));
    return text;
  }

  FED_ResultDatabase database_;
  ImportOptions      options_;
  ImportRecord       record_;
  ModelBlocks        model_{database_, 0, record_};
};

TEST_F(ModelBlocksTest, KeepsSetsAndMaterialsOfAReaderOfAnyProgram)
{
  Read();
  const std::vector<NamedSet> sets = ReadSets(database_, 0);
  ASSERT_EQ(sets.size(), 3u);
  EXPECT_EQ(sets[0].name, "BASE");
  EXPECT_FALSE(sets[0].ofElements);
  EXPECT_THAT(sets[0].ids, ElementsAre(3, 1, 2));
  EXPECT_THAT(sets[1].ids, ElementsAre());
  EXPECT_EQ(sets[2].name, "BODY");
  EXPECT_TRUE(sets[2].ofElements);
  EXPECT_THAT(sets[2].ids, ElementsAre(7));
  EXPECT_EQ(Material(1), "AIR nan nan nan");
  EXPECT_EQ(Material(2), "STEEL 7.8e-09 210000 0.3");
  EXPECT_THAT(record_.Skipped(), testing::IsEmpty());
}

TEST_F(ModelBlocksTest, WhoTellsFirstIsHeard)
{
  const std::vector<int> ids = {4};
  model_.AddNodeSets(std::vector<ModelSet>{{"TIP", ids}});
  model_.AddElementSets({});  // says nothing
  Read();
  const std::vector<NamedSet> sets = ReadSets(database_, 0);
  ASSERT_EQ(sets.size(), 2u);
  EXPECT_EQ(sets[0].name, "TIP");
  EXPECT_EQ(sets[1].name, "BODY");
  EXPECT_EQ(Material(2), "STEEL 7.8e-09 210000 0.3");
  ASSERT_EQ(record_.Skipped().size(), 1u);
  EXPECT_EQ(record_.Skipped()[0].reason, "sets of nodes that another file has told already");
  EXPECT_EQ(record_.Skipped()[0].rows, 2u);
}

TEST_F(ModelBlocksTest, AFileThatIsReadTwiceTellsThemOnce)
{
  Read(ResultFile::PassMesh);
  Read(ResultFile::PassResults);
  EXPECT_EQ(ReadSets(database_, 0).size(), 3u);
  EXPECT_THAT(record_.Skipped(), testing::IsEmpty());
}

}  // namespace
}  // namespace quilon
