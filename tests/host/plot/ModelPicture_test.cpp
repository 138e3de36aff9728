#include "plot/ModelPicture.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kinds/KindTable.h"
#include "mesh/Mesh.h"
#include "PictureBytes.h"
#include "QuilonDbConnector/FED_DataDescriptorPattern.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"
#include "selection/Selection.h"
#include "TwoBricks.h"

namespace quilon {
namespace {

using namespace quilon_test;
using testing::HasSubstr;

template <typename Work>
std::string MessageOf(const Work& work)
{
  try {
    work();
  } catch (const FED_Failure& failure) {
    return failure.what();
  }
  return "no failure";
}

class ModelPictures : public testing::Test
{
protected:
  void SetUp() override { FillTwoBricks(database_); }

  FieldChoice Choose(const std::string& selection) const
  {
    const KindTable kinds(database_);
    return ChooseField(Selection(selection, kinds).Apply(database_.GetDataDescriptors(FED_DataDescriptorPattern())),
                       kinds, selection, "db");
  }

  ModelPicture Draw(const std::string& selection, const ModelPictureOptions& options,
                    PictureFormat format = PictureFormat::Png) const
  {
    std::optional<FieldChoice> choice;
    if (!selection.empty()) choice = Choose(selection);
    return DrawModel(database_, 0, choice, options, format, "some/where/db.fed");
  }

  std::string DrawMessage(const std::string& selection, const ModelPictureOptions& options) const
  {
    return MessageOf([&] { Draw(selection, options); });
  }

  /// Colours alone, so that pixels tell where the model is.
  static ModelPictureOptions Plain(const char* view)
  {
    ModelPictureOptions options;
    options.component = "xx";
    options.view      = ParseView(view);
    options.size      = {560, 400};
    options.lines     = MeshLines::None;
    options.hasMarks  = false;
    options.hasAxes   = false;
    options.isLit     = false;
    return options;
  }

  FED_ResultDatabase database_;
};

/// The rectangle of pixels of the model: those that differ from the white around it, left of the colour bar and below
/// the title.
struct Extent
{
  int left = 1 << 20, right = -1, top = 1 << 20, bottom = -1;

