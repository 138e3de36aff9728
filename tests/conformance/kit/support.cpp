#include "support.h"

#include <bit>
#include <cstdint>
#include <fstream>
#include <limits>
#include <random>

namespace conformance {

namespace {

template <typename Array>
auto CopyOf(const Array& array)
{
  using Element = std::remove_cv_t<std::remove_pointer_t<decltype(array.GetData())>>;
  return array.GetSize() == 0 ? std::vector<Element>()
                              : std::vector<Element>(array.GetData(), array.GetData() + array.GetSize());
}

}  // namespace

FED_DataDescriptor Key(int onf) { return FED_DataDescriptor(1, static_cast<FED_OnfId>(onf)); }

FED_DataDescriptor Key(int onf, int loadCase)
{
  FED_DataDescriptor key = Key(onf);
  key.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  return key;
}

FED_DataDescriptor Key(int onf, int loadCase, int substep)
{
  FED_DataDescriptor key = Key(onf, loadCase);
  key.SetInteger(FED_DataDescriptor::Substep, substep);
  return key;
}

bool SameBits(double a, double b)
{
  // All NaNs are one value here: a text database writes "nan".
  if (a != a || b != b) return a != a && b != b;
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

std::vector<double> TellingDoubles()
{
  using Limits = std::numeric_limits<double>;
  return {0.0,
          -0.0,
          1.0,
          -1.5,
          0.1,
          1.0 / 3.0,
          1e-300,
          16777217.0,
          Limits::max(),
          Limits::lowest(),
          Limits::min(),
          Limits::denorm_min(),
          Limits::infinity(),
          -Limits::infinity(),
          Limits::quiet_NaN()};
}

std::vector<int> ToVector(const FED_IntArray& array) { return CopyOf(array); }

std::vector<double> ToVector(const FED_DoubleArray& array) { return CopyOf(array); }

std::vector<std::size_t> Visited(const FED_DataBlock& block)
{
  std::vector<std::size_t>           indices;
  const FED_DataBlock::IndexIterator end = block.End();
  for (FED_DataBlock::IndexIterator it = block.Begin(); it != end; ++it) indices.push_back(*it);
  return indices;
}

FolderTest::FolderTest()
{
  // A random name keeps programs that run side by side apart; it shows in no result.
  std::random_device random;
  folder_ = std::filesystem::temp_directory_path() /
            ("quilon-conformance-" + std::to_string(random()) + "-" + std::to_string(random()));
  std::filesystem::create_directories(folder_);
}

FolderTest::~FolderTest()
{
  std::error_code ignored;  // a folder that stays behind fails no test
  std::filesystem::remove_all(folder_, ignored);
}

void FolderTest::Write(const std::string& name, const std::string& text) const
{
  std::ofstream(folder_ / name, std::ios::binary) << text;
}

}  // namespace conformance
