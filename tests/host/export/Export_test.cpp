#include "export/Export.h"

#include <fstream>
#include <iterator>
#include <string>

#include <bundled/FED_BlockCopy.h>

#include "database/StoredDatabase.h"
#include "DistantCrew.h"
#include "ExportSupport.h"
#include "progress/Crew.h"
#include "TempFolder.h"

namespace quilon {
namespace {

using namespace quilon_test;

std::string ReadFile(const std::filesystem::path& path)
{
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class ExportOfTwoCubes : public testing::Test
{
protected:
  void SetUp() override { Fill(database_); }

  static void Fill(FED_ResultDatabase& database)
  {
    WriteMesh(database, TwoCubeNodes(), TwoCubeElements());
    for (int substep = 1; substep <= 3; ++substep) {
      SetTime(database, substep, 0.5 * substep);
      for (int node = 1; node <= 12; ++node)
        SetValues(database, StepKey(510, substep), node, {1.0 * node, 1.0 * substep, 0});
    }
  }

  ExportReport Run(const std::filesystem::path& output, const std::vector<FED_DataDescriptor>& blocks)
  {
    return Export(database_, {"job.fed", blocks, {}, ExportGroupForm::Arrays, output}, listener_);
  }

  std::size_t CountFiles() const
  {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder_.GetPath()), std::filesystem::directory_iterator()));
  }

  TempFolder         folder_;
  FED_ResultDatabase database_;
  RecordingListener  listener_;
};

TEST_F(ExportOfTwoCubes, ReportsWhatItWrote)
{
  const ExportReport report = Run(folder_ / "job.vtkhdf", BlocksOf(database_));
  EXPECT_EQ(report.files, (std::vector<std::filesystem::path>{folder_ / "job.vtkhdf"}));
  EXPECT_EQ(report.numPoints, 12U);
  EXPECT_EQ(report.numCells, 2U);
  EXPECT_EQ(report.arrays, (std::vector<std::string>{"displacement"}));
  EXPECT_EQ(report.times, (std::vector<double>{0.5, 1, 1.5}));
  EXPECT_EQ(report.leftOut, (std::vector<std::string>{"scalar-history", "element-nodes", "element-type"}));
  EXPECT_TRUE(listener_.notes.empty());
}

TEST_F(ExportOfTwoCubes, EqualResultsGiveEqualBytes)
{
  FED_ResultDatabase again;
  Fill(again);
  for (const char* name : {"job.vtkhdf", "job.pvd", "job.csv"}) {
    Run(folder_ / name, BlocksOf(database_, {510}));
    const std::string first = ReadFile(folder_ / name);
    EXPECT_FALSE(first.empty());
    Export(again, {"job.fed", BlocksOf(again, {510}), {}, ExportGroupForm::Arrays, folder_ / name}, listener_);
    EXPECT_EQ(ReadFile(folder_ / name), first) << name;
  }
}

// Each thread reads the database through an object of its own.
TEST_F(ExportOfTwoCubes, AFileAStepIsTheSameWhoeverShares)
{
  SetValues(database_, StepKey(510, 2), 99, {1, 2, 3});
  const std::filesystem::path path = folder_ / "job.fed";
  {
    FED_ResultDatabase stored(path, FED_ResultDatabase::Create);
    for (const FED_DataDescriptor& block : BlocksOf(database_)) FED_CopyBlock(database_, stored, block);
    stored.Commit();
  }
  const auto stored   = StoredDatabase::OpenIfThere(path);
  const auto blocks   = BlocksOf(stored->Get());
  const auto exported = [&](Crew* crew, const std::string& name) {
    ExportRequest request{"job.fed", blocks, {}, ExportGroupForm::Arrays, folder_ / name / "job.pvd"};
    request.readers = {crew, [&] { return stored->OpenAgain(path, 2); }};
    std::filesystem::create_directory(folder_ / name);
    EXPECT_EQ(Export(stored->Get(), request, listener_).files.size(), 4U);
    std::vector<std::string> files;
    for (const char* file : {"job.pvd", "job-1.vtu", "job-2.vtu", "job-3.vtu"})
      files.push_back(ReadFile(folder_ / name / file));
    return files;
  };
  ThreadCrew  three(3);
  DistantCrew distant;
  const auto  one = exported(nullptr, "one");
  EXPECT_EQ(exported(&three, "three"), one);
  EXPECT_EQ(exported(&distant, "distant"), one);
  for (const std::string& note : listener_.notes) EXPECT_EQ(note, "1 node with values, but not in the mesh: 99");
  EXPECT_EQ(listener_.notes.size(), 3U);
}

