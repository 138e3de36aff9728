#include "export/VtuExport.h"

#include <cstring>
#include <sstream>

#include "export/GridSource.h"
#include "ExportSupport.h"

namespace quilon {
namespace {

using namespace quilon_test;

std::string Attribute(const std::string& text, const std::string& name)
{
  const std::size_t begin = text.find(name + "=\"") + name.size() + 2;
  return text.substr(begin, text.find('"', begin) - begin);
}

/// @return bytes of an array of the appended data
template <typename Size>
std::string BytesOf(const std::string& file, const std::string& name)
{
  const std::size_t begin  = file.find("Name=\"" + name + "\"");
  const std::string tag    = file.substr(begin, file.find("/>", begin) - begin);
  const std::size_t data   = file.find("\n   _") + 5;
  const std::size_t offset = data + std::stoul(Attribute(tag, "offset"));
  Size              size   = 0;
  std::memcpy(&size, &file[offset], sizeof size);
  return file.substr(offset + sizeof size, static_cast<std::size_t>(size));
}

template <typename T>
std::vector<T> Numbers(const std::string& bytes)
{
  std::vector<T> numbers(bytes.size() / sizeof(T));
  std::memcpy(numbers.data(), bytes.data(), bytes.size());
  return numbers;
}

class VtuOfTwoCubes : public testing::Test
{
protected:
  std::string Write(std::uint64_t largestNarrow = 0xFFFFFFFFU)
  {
    const Mesh                  mesh   = ReadMesh(database_, 0, "test");
    const std::vector<NamedSet> sets   = ReadSets(database_, 0);
    const auto                  blocks = BlocksOf(database_, {521, 540, 1000});
    const ExportGroups          groups(database_, 0, mesh, blocks);
    const ExportPlan            plan = MakeExportPlan(database_, blocks, {}, groups, ExportGroupForm::Arrays);
    GridSource                  source(database_, mesh, sets, plan, groups);
    std::ostringstream          out;
    WriteVtu(source, 0, out, largestNarrow);
    return out.str();
  }

  void SetUp() override
  {
    WriteMesh(database_, TwoCubeNodes(), TwoCubeElements());
    SetTime(database_, 1, 0.25);
    for (int node = 1; node <= 12; ++node) SetValues(database_, StepKey(521, 1), node, {1.0 * node, 2, 3, 4, 5, 6});
    SetValues(database_, StepKey(540, 1), 10, {7});
  }

  FED_ResultDatabase database_;
};

TEST_F(VtuOfTwoCubes, IsXmlWithTheNumbersBehindIt)
{
  const std::string file = Write();
  EXPECT_EQ(
      file.substr(0, file.find("    <Piece")),
      "<?xml version=\"1.0\"?>\n"
      "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" header_type=\"UInt32\">\n"
      "  <UnstructuredGrid>\n"
      "    <FieldData>\n"
      "      <DataArray type=\"Float64\" Name=\"TimeValue\" NumberOfTuples=\"1\" format=\"ascii\">0.25</DataArray>\n"
      "    </FieldData>\n");
  EXPECT_NE(file.find("<Piece NumberOfPoints=\"12\" NumberOfCells=\"2\">"), std::string::npos);
  EXPECT_NE(file.find("Name=\"nodal-stress\" NumberOfComponents=\"6\" ComponentName0=\"xx\" ComponentName1=\"yy\" "
                      "ComponentName2=\"zz\" ComponentName3=\"xy\" ComponentName4=\"yz\" ComponentName5=\"zx\""),
            std::string::npos);
  EXPECT_EQ(Numbers<std::int64_t>(BytesOf<std::uint32_t>(file, "offsets")), (std::vector<std::int64_t>{8, 16}));
  EXPECT_EQ(Numbers<std::uint8_t>(BytesOf<std::uint32_t>(file, "types")), (std::vector<std::uint8_t>{12, 12}));
  EXPECT_EQ(Numbers<std::int64_t>(BytesOf<std::uint32_t>(file, "connectivity")),
            (std::vector<std::int64_t>{0, 4, 5, 1, 3, 7, 6, 2, 4, 8, 9, 5, 7, 11, 10, 6}));
  EXPECT_EQ(Numbers<double>(BytesOf<std::uint32_t>(file, "nodal-stress"))[66], 12.0);
  EXPECT_EQ(Numbers<double>(BytesOf<std::uint32_t>(file, "element-energy"))[0], 7.0);
  EXPECT_TRUE(file.ends_with("\n  </AppendedData>\n</VTKFile>\n"));
}

TEST_F(VtuOfTwoCubes, HasSizesOf64BitsWhereAnArrayNeedsThem)
{
  const std::string narrow = Write(12 * 6 * sizeof(double));
  EXPECT_NE(narrow.find("header_type=\"UInt32\""), std::string::npos);
  const std::string wide = Write(12 * 6 * sizeof(double) - 1);
  EXPECT_NE(wide.find("header_type=\"UInt64\""), std::string::npos);
  for (const char* name : {"connectivity", "Points", "nodal-stress", "element-energy", "material"})
    EXPECT_EQ(BytesOf<std::uint64_t>(wide, name), BytesOf<std::uint32_t>(narrow, name)) << name;
}

TEST_F(VtuOfTwoCubes, EscapesNames)
{
  database_.SetUserKindName(static_cast<FED_OnfId>(1000), "a<b>&\"c\"");
  SetValues(database_, StepKey(1000, 1), 1, {7});
  EXPECT_NE(Write().find("Name=\"a&lt;b&gt;&amp;&quot;c&quot;\""), std::string::npos);
}

TEST(Pvd, NamesTheFilesWithTheirTimes)
{
  EXPECT_EQ(PvdText({0.1, 2}, {"job-1.vtu", "a&b-2.vtu"}),
            "<?xml version=\"1.0\"?>\n"
            "<VTKFile type=\"Collection\" version=\"0.1\">\n"
            "  <Collection>\n"
            "    <DataSet timestep=\"0.1\" file=\"job-1.vtu\"/>\n"
            "    <DataSet timestep=\"2\" file=\"a&amp;b-2.vtu\"/>\n"
            "  </Collection>\n"
            "</VTKFile>\n");
}

}  // namespace
}  // namespace quilon
