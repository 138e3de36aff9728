// Writes a text database with hard values, and what a reader of it should print, from the values themselves:
//   onf_text_dump FOLDER LISTING

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"

namespace {

template <typename Bits>
std::string Hex(Bits bits, int digits)
{
  char text[32];
  std::snprintf(text, sizeof text, "%0*llx", digits, static_cast<unsigned long long>(bits));
  return text;
}

/// Sign, one digit, thirteen hexadecimal digits, power of two: -0x1.8000000000000p+1.
std::string PlainFinite(double value)
{
  const auto          bits     = std::bit_cast<std::uint64_t>(value);
  const std::uint64_t fraction = bits & 0xfffffffffffffu;
  const int           biased   = static_cast<int>(bits >> 52 & 0x7ffu);
  const std::string   sign     = bits >> 63 != 0 ? "-" : "";
  if (biased == 0 && fraction == 0) return sign + "0x0.0p+0";
  const int exponent = biased == 0 ? -1022 : biased - 1023;
  return sign + (biased == 0 ? "0x0." : "0x1.") + Hex(fraction, 13) + "p" + (exponent < 0 ? "" : "+") +
         std::to_string(exponent);
}

std::string PlainDouble(double value)
{
  if (std::isnan(value)) return "nan(0x" + Hex(std::bit_cast<std::uint64_t>(value), 16) + ")";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  return PlainFinite(value);
}

std::string PlainFloat(float value)
{
  if (std::isnan(value)) return "nan(0x" + Hex(std::bit_cast<std::uint32_t>(value), 8) + ")";
  return PlainDouble(value);
}

std::string PlainString(const std::string& text)
{
  std::string plain;
  for (const char c : text) plain += Hex(static_cast<unsigned char>(c), 2);
  return plain;
}

std::vector<double> HardDoubles()
{
  using Limits               = std::numeric_limits<double>;
  std::vector<double> values = {0.0,
                                -0.0,
                                0.1,
                                1.0 / 3.0,
                                1e22,
                                1e23,
                                1e5,
                                123456789.0,
                                Limits::max(),
                                Limits::min(),
                                -Limits::lowest(),
                                Limits::denorm_min(),
                                -Limits::denorm_min(),
                                Limits::infinity(),
                                -Limits::infinity(),
                                Limits::quiet_NaN()};
  for (const std::uint64_t bits : {0x000fffffffffffffu, 0xfff8000000000000u, 0x7ff0000000000001u, 0x7ff80000deadbeefu})
    values.push_back(std::bit_cast<double>(bits));
  std::mt19937_64 random(4711);
  for (int i = 0; i < 5000; ++i) values.push_back(std::bit_cast<double>(std::uint64_t{random()}));
  return values;
}

/// A block and what is said of it.
class Block
{
public:
  /// @param keyLines the key as a reader lists it
  Block(FED_Database& database, const FED_DataDescriptor& key, const std::string& format, const std::string& keyLines,
        const std::string& fields, bool usesIds)
      : database_(database),
        block_(*database.CreateDataBlock(key, 0, 0, format)),
        record_(block_.CreateDataRecord()),
        usesIds_(usesIds),
        head_("block\n" + keyLines + "fields " + fields + "\nby " + (usesIds ? "id" : "index") + "\n")
  {}

  FED_DataRecord& Record() { return *record_; }

  /// Stores the record as it is set.
  void Store(int number, const std::string& plain)
  {
    block_.SetRecord(usesIds_ ? database_.GetIdMapsPool().FindOrAddIndex(0, number) : static_cast<std::size_t>(number),
                     *record_);
    lines_[number] = std::to_string(number) + " " + plain + "\n";
  }