TEST_F(ExportOfTwoCubes, WritesAFileAStepBesideTheirList)
{
  const ExportReport report = Run(folder_ / "job.pvd", BlocksOf(database_, {510}));
  EXPECT_EQ(report.files, (std::vector<std::filesystem::path>{folder_ / "job.pvd", folder_ / "job-1.vtu",
                                                              folder_ / "job-2.vtu", folder_ / "job-3.vtu"}));
  for (const auto& file : report.files) EXPECT_TRUE(std::filesystem::exists(file)) << file;
  EXPECT_EQ(CountFiles(), 4U);
}

TEST_F(ExportOfTwoCubes, AMeshAloneIsOneStep)
{
  const ExportReport report = Run(folder_ / "mesh.vtu", BlocksOf(database_, {516}));
  EXPECT_TRUE(report.arrays.empty());
  EXPECT_TRUE(report.times.empty());
  EXPECT_EQ(report.numCells, 2U);
}

TEST_F(ExportOfTwoCubes, ATableNeedsNoMesh)
{
  database_.DeleteDataBlock(FED_DataDescriptor(0, OnfKind::Coordinates));
  Run(folder_ / "job.csv", {StepKey(510, 1)});
  EXPECT_EQ(ReadFile(folder_ / "job.csv").substr(0, 61),
            "id,displacement-x,displacement-y,displacement-z\n1,1,1,0\n2,2,1");
  EXPECT_EQ(FailureOf([&] { Run(folder_ / "job.vtu", {StepKey(510, 1)}); }),
            "job.fed: no coordinates (block 516), expected the mesh of a .frd or a deck, as quilon import reads it");
}

TEST_F(ExportOfTwoCubes, RefusesSeveralStepsForOneVtu)
{
  const std::string output = (folder_ / "job.vtu").string();
  EXPECT_EQ(FailureOf([&] { Run(output, BlocksOf(database_, {510})); }),
            output +
                ": expected one step for a .vtu, found 3; a .pvd or .vtkhdf holds all of them, --steps last "
                "selects one");
  EXPECT_EQ(CountFiles(), 0U);
}

TEST_F(ExportOfTwoCubes, RefusesOutputsBeforeAnyWork)
{
  EXPECT_EQ(FailureOf([] { CheckExportOutput("job.vtk"); }),
            "job.vtk: expected a name that ends in .vtkhdf, .vtu, .pvd or .csv");
  EXPECT_NE(FailureOf([this] { CheckExportOutput(folder_.GetPath()); }), "");
  EXPECT_EQ(FailureOf([] { CheckExportOutput("JOB.VTU"); }), "");
}

TEST_F(ExportOfTwoCubes, WhatFailsLeavesFilesAsTheyWere)
{
  for (const char* name : {"job.vtkhdf", "job.pvd"}) {
    std::ofstream(folder_ / name) << "old";
    // The last step has records of another form.
    if (database_.HasDataBlock(StepKey(510, 3))) {
      database_.DeleteDataBlock(StepKey(510, 3));
      database_.CreateDataBlock(StepKey(510, 3), 0, 0, "D");
      FED_IdDataBlock(database_.GetDataBlock(StepKey(510, 3)), database_.GetIdMapsPool(), true).SetScalar(1, 7);
    }
    EXPECT_NE(FailureOf([&] { Run(folder_ / name, BlocksOf(database_, {510})); }), "") << name;
    EXPECT_EQ(ReadFile(folder_ / name), "old");
    EXPECT_EQ(CountFiles(), 1U) << name;
    std::filesystem::remove(folder_ / name);
  }
}

TEST_F(ExportOfTwoCubes, RefusesATableWithPoints)
{
  SetValues(database_, StepKey(551, 1, 1), 1, {1});
  const ExportRequest request{"job.fed", BlocksOf(database_, {551}), {}, ExportGroupForm::Points, folder_ / "job.csv"};
  EXPECT_EQ(FailureOf([&] { Export(database_, request, listener_); }),
            "a table has no points: expected --groups arrays");
}

TEST_F(ExportOfTwoCubes, NotesWhatUsersMayNotExpect)
{
  SetTime(database_, 3, 0.25);
  SetValues(database_, StepKey(510, 1), 13, {1, 2, 3});
  Run(folder_ / "job.vtkhdf", BlocksOf(database_, {510}));
  EXPECT_EQ(listener_.notes,
            (std::vector<std::string>{"the times of the steps do not ascend, which other tools expect: select one "
                                      "analysis or load case",
                                      "1 node with values, but not in the mesh: 13"}));
  listener_.notes.clear();
  SetValues(database_, StepKey(510, 4), 1, {1, 2, 3});
  Run(folder_ / "job.vtkhdf", BlocksOf(database_, {510}));
  EXPECT_EQ(listener_.notes.front(), "the times of some steps are not known: the steps are counted from 1 instead");
}

}  // namespace
}  // namespace quilon
