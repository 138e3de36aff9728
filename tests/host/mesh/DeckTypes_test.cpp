#include "mesh/DeckTypes.h"

#include <string>
#include <utility>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

#include "QuilonDbConnector/FED_IdDataBlock.h"

namespace {

using namespace quilon;

void WriteType(FED_Database& database, int iteration, int element, const std::string& name)
{
  FED_IdDataBlock   view(database.GetOrCreateDataBlock(FED_DataDescriptor(iteration, OnfKind::DeckType), 0),
                         database.GetIdMapsPool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.GetDataRecord().SetString(1, name);
  view.SetRecord(element, record);
  view.DeleteIdDataRecord(record);
}

TEST(DeckTypes, AreThoseOfTheDeckAndElseThoseOfTheShape)
{
  FED_ResultDatabase database;
  for (const auto& [element, name] : {std::pair(30, "C3D8R"), std::pair(7, "SPRINGA"), std::pair(12, "C3D8R")})
    WriteType(database, 0, element, name);
  WriteType(database, 3, 30, "C3D8I");
  const DeckTypes types(database, 0);
  EXPECT_EQ(types.NameOf(30, 1), "C3D8R");
  EXPECT_EQ(types.NameOf(12, 1), "C3D8R");
  EXPECT_EQ(types.NameOf(7, 0), "SPRINGA") << "a type without a shape has a name";
  EXPECT_EQ(types.NameOf(8, 0), "none");
  EXPECT_EQ(types.NameOf(31, 4), "C3D20");
  EXPECT_EQ(types.Find(31), nullptr);
  EXPECT_EQ(DeckTypes(database, 3).NameOf(30, 1), "C3D8I");
}

TEST(DeckTypes, OfADatabaseWithoutThemAreThoseOfTheShape)
{
  const FED_ResultDatabase database;
  EXPECT_EQ(DeckTypes(database, 0).NameOf(1, 1), "C3D8");
  EXPECT_EQ(DeckTypes().NameOf(1, 3), "C3D4");
}

}  // namespace
