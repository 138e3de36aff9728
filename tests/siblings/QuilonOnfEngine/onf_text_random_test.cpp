// Random blocks through text.

#include <algorithm>
#include <bit>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "memory_file.h"
#include "QuilonOnfSpecification/FED_OnfInfoPool.h"

namespace {

/// The values of a record as numbers, in the order of its fields; strings and list lengths count as numbers too.
using Content = std::vector<std::uint64_t>;

class RandomBlocks
{
public:
  explicit RandomBlocks(unsigned seed) : random_(seed) {}

  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

  FED_DataDescriptor Key()
  {
    FED_DataDescriptor key;
    for (int& value : key.values)
      if (Below(3) == 0) value = Below(2) == 0 ? Below(10) : static_cast<int>(random_());
    const int onfs[] = {500, 514, 521, 580, 590, 593, 595, 1000, 1999, 4711, -1, static_cast<int>(random_())};
    key.values[FED_DataDescriptor::OnfId] = onfs[Below(static_cast<int>(std::size(onfs)))];
    key.mask                              = static_cast<unsigned>(Below(1 << FED_DataDescriptor::kNumIndices));
    return key;
  }

  std::string Format()
  {
    // Half of the formats are of doubles alone, which have a way of their own.
    const std::vector<std::string>  doubles = {"D", "d", "V", "T"};
    const std::vector<std::string>  all     = {"I", "i", "F", "D", "d", "S", "V", "T", "Lb", "lb", "Db"};
    const std::vector<std::string>& fields  = Below(2) == 0 ? doubles : all;
    std::string                     format;
    for (int i = Below(5); i >= 0; --i)
      format += fields[static_cast<std::size_t>(Below(static_cast<int>(fields.size())))];
    return format;
  }

  /// Ids or indices, all different, in any order.
  std::vector<int> Numbers(bool usesIds)
  {
    std::map<int, int> numbers;
    for (int i = Below(20); i > 0; --i) {
      const int number                                = Below(3) == 0 ? static_cast<int>(random_()) : Below(50) - 25;
      numbers[usesIds ? number : number & 0x7fffffff] = 0;
    }
    std::vector<int> order;
    for (const auto& [number, unused] : numbers) order.push_back(number);
    std::shuffle(order.begin(), order.end(), random_);
    return order;
  }

  void Fill(FED_DataRecord& record)
  {
    double values[6];
    for (std::size_t field = 1; field <= record.GetFieldCount(); ++field) {
      for (double& value : values) value = Double();
      switch (FED_FieldType::GetClass(record.GetFieldType(field))) {
        case FED_FieldType::Integer:
          record.SetInteger(field, static_cast<int>(random_()));
          break;
        case FED_FieldType::Float:
          record.SetFloat(field, std::bit_cast<float>(static_cast<std::uint32_t>(random_())));
          break;
        case FED_FieldType::Double:
          record.SetDouble(field, values[0]);
          break;
        case FED_FieldType::String:
          record.SetString(field, String());
          break;
        case FED_FieldType::Vector:
          record.SetVector(field, values);
          break;
        case FED_FieldType::Tensor:
          record.SetTensor(field, values);
          break;
        case FED_FieldType::IntList: {
          std::vector<int> list(static_cast<std::size_t>(Below(5)));
          for (int& value : list) value = static_cast<int>(random_());
          record.SetIntList(field, list);
          break;
        }
        case FED_FieldType::DoubleList: {
          std::vector<double> list(static_cast<std::size_t>(Below(5)));
          for (double& value : list) value = Double();
          record.SetDoubleList(field, list);
          break;
        }
        case FED_FieldType::None:
          ADD_FAILURE();
      }
    }
  }

private:
  double Double() { return Below(2) == 0 ? Below(100) / 8.0 : std::bit_cast<double>(random_()); }

  std::string String()
  {
    std::string text;
    for (int i = Below(6); i > 0; --i) text += static_cast<char>(Below(256));
    return text;
  }

  std::mt19937_64 random_;
};

Content ContentOf(const FED_ConstDataRecord& record)
{
  Content    content;
  const auto add = [&content](const double* values, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) content.push_back(std::bit_cast<std::uint64_t>(values[i]));
  };
  double values[6];
  for (std::size_t field = 1; field <= record.GetFieldCount(); ++field) {
    content.push_back(static_cast<std::uint64_t>(record.GetFieldType(field)));
    switch (FED_FieldType::GetClass(record.GetFieldType(field))) {
      case FED_FieldType::Integer:
        content.push_back(static_cast<std::uint32_t>(record.GetInteger(field)));
        break;
      case FED_FieldType::Float:
        content.push_back(std::bit_cast<std::uint32_t>(record.GetFloat(field)));
        break;
      case FED_FieldType::Double:
        values[0] = record.GetDouble(field);
        add(values, 1);
        break;
      case FED_FieldType::String:
        for (const char c : record.GetString(field)) content.push_back(static_cast<unsigned char>(c));
        break;
      case FED_FieldType::Vector:
        record.GetVector(field, values);
        add(values, 3);
        break;
      case FED_FieldType::Tensor:
        record.GetTensor(field, values);
        add(values, 6);
        break;
      case FED_FieldType::IntList: {
        FED_IntArray list;
        record.GetIntList(field, list);
        content.push_back(list.GetSize());
        for (std::size_t i = 0; i < list.GetSize(); ++i)
          content.push_back(static_cast<std::uint32_t>(list.GetData()[i]));
        break;
      }
      case FED_FieldType::DoubleList: {
        FED_DoubleArray list;
        record.GetDoubleList(field, list);
        content.push_back(list.GetSize());
        add(list.GetData(), list.GetSize());
        break;
      }
      case FED_FieldType::None:
        ADD_FAILURE();
    }
  }
  return content;
}

}  // namespace

TEST(OnfTextRandom, AThousandRandomBlocksComeBackWhole)
{
  RandomBlocks random(20240917);
  for (int round = 0; round < 1000; ++round) {
    const FED_DataDescriptor key  = random.Key();
    const int                kind = FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(key.values[1])).GetEntityKind();
    const bool               usesIds = kind < 15;
    FED_ResultDatabase       source;
    FED_DataBlock&           block  = *source.CreateDataBlock(key, 0, 0, random.Format());
    FED_DataRecord&          record = *block.CreateDataRecord();
    std::map<int, Content>   expected;
    for (const int number : random.Numbers(usesIds)) {
      random.Fill(record);
      expected[number] = ContentOf(record);
      block.SetRecord(usesIds ? source.GetIdMapsPool().FindOrAddIndex(kind, number) : static_cast<std::size_t>(number),
                      record);
    }

    const std::string  text = WriteToText(source, key);
    FED_ResultDatabase copy;
    ReadFromText(text, copy);

    const auto&          copied  = dynamic_cast<const FED_ColumnDataBlock&>(copy.GetConstDataBlock(key));
    FED_ConstDataRecord& scratch = *copied.CreateConstDataRecord();
    ASSERT_EQ(copied.GetRecordCount(), expected.size());
    for (const auto& [number, content] : expected) {
      copied.GetRecord(usesIds ? copy.GetIdMapsPool().FindIndex(kind, number) : static_cast<std::size_t>(number),
                       scratch);
      ASSERT_EQ(ContentOf(scratch), content) << "round " << round << "\n" << text;
    }
    // The copy's ids came in another order.
    ASSERT_EQ(WriteToText(copy, key), text);
  }
}
