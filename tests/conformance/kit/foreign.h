#pragma once

/// @file
/// A block and a pool of the kit's own, as small as the contract allows: what the siblings do with somebody else's.

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonDbConnector/FED_IdMapsPool.h>
#include <QuilonUtilities/FED_Failure.h>

namespace conformance {

/// One double per index; its scratch records hold one double too.
class ForeignBlock : public FED_DataBlock
{
public:
  explicit ForeignBlock(const FED_DataDescriptor& descriptor) : FED_DataBlock(descriptor) {}

  bool HasRecord(std::size_t index) const override { return values_.count(index) != 0; }
  void SetRecord(std::size_t index, const FED_DataRecord& record) override { SetScalarAt(index, record.GetDouble(1)); }
  void GetRecord(std::size_t index, FED_ConstDataRecord& record) const override
  {
    dynamic_cast<FED_DataRecord&>(record).SetDouble(1, GetScalarAt(index));
  }
  std::size_t GetSize() const override { return GetMaxIndex(); }
  std::size_t GetMaxIndex() const override { return values_.empty() ? 0 : values_.rbegin()->first; }
  void        SetScalarAt(std::size_t index, double value) override { values_[index] = value; }
  double      GetScalarAt(std::size_t index) const override
  {
    const auto found = values_.find(index);
    if (found == values_.end()) throw Failure("no record there");
    return found->second;
  }
  void                 SetValuesAt(std::size_t index, const double* values) override { SetScalarAt(index, values[0]); }
  void                 GetValuesAt(std::size_t index, double* out) const override { out[0] = GetScalarAt(index); }
  FED_DataRecord*      CreateDataRecord() override { return Keep(); }
  FED_ConstDataRecord* CreateConstDataRecord() const override { return Keep(); }
  void                 DeleteDataRecord(FED_ConstDataRecord* record) const override
  {
    for (auto it = scratch_.begin(); it != scratch_.end(); ++it) {
      if (it->get() != record) continue;
      scratch_.erase(it);
      return;
    }
  }

  std::size_t GetScratchCount() const { return scratch_.size(); }

private:
  static FED_Failure Failure(const char* text) { return {text, "|%P|Conformance|ForeignBlock"}; }

  /// One field of type 2; every other is a failure.
  class Record : public FED_DataRecord
  {
  public:
    std::size_t GetFieldCount() const override { return 1; }
    int         GetFieldType(std::size_t) const override { return 2; }
    int         GetInteger(std::size_t) const override { throw Failure("one double"); }
    void        GetIntList(std::size_t, FED_IntArray&) const override { throw Failure("one double"); }
    void        GetDoubleList(std::size_t, FED_DoubleArray&) const override { throw Failure("one double"); }
    std::size_t GetIntListLen(std::size_t) const override { throw Failure("one double"); }
    std::size_t GetDoubleListLen(std::size_t) const override { throw Failure("one double"); }
    std::string GetString(std::size_t) const override { throw Failure("one double"); }
    std::size_t GetFieldSize(std::size_t) const override { return 8; }
    float       GetFloat(std::size_t) const override { throw Failure("one double"); }
    double      GetDouble(std::size_t) const override { return value_; }
    void        GetVector(std::size_t, double*) const override { throw Failure("one double"); }
    void        GetTensor(std::size_t, double*) const override { throw Failure("one double"); }
    void        SetInteger(std::size_t, int) override { throw Failure("one double"); }
    void        SetIntList(std::size_t, const FED_IntArray&) override { throw Failure("one double"); }
    void        SetDoubleList(std::size_t, const FED_DoubleArray&) override { throw Failure("one double"); }
    void        SetString(std::size_t, const std::string&) override { throw Failure("one double"); }
    void        SetFloat(std::size_t, float) override { throw Failure("one double"); }
    void        SetDouble(std::size_t, double value) override { value_ = value; }
    void        SetVector(std::size_t, const double*) override { throw Failure("one double"); }
    void        SetTensor(std::size_t, const double*) override { throw Failure("one double"); }

  private:
    double value_ = 0.0;
  };

  Record* Keep() const
  {
    scratch_.push_back(std::make_unique<Record>());
    return scratch_.back().get();
  }

  std::map<std::size_t, double>                values_;
  mutable std::vector<std::unique_ptr<Record>> scratch_;
};

/// Index = id + 1000 for every kind, and counts how often it is asked.
class ForeignPool : public FED_IdMapsPool
{
public:
  std::size_t FindIndex(int, int id) const override
  {
    ++asked;
    return known_.count(id) != 0 ? static_cast<std::size_t>(id + 1000) : npos;
  }
  std::size_t FindOrAddIndex(int, int id) override
  {
    ++asked;
    known_[id] = true;
    return static_cast<std::size_t>(id + 1000);
  }
  int GetId(int, std::size_t index) const override
  {
    ++asked;
    return static_cast<int>(index) - 1000;
  }

  mutable int asked = 0;

private:
  std::map<int, bool> known_;
};

}  // namespace conformance
