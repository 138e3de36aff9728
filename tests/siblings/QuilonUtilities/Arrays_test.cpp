#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_DoubleArray.h"
#include "QuilonUtilities/FED_IntArray.h"
#include "QuilonUtilities/QuilonContainer.h"

namespace {

template <typename Array>
class ArrayTest : public ::testing::Test
{};

using ArrayTypes = ::testing::Types<FED_IntArray, FED_DoubleArray>;
TYPED_TEST_SUITE(ArrayTest, ArrayTypes);

template <typename Array>
using ElementOf = std::remove_pointer_t<decltype(std::declval<Array&>().GetData())>;

TYPED_TEST(ArrayTest, IsEmptyByDefault)
{
  TypeParam array;
  EXPECT_EQ(array.GetSize(), 0U);
  EXPECT_TRUE(array == TypeParam());
}

TYPED_TEST(ArrayTest, CopiesTheVectorItIsMadeFrom)
{
  std::vector<ElementOf<TypeParam>> values = {3, -1, 4};
  const TypeParam                   array  = values;
  values[0]                                = 99;
  ASSERT_EQ(array.GetSize(), 3U);
  EXPECT_EQ(array.GetData()[0], 3);
  EXPECT_EQ(array.GetData()[1], -1);
  EXPECT_EQ(array.GetData()[2], 4);
}

TYPED_TEST(ArrayTest, CopiesAreDeep)
{
  TypeParam       array = std::vector<ElementOf<TypeParam>>{1, 2};
  const TypeParam copy(array);
  TypeParam       assigned;
  assigned           = array;
  array.GetData()[0] = 7;
  EXPECT_EQ(copy.GetData()[0], 1);
  EXPECT_EQ(assigned.GetData()[0], 1);
}

TYPED_TEST(ArrayTest, MovesItsElements)
{
  TypeParam   array = std::vector<ElementOf<TypeParam>>{1, 2};
  const auto* data  = array.GetData();
  TypeParam   moved(std::move(array));
  EXPECT_EQ(moved.GetData(), data);
  TypeParam assigned;
  assigned = std::move(moved);
  EXPECT_EQ(assigned.GetData(), data);
  EXPECT_EQ(assigned.GetSize(), 2U);
}

TYPED_TEST(ArrayTest, ResizingKeepsTheFirstElementsAndFillsWithZero)
{
  TypeParam array = std::vector<ElementOf<TypeParam>>{5, 6, 7};
  array.Resize(1);
  ASSERT_EQ(array.GetSize(), 1U);
  EXPECT_EQ(array.GetData()[0], 5);
  array.Resize(3);
  ASSERT_EQ(array.GetSize(), 3U);
  EXPECT_EQ(array.GetData()[0], 5);
  EXPECT_EQ(array.GetData()[1], 0);
  EXPECT_EQ(array.GetData()[2], 0);
  array.Resize(0);
  EXPECT_EQ(array.GetSize(), 0U);
}

TYPED_TEST(ArrayTest, ComparesLengthAndElements)
{
  using Values = std::vector<ElementOf<TypeParam>>;
  EXPECT_TRUE(TypeParam(Values{1, 2}) == TypeParam(Values{1, 2}));
  EXPECT_FALSE(TypeParam(Values{1, 2}) == TypeParam(Values{1, 3}));
  EXPECT_FALSE(TypeParam(Values{1, 2}) == TypeParam(Values{1}));
  EXPECT_FALSE(TypeParam(Values{}) == TypeParam(Values{0}));
}

TEST(DoubleArray, ComparesElementsAsDoubles)
{
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(FED_DoubleArray(std::vector<double>{0.0}) == FED_DoubleArray(std::vector<double>{-0.0}));
  EXPECT_FALSE(FED_DoubleArray(std::vector<double>{nan}) == FED_DoubleArray(std::vector<double>{nan}));
}

TEST(Span, ShowsTheCallersArrayWithoutCopying)
{
  double                        values[3] = {1.0, 2.0, 3.0};
  QuilonContainer::Span<double> span(values, 3);
  span.GetData()[1] = 5.0;
  EXPECT_EQ(values[1], 5.0);
  EXPECT_EQ(span.GetSize(), 3U);
  const QuilonContainer::Span<const double> none(nullptr, 0);
  EXPECT_EQ(none.GetData(), nullptr);
  EXPECT_EQ(none.GetSize(), 0U);
}

}  // namespace
