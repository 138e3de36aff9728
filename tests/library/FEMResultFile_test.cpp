#include <FEMResultFile.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>

namespace {

class Reader : public FEMResultFile
{
public:
  using FEMResultFile::FEMResultFile;

  explicit Reader(bool& isDestroyed, FED_Database& database)
      : FEMResultFile("a", 0, 0, database), destroyed_(&isDestroyed)
  {}
  Reader(const Reader&) = default;
  ~Reader() override
  {
    if (destroyed_ != nullptr) *destroyed_ = true;
  }

  void Read() override { ++reads; }

  std::string&        FileName() { return fileName_; }
  std::string&        SpareText() { return spareText_; }
  int                 First() const { return firstNumber_; }
  int                 Second() const { return secondNumber_; }
  const FED_Database* Database() const { return &database_; }
  const FED_Database* SecondDatabase() const { return &secondDatabase_; }

  int reads = 0;

private:
  bool* destroyed_ = nullptr;
};

}  // namespace

TEST(FEMResultFile, OneDatabaseIsBothReferences)
{
  FED_ResultDatabase database;
  Reader             reader("model.frd", 3, -4, database);
  EXPECT_EQ(reader.FileName(), "model.frd");
  EXPECT_EQ(reader.SpareText(), "");
  EXPECT_EQ(reader.First(), 3);
  EXPECT_EQ(reader.Second(), -4);
  EXPECT_EQ(reader.Database(), &database);
  EXPECT_EQ(reader.SecondDatabase(), &database);
}

TEST(FEMResultFile, TwoDatabasesAreKeptApart)
{
  FED_ResultDatabase first;
  FED_ResultDatabase second;
  Reader             reader("model.frd", 1, 2, first, second);
  EXPECT_EQ(reader.Database(), &first);
  EXPECT_EQ(reader.SecondDatabase(), &second);
}

TEST(FEMResultFile, ACopySharesTheDatabasesAndHasItsOwnStrings)
{
  FED_ResultDatabase first;
  FED_ResultDatabase second;
  Reader             reader("model.frd", 1, 2, first, second);
  reader.SpareText() = "spare";
  Reader copy(reader);
  EXPECT_EQ(copy.Database(), &first);
  EXPECT_EQ(copy.SecondDatabase(), &second);
  EXPECT_EQ(copy.First(), 1);
  EXPECT_EQ(copy.Second(), 2);
  EXPECT_EQ(copy.FileName(), "model.frd");
  EXPECT_EQ(copy.SpareText(), "spare");

  copy.FileName()  = "other.frd";
  copy.SpareText() = "";
  EXPECT_EQ(reader.FileName(), "model.frd");
  EXPECT_EQ(reader.SpareText(), "spare");
}

TEST(FEMResultFile, IsReadAndDestroyedThroughItsBase)
{
  FED_ResultDatabase database;
  bool               isDestroyed = false;
  {
    auto                           reader  = std::make_unique<Reader>(isDestroyed, database);
    Reader&                        derived = *reader;
    std::unique_ptr<FEMResultFile> base    = std::move(reader);
    base->Read();
    EXPECT_EQ(derived.reads, 1);
    EXPECT_FALSE(isDestroyed);
  }
  EXPECT_TRUE(isDestroyed);
}

TEST(FEMResultFile, IsAbstract)
{
  EXPECT_TRUE(std::is_abstract_v<FEMResultFile>);
  EXPECT_TRUE(std::has_virtual_destructor_v<FEMResultFile>);
  EXPECT_FALSE(std::is_copy_assignable_v<Reader>) << "a reader stays with its databases";
}