  std::string Listing() const
  {
    std::string text = head_;
    for (const auto& [number, line] : lines_) text += line;
    return text;
  }

private:
  FED_Database&              database_;
  FED_DataBlock&             block_;
  FED_DataRecord*            record_;
  bool                       usesIds_;
  std::string                head_;
  std::map<int, std::string> lines_;
};

std::string DoublesOf(const std::vector<double>& values, std::size_t first, std::size_t count)
{
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += (i == 0 ? "" : " ") + PlainDouble(values[first + i]);
  return text;
}

std::string WriteDatabase(FED_Database& database)
{
  const std::vector<double> hard = HardDoubles();
  FED_DataDescriptor        key(3, static_cast<FED_OnfId>(500));
  Block                     scalars(database, key, "D", "iteration 3\nonf 500\n", "D", false);
  for (std::size_t i = 0; i < hard.size(); ++i) {
    scalars.Record().SetDouble(1, hard[i]);
    scalars.Store(static_cast<int>(i), PlainDouble(hard[i]));
  }

  key = FED_DataDescriptor(0, static_cast<FED_OnfId>(521));
  key.SetInteger(FED_DataDescriptor::LoadCase, -2);
  key.values[FED_DataDescriptor::Layer] = 5;  // left behind
  Block tensors(database, key, "VT", "iteration 0\nonf 521\nload-case -2\nunset layer 5\n", "V T", true);
  for (std::size_t i = 0; i + 9 <= 900; i += 9) {
    tensors.Record().SetVector(1, &hard[i]);
    tensors.Record().SetTensor(2, &hard[i + 3]);
    tensors.Store(450 - static_cast<int>(i), DoublesOf(hard, i, 9));
  }

  key = FED_DataDescriptor(0, static_cast<FED_OnfId>(1203));
  Block        mixed(database, key, "IiFdSLblbDb", "iteration 0\nonf 1203\n", "I i F d S Lb lb Db", true);
  std::mt19937 random(5);
  std::string  text;
  for (int i = 0; i < 300; ++i) {
    const auto        value  = static_cast<int>(random());
    const auto        single = i == 0 ? -0.0f : std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    const auto        first  = static_cast<std::size_t>(i);
    const std::size_t length = first % 4;
    const std::vector doubles(hard.begin() + i, hard.begin() + i + static_cast<std::ptrdiff_t>(length));
    std::vector<int>  ints(length, value);
    text += static_cast<char>(i);
    FED_DataRecord& record = mixed.Record();
    record.SetInteger(1, value);
    record.SetInteger(2, ~value);
    record.SetFloat(3, single);
    record.SetDouble(4, hard[first]);
    record.SetString(5, text);
    record.SetIntList(6, ints);
    record.SetIntList(7, std::vector<int>());
    record.SetDoubleList(8, doubles);
    std::string plain = std::to_string(value) + " " + std::to_string(~value) + " " + PlainFloat(single) + " " +
                        PlainDouble(hard[first]) + " string:" + PlainString(text) + " [" + std::to_string(length) + "]";
    for (const int element : ints) plain += " " + std::to_string(element);
    plain += " [0] [" + std::to_string(length) + "]";
    if (length != 0) plain += " " + DoublesOf(hard, first, length);
    mixed.Store(150 - i, plain);
  }
  key.SetInteger(FED_DataDescriptor::Analysis, 7);
  database.CreateDataBlock(key, 0, 0, "");
  const std::string name = "strain \"of\"\\the\tw\xc3\xa9ld";
  database.SetUserKindName(static_cast<FED_OnfId>(1203), name);

  // Blocks come by the names of their files: nodal-stress..., scalar-history..., user-node-tensor...
  return "name 1203 " + PlainString(name) + "\n" + tensors.Listing() + scalars.Listing() + mixed.Listing() +
         "block\niteration 0\nonf 1203\nanalysis 7\nfields \nby id\n";
}

}  // namespace

int main(int argc, char** argv)
{
  if (argc != 3) return 2;
  const std::string    folder = argv[1];
  QuilonOnfTxtDatabase database(std::wstring(folder.begin(), folder.end()));
  database.InitDb(FED_DatabaseDefs::WriteAccess, 1024, L"", nullptr);
  std::ofstream out(argv[2], std::ios::binary);
  out << WriteDatabase(database);
  database.ReleaseDb(true);
  return out.flush() ? 0 : 1;
}
