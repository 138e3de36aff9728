#include "import/DeckImporter.h"

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "import/ImportRecord.h"
#include "import/ModelBlocks.h"

namespace quilon {
namespace {

using testing::ElementsAre;

/// A deck of a program of its own: two elements of three nodes.
class OtherDeck final : public InputDeck
{
public:
  std::vector<std::filesystem::path> Includes() const override { return {}; }
  void ForEachNode(const std::function<void(int, const std::array<double, 3>&)>&) const override {}
  void ForEachElement(const std::function<void(int, const InputElement&)>&) const override {}
  const std::array<double, 3>* FindNode(int) const noexcept override { return nullptr; }
  std::optional<InputElement>  FindElement(int) const noexcept override { return std::nullopt; }
  std::string                  PlaceOfElement(int) const override { return {}; }
  std::vector<ModelSet>        NodeSets() const override { return {}; }
  std::vector<ModelSet>        ElementSets() const override { return {{"ALL", all_}, {"UPPER", upper_}}; }
  std::vector<ModelMaterial>   Materials() const override { return {{.name = "AIR"}, {.name = "STEEL"}}; }
  std::vector<InputSection>    Sections() const override
  {
    return {{"ALL", "STEEL", ""}, {"UPPER", "AIR", "TILTED"}, {"NONE", "STEEL", ""}};
  }
  std::vector<InputOrientation> Orientations() const override
  {
    return {{"TILTED", {.a = {0, 1, 0}, .b = {1, 0, 0}, .rotationAxis = 3, .rotationAngle = 30}}};
  }
  std::optional<std::size_t>  FindElementSet(const std::string&) const override { return std::nullopt; }
  std::vector<InputTiedNodes> TiedNodes() const override { return {{"glue", {4, 9}}}; }
  std::vector<int>            SplitNodes() const override { return {}; }
  std::optional<bool>         HasLargeDisplacements(int) const noexcept override { return std::nullopt; }

private:
  std::vector<int> all_   = {11, 12};
  std::vector<int> upper_ = {12};
};

// The last section that names an element holds, and one without a set is passed over but counts.
TEST(ImportedDeck, NumbersAreThePlacesInADeckOfAnyProgram)
{
  const ImportedDeck   deck(std::make_unique<OtherDeck>());
  const ElementSection lower = deck.SectionOf(11);
  EXPECT_THAT((std::array{lower.section, lower.material, lower.orientation}), ElementsAre(1, 2, 0));
  const ElementSection upper = deck.SectionOf(12);
  EXPECT_THAT((std::array{upper.section, upper.material, upper.orientation}), ElementsAre(2, 1, 1));
  const ElementSection other = deck.SectionOf(13);
  EXPECT_THAT((std::array{other.section, other.material, other.orientation}), ElementsAre(0, 0, 0));
}

TEST(SaveModel, WritesWhatADeckOfAnyProgramSaysBesideItsMesh)
{
  const ImportedDeck deck(std::make_unique<OtherDeck>());
  FED_ResultDatabase database;
  ImportRecord       record;
  ModelBlocks        blocks(database, 2, record);
  SaveModel(deck, blocks, database, 2);
  const auto numRecords = [&database](FED_OnfId onf) {
    return dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(FED_DataDescriptor(2, onf)))
        .GetRecordCount();
  };
  EXPECT_EQ(numRecords(OnfKind::ElementSection), 2U);
  EXPECT_EQ(numRecords(OnfKind::Orientation), 1U);
  EXPECT_EQ(numRecords(OnfKind::TiedNodes), 1U);
  EXPECT_EQ(numRecords(OnfKind::ElementSet), 2U);
  EXPECT_EQ(numRecords(OnfKind::Material), 2U);
  EXPECT_FALSE(database.HasDataBlock(FED_DataDescriptor(2, OnfKind::NodeSet)));
}

}  // namespace
}  // namespace quilon
