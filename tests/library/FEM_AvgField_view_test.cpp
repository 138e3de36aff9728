// Which id views a field opens, and that it closes them. The views of the database library change no result by their
// flag, so this program brings a view of its own: its definitions of FED_IdDataBlock come before the library's.

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "FEM_AvgField.h"

namespace {

std::vector<std::string> g_calls;
std::string              g_failingCall;

void Call(const std::string& call)
{
  g_calls.push_back(call);
  if (call == g_failingCall) throw std::runtime_error("the view fails");
}

std::string Text(const double* values, int count)
{
  std::string text;
  for (int k = 0; k < count; ++k) text += ' ' + std::to_string(static_cast<int>(values[k]));
  return text;
}

}  // namespace

FED_IdDataBlock::FED_IdDataBlock(FED_DataBlock& block, FED_IdMapsPool& pool, bool flag)
    : FED_ConstIdDataBlock(block, pool, flag), writableBlock_(block), writablePool_(pool)
{
  Call(std::string("open ") + (flag ? "true" : "false"));
}
FED_IdDataBlock::~FED_IdDataBlock() { g_calls.push_back("close"); }

void FED_IdDataBlock::SetScalar(int id, const double& value)
{
  Call("scalar " + std::to_string(id) + ':' + Text(&value, 1));
}
void FED_IdDataBlock::SetVector(int id, const double* values)
{
  Call("vector " + std::to_string(id) + ':' + Text(values, 3));
}
void FED_IdDataBlock::SetTensor(int id, const double* values)
{
  Call("tensor " + std::to_string(id) + ':' + Text(values, 6));
}

namespace {

using FEM_AvgUtil::AvgData;
using testing::ElementsAre;

template <int N>
void Save(const FEM_AvgField<int, AvgData<N>, N>& field, FED_OnfId onf, bool flag)
{
  g_calls.clear();
  FED_ResultDatabase db;
  field.SaveField(db, FED_DataDescriptor(1, onf), FEM_AvgFieldDefs::SeparateLayers, FEM_AvgFieldDefs::Sum, flag,
                  nullptr);
}

class FEM_AvgFieldView : public testing::Test
{
protected:
  void SetUp() override { g_failingCall.clear(); }
};

TEST_F(FEM_AvgFieldView, EveryLayerOpensAViewWithTheCallersFlagAndClosesItBeforeTheNext)
{
  FEM_AvgField<int, AvgData<1>, 1> field(3);
  field.AddValue(7, 0, {1});
  field.AddValue(-1, 0, {3});
  field.AddValue(5, 0, {2});
  field.AddValue(7, 2, {4});
  Save(field, FED_OnfId(514), true);
  EXPECT_THAT(g_calls, ElementsAre("open true", "scalar 5: 2", "scalar 7: 1", "scalar -1: 3", "close", "open true",
                                   "scalar 7: 4", "close"));
  Save(field, FED_OnfId(514), false);
  EXPECT_EQ(g_calls.front(), "open false");
}

TEST_F(FEM_AvgFieldView, ThreeComponentsAreAVectorAndSixATensor)
{
  FEM_AvgField<int, AvgData<3>, 3> vectors;
  vectors.AddValue(7, {1, 2, 3});
  Save(vectors, FED_OnfId(510), true);
  EXPECT_THAT(g_calls, ElementsAre("open true", "vector 7: 1 2 3", "close"));

  FEM_AvgField<int, AvgData<6>, 6> tensors;
  tensors.AddValue(7, {1, 2, 3, 4, 5, 6});
  Save(tensors, FED_OnfId(521), true);
  EXPECT_THAT(g_calls, ElementsAre("open true", "tensor 7: 1 2 3 4 5 6", "close"));
}

TEST_F(FEM_AvgFieldView, AViewIsClosedWhenARecordFails)
{
  FEM_AvgField<int, AvgData<1>, 1> field(2);
  field.AddValue(5, 0, {2});
  field.AddValue(7, 0, {1});
  field.AddValue(7, 1, {1});
  g_failingCall = "scalar 5: 2";
  EXPECT_THROW(Save(field, FED_OnfId(514), true), std::runtime_error);
  EXPECT_THAT(g_calls, ElementsAre("open true", "scalar 5: 2", "close"));
}

}  // namespace
