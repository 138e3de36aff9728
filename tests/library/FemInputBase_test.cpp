#include <FemInputBase.h>

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

namespace {

class Converter : public FemInputBase
{
public:
  using FemInputBase::FemInputBase;
  using FemInputBase::inputPath_;
  using FemInputBase::name_;

  void ReadModel() override { calls += "read "; }
  void CheckModel() override { calls += "check "; }
  void ConvertModel() override { calls += "convert "; }

  std::string calls;
};

class ConverterWithSets : public Converter
{
public:
  using Converter::Converter;

  void CreateFEMSets(const OnfGroupsFile& groups) override { seen = &groups; }

  const OnfGroupsFile* seen = nullptr;
};

class Dying : public Converter
{
public:
  explicit Dying(bool& isDestroyed) : Converter(L"", L""), isDestroyed_(isDestroyed) {}
  ~Dying() override { isDestroyed_ = true; }

private:
  bool& isDestroyed_;
};

}  // namespace

TEST(FemInputBase, TheFirstArgumentIsTheNameAndTheSecondThePath)
{
  const Converter converter(L"name", L"model.inp");
  EXPECT_EQ(converter.name_, L"name");
  EXPECT_EQ(converter.inputPath_, L"model.inp");
}

TEST(FemInputBase, ACopyHoldsEqualIndependentStrings)
{
  Converter converter(L"name", L"model.inp");
  Converter copy(converter);
  EXPECT_EQ(copy.name_, L"name");
  EXPECT_EQ(copy.inputPath_, L"model.inp");
  copy.name_      = L"other";
  copy.inputPath_ = L"other.inp";
  EXPECT_EQ(converter.name_, L"name");
  EXPECT_EQ(converter.inputPath_, L"model.inp");
}

TEST(FemInputBase, AssignmentTakesBothStrings)
{
  const Converter converter(L"name", L"model.inp");
  Converter       target(L"a", L"b");
  target = converter;
  EXPECT_EQ(target.name_, L"name");
  EXPECT_EQ(target.inputPath_, L"model.inp");
  EXPECT_EQ(converter.name_, L"name");
}

TEST(FemInputBase, GroupsDoNothingUnlessAConverterTakesThem)
{
  // Only its address travels, so nothing more than a place for one is needed.
  const std::max_align_t place{};
  const auto&            groups = reinterpret_cast<const OnfGroupsFile&>(place);

  Converter     converter(L"name", L"model.inp");
  FemInputBase& base = converter;
  EXPECT_NO_THROW(base.CreateFEMSets(groups));
  EXPECT_EQ(converter.calls, "");
  EXPECT_EQ(converter.name_, L"name");

  ConverterWithSets withSets(L"name", L"model.inp");
  FemInputBase&     second = withSets;
  second.CreateFEMSets(groups);
  EXPECT_EQ(withSets.seen, &groups);
}

TEST(FemInputBase, IsUsedAndDestroyedThroughItself)
{
  Converter     converter(L"name", L"model.inp");
  FemInputBase& base = converter;
  base.ReadModel();
  base.CheckModel();
  base.ConvertModel();
  EXPECT_EQ(converter.calls, "read check convert ");

  bool                          isDestroyed = false;
  std::unique_ptr<FemInputBase> owned       = std::make_unique<Dying>(isDestroyed);
  owned.reset();
  EXPECT_TRUE(isDestroyed);
}

TEST(FemInputBase, IsAbstract)
{
  EXPECT_TRUE(std::is_abstract_v<FemInputBase>);
  EXPECT_TRUE(std::has_virtual_destructor_v<FemInputBase>);
}