  explicit Extent(const Bitmap& bitmap)
  {
    for (int y = 64; y < bitmap.height; ++y)
      for (int x = 0; x < bitmap.width - 98; ++x)
        if (PixelAt(bitmap, x, y) != 0xFFFFFFFFU) {
          left   = std::min(left, x);
          right  = std::max(right, x);
          top    = std::min(top, y);
          bottom = std::max(bottom, y);
        }
  }
};

// Stress xx is greatest at node 12, (2, 0, 1), and least at node 1, (0, 0, 0). Table: at which corner of the picture of
// the bricks each view shows node 12, by hand, and whether the bricks hide it.
TEST_F(ModelPictures, TheGreatestIsMarkedAtThePixelsOfItsNode)
{
  const struct
  {
    const char* view;
    bool        isRight, isTop, isHidden;
  } rows[] = {{"front", true, true, false}, {"back", false, true, true},   {"top", true, false, false},
              {"bottom", true, true, true}, {"right", false, true, false}, {"left", true, true, true}};
  for (const auto& row : rows) {
    const ModelPicture picture = Draw("stress", Plain(row.view));
    ASSERT_TRUE(picture.greatest && picture.least) << row.view;
    EXPECT_EQ(picture.greatest->id, 12) << row.view;
    EXPECT_EQ(picture.greatest->value, 24.0) << row.view;
    EXPECT_EQ(picture.least->id, 1) << row.view;
    EXPECT_EQ(picture.least->value, 2.0) << row.view;
    EXPECT_EQ(picture.greatest->isHidden, row.isHidden) << row.view;
    const Extent extent(ReadPng(picture.bytes));
    // The corner of the model is the outer edge of its outermost pixel.
    EXPECT_NEAR(picture.greatest->place.x, row.isRight ? extent.right + 1.0 : extent.left, 1.0) << row.view;
    if (std::string(row.view) != "right" && std::string(row.view) != "left") {
      EXPECT_NEAR(picture.greatest->place.y, row.isTop ? extent.top : extent.bottom + 1.0, 1.0) << row.view;
    }

    ModelPictureOptions marked = Plain(row.view);
    marked.hasMarks            = true;
    const ModelPicture drawn   = Draw("stress", marked);
    const auto         centre  = PixelAt(ReadPng(drawn.bytes), drawn.greatest->place.x, drawn.greatest->place.y);
    EXPECT_EQ(centre, row.isHidden ? 0xFFFFFFFFU : 0xFF111117U) << row.view << ": hollow where it is hidden";
  }
}

TEST_F(ModelPictures, PixelsHaveTheColoursOfTheirValues)
{
  // In the front view the face y = 0 is seen: nodes 1, 5, 9 below and 4, 8, 12 above, values twice the ids.
  const ModelPicture picture = Draw("stress", Plain("front"));
  const Bitmap       bitmap  = ReadPng(picture.bytes);
  const Extent       extent(bitmap);
  const ColourScale  scale(ColourMap::Viridis, {2.0, 24.0});
  for (const double across : {0.1, 0.25, 0.6, 0.9})
    for (const double up : {0.2, 0.5, 0.8}) {
      const double x = extent.left + across * (extent.right - extent.left);
      const double y = extent.bottom - up * (extent.bottom - extent.top);
      // Along x the ids grow by 4 a brick, upward by 3.
      const double value    = 2.0 * (1.0 + 8.0 * across + 3.0 * up);
      const auto   expected = scale.PixelAt(value);
      const auto   found    = PixelAt(bitmap, x, y);
      // A pixel of 280 is less than a hundredth of the colours at most.
      for (const unsigned shift : {0U, 8U, 16U})
        EXPECT_NEAR((found >> shift) & 0xFFU, (expected >> shift) & 0xFFU, 4.0) << across << ' ' << up;
    }
}

TEST_F(ModelPictures, TheSameInputIsTheSameFileByteForByte)
{
  ModelPictureOptions options;
  options.size        = {400, 300};
  options.deformation = Deformation{0.02};
  options.cut         = SectionPlane{{1, 0.5, 0}, {0, -1, 0.2}};
  for (const PictureFormat format : {PictureFormat::Png, PictureFormat::Svg, PictureFormat::Pdf}) {
    const std::string first = Draw("displacement", options, format).bytes;
    EXPECT_EQ(first, Draw("displacement", options, format).bytes);
    EXPECT_GT(first.size(), 1000u);
  }
}

TEST_F(ModelPictures, VectorFormatsHoldTheSurfaceAsOneBitmap)
{
  ModelPictureOptions options;
  options.size            = {400, 300};
  const std::string svg   = Draw("displacement", options, PictureFormat::Svg).bytes;
  std::size_t       count = 0;
  for (std::size_t at = svg.find("<image"); at != std::string::npos; at = svg.find("<image", at + 1)) ++count;
  EXPECT_EQ(count, 1u);
  EXPECT_THAT(svg, HasSubstr("<linearGradient"));
  EXPECT_THAT(svg, HasSubstr("<symbol"));
  EXPECT_LT(svg.size(), 300000u);
}

TEST_F(ModelPictures, APartIsTheElementsThatAreAskedFor)
{
  ModelPictureOptions options = Plain("front");
  const Extent        whole(ReadPng(Draw("stress", options).bytes));
  options.elements        = std::vector<int>{101};
  const ModelPicture left = Draw("stress", options);
  const Extent       part(ReadPng(left.bytes));
  EXPECT_EQ(left.greatest->value, 16.0) << "of its own nodes";
  // Two cubes side by side are twice as wide as high, one is a square.
  EXPECT_NEAR(whole.right - whole.left, 2.0 * (whole.bottom - whole.top), 3.0);
  EXPECT_NEAR(part.right - part.left, part.bottom - part.top, 2.0);
  options.elements = std::vector<int>{7};
  EXPECT_EQ(DrawMessage("stress", options),
            "some/where/db.fed: the part that is asked for has no elements in the mesh");
}

TEST_F(ModelPictures, ACutTakesAwayTheSideOfItsNormal)
{
  ModelPictureOptions options = Plain("front");
  options.cut                 = SectionPlane{{1.5, 0, 0}, {1, 0, 0}};
  const Extent whole(ReadPng(Draw("stress", Plain("front")).bytes));
  const Extent cut(ReadPng(Draw("stress", options).bytes));
  EXPECT_EQ(cut.left, whole.left);
  EXPECT_NEAR(cut.right - cut.left, 0.75 * (whole.right - whole.left), 2.0);

  // Cut half way along y and seen from the front: the cut faces are seen, whose values are those in the middle.
  options.cut          = SectionPlane{{0, 0.5, 0}, {0, -1, 0}};
  const Bitmap bitmap  = ReadPng(Draw("stress", options).bytes);
  const auto   picture = Draw("stress", options);
  const Extent extent(bitmap);
  // Node 2 is above node 1 along y by 1, node 3 above node 4 by -1; in the middle of the sheet they are even.
  const ColourScale scale(ColourMap::Viridis, *picture.range);
  const auto        expected = scale.PixelAt(2.0 * 6.5);
  const auto        found    = PixelAt(bitmap, 0.5 * (extent.left + extent.right), 0.5 * (extent.top + extent.bottom));
  for (const unsigned shift : {0U, 8U, 16U}) EXPECT_NEAR((found >> shift) & 0xFFU, (expected >> shift) & 0xFFU, 4.0);
}

TEST_F(ModelPictures, APlaneThatMissesTheModelIsRefusedWithWhereTheModelIs)
{
  ModelPictureOptions options = Plain("front");
  options.cut                 = SectionPlane{{5, 0, 0}, {2, 0, 0}};
  EXPECT_EQ(
      DrawMessage("stress", options),
      "some/where/db.fed: the plane misses the model, which lies from -5 to -3 along its normal, counted from its "
      "point");
  options.cut = SectionPlane{{5, 0, 0}, {-1, 0, 0}};
  EXPECT_THAT(DrawMessage("stress", options), HasSubstr("misses the model, which lies from 3 to 5"));
}

TEST_F(ModelPictures, DeformationMovesNodesByTheFactor)
{
  // Node n moves by (2 n, -2 n, 0) at time 2.
  ModelPictureOptions options = Plain("top");
  options.deformation         = Deformation{0.1};
  const ModelPicture picture  = Draw("stress", options);
  EXPECT_EQ(picture.factor, 0.1);
  const Extent extent(ReadPng(picture.bytes));
  // x from 0 + 0.2 to 2 + 2.4 (node 12); y from 0 - 2.4 (node 12) to 1 - 0.4 (node 2, as node 3 is at 0.4).
  EXPECT_NEAR(static_cast<double>(extent.right - extent.left) / (extent.bottom - extent.top), 4.2 / 3.0, 0.03);

  // A tenth of the size, sqrt(6), to the largest displacement, 24 sqrt(2), is 0.0072.
  options.deformation = Deformation{};
  EXPECT_NEAR(Draw("stress", options).factor, 0.005, 1e-15);
  EXPECT_EQ(Draw("stress", Plain("top")).factor, 0.0);
}

TEST_F(ModelPictures, ValuesAtElementsAreOneColourAnElement)
{
  ModelPictureOptions options = Plain("front");
  options.component           = "xy";
  const ModelPicture picture  = Draw("element-stress", options);
  EXPECT_EQ(picture.greatest->id, 102);
  EXPECT_EQ(picture.greatest->value, 4.0);
  EXPECT_EQ(picture.least->id, 101);
  const Bitmap      bitmap = ReadPng(picture.bytes);
  const Extent      extent(bitmap);
  const ColourScale scale(ColourMap::Viridis, {2.0, 4.0});
  const double      y = 0.5 * (extent.top + extent.bottom);
  EXPECT_EQ(PixelAt(bitmap, extent.left + 10, y), 0xFF000000U | scale.PixelAt(2.0));
  EXPECT_EQ(PixelAt(bitmap, extent.right - 10, y), 0xFF000000U | scale.PixelAt(4.0));
}

TEST_F(ModelPictures, AveragesOfGroupsDifferAtTheirBorder)
{
  for (const int group : {1, 2}) {
    FED_DataDescriptor descriptor = StepBlock(OnfKind::NodalStrain, 1, 1);
    descriptor.SetInteger(OnfIndex::Group, group);
    FED_IdDataBlock block(database_.GetOrCreateDataBlock(descriptor, 0), database_.GetIdMapsPool(), true);
    for (int node = group == 1 ? 1 : 5; node <= (group == 1 ? 8 : 12); ++node) {
      const double tensor[6] = {10.0 * group, 0, 0, 0, 0, 0};
      block.SetTensor(node, tensor);
    }
  }
  const FieldChoice choice = Choose("nodal-strain");
  ASSERT_EQ(choice.blocks.size(), 2u);
  const Mesh        mesh = ReadMesh(database_, 0, "db");
  const ModelField  field(database_, mesh, choice, Component("xx", OnfKind::NodalStrain), "db");
  const std::size_t shared = *mesh.FindNode(5);
  EXPECT_EQ(field.At(*mesh.FindElement(101), shared), 10.0);
  EXPECT_EQ(field.At(*mesh.FindElement(102), shared), 20.0);
  EXPECT_EQ(Draw("nodal-strain", Plain("front")).greatest->value, 20.0);
}

TEST_F(ModelPictures, WhatCannotBeShownIsRefusedWithWhatCan)
{
  EXPECT_EQ(MessageOf([&] { Choose("time"); }),
            "db: 'time' selects no values at nodes or elements, found time, expected a kind such as displacement, "
            "nodal-stress or element-energy");
  EXPECT_THAT(MessageOf([&] { Choose("displacement,nodal-stress"); }),
              HasSubstr("selects several kinds, expected one of displacement, nodal-stress"));
  EXPECT_EQ(Choose("stress").numSteps, 3);
  EXPECT_EQ(Choose("stress@lc=1").blocks.front().GetInteger(FED_DataDescriptor::Substep), 2) << "the last step";

  ModelPictureOptions options;
  options.component = "misess";
  EXPECT_THAT(DrawMessage("stress", options), HasSubstr("mises"));
  options.component   = "";
  options.deformation = Deformation{};
  EXPECT_EQ(DrawMessage("", options), "--deform is of a result step, expected a selection with it");
}

TEST_F(ModelPictures, WithoutASelectionTheMeshAloneIsDrawn)
{
  const ModelPicture picture = Draw("", Plain("iso"));
  EXPECT_FALSE(picture.range.has_value());
  EXPECT_FALSE(picture.greatest.has_value());
  // The colours of two materials.
  const Bitmap bitmap = ReadPng(picture.bytes);
  EXPECT_GT(std::count(bitmap.pixels.begin(), bitmap.pixels.end(), 0xFFB5C4D6U), 1000);
  EXPECT_GT(std::count(bitmap.pixels.begin(), bitmap.pixels.end(), 0xFFDEC7A3U), 1000);
}

TEST(ModelPicture, AMeshWithoutCoordinatesOrElementsIsRefused)
{
  FED_ResultDatabase empty;
  EXPECT_THAT(MessageOf([&] { DrawModel(empty, 0, std::nullopt, {}, PictureFormat::Png, "db"); }),
              HasSubstr("db: no coordinates (block 516)"));
  FED_IdDataBlock coordinates(empty.GetOrCreateDataBlock(FED_DataDescriptor(0, OnfKind::Coordinates), 0),
                              empty.GetIdMapsPool(), true);
  const double    origin[3] = {0, 0, 0};
  coordinates.SetVector(1, origin);
  EXPECT_THAT(MessageOf([&] { DrawModel(empty, 0, std::nullopt, {}, PictureFormat::Png, "db"); }),
              HasSubstr("db: the mesh has no elements (blocks 595 and 596)"));
}

}  // namespace
}  // namespace quilon
