#include "RecordingDatabase.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include <QuilonUtilities/FED_Failure.h>

namespace quilon_test {

namespace {

const char* const kIndexNames[FED_DataDescriptor::kNumIndices] = {"it", "onf", "i2",  "lc",  "sub", "an",  "inc",
                                                                  "i7", "i8",  "lay", "i10", "i11", "i12", "i13"};

// The shortest of the usual lengths that reads back to the same double.
std::string Text(double value)
{
  char buffer[40];
  for (const int digits : {6, 15, 16, 17}) {
    std::snprintf(buffer, sizeof buffer, "%.*g", digits, value);
    double back = 0.0;
    if (std::sscanf(buffer, "%lf", &back) == 1 && back == value) break;
  }
  return buffer;
}
std::string Text(int value) { return std::to_string(value); }
std::string Text(std::size_t value) { return std::to_string(value); }
std::string Quoted(const std::string& text) { return '"' + text + '"'; }

template <typename T>
std::string Join(const T* values, std::size_t count)
{
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += (i == 0 ? "" : " ") + Text(values[i]);
  return text;
}

std::string List(const FED_IntArray& values) { return '(' + Join(values.GetData(), values.GetSize()) + ')'; }
std::string List(const FED_DoubleArray& values) { return '(' + Join(values.GetData(), values.GetSize()) + ')'; }
std::string Triple(const double* values) { return '(' + Join(values, 3) + ')'; }
std::string Six(const double* values) { return '(' + Join(values, 6) + ')'; }

std::string FieldContent(const FED_ConstDataRecord& record, std::size_t field)
{
  switch (record.GetFieldType(field)) {
    case 1:
      return "I " + Text(record.GetInteger(field));
    case 10:
      return "i " + Text(record.GetInteger(field));
    case 3:
      return "F " + Text(static_cast<double>(record.GetFloat(field)));
    case 2:
      return "D " + Text(record.GetDouble(field));
    case 11:
      return "d " + Text(record.GetDouble(field));
    case 4:
      return "S " + Quoted(record.GetString(field));
    case 5: {
      double values[3] = {};
      record.GetVector(field, values);
      return "V " + Join(values, 3);
    }
    case 6: {
      double values[6] = {};
      record.GetTensor(field, values);
      return "T " + Join(values, 6);
    }
    case 7:
    case 8: {
      FED_IntArray values;
      record.GetIntList(field, values);
      const std::string letters = record.GetFieldType(field) == 7 ? "Lb" : "lb";
      return values.GetSize() == 0 ? letters : letters + ' ' + Join(values.GetData(), values.GetSize());
    }
    case 9: {
      FED_DoubleArray values;
      record.GetDoubleList(field, values);
      return values.GetSize() == 0 ? "Db" : "Db " + Join(values.GetData(), values.GetSize());
    }
    default:
      return "?" + Text(record.GetFieldType(field));
  }
}

// The record beneath a wrapper, for handing it to the block that made it.
class Wrapper
{
public:
  virtual ~Wrapper()                               = default;
  virtual FED_ConstDataRecord& GetInner() noexcept = 0;
};

// Every reading call of a scratch record; Base is one of the two contract classes.
template <typename Base>
class Reader : public Base, public Wrapper
{
public:
  Reader(CallRecorder& recorder, std::string name, FED_ConstDataRecord& inner)
      : recorder_(recorder), name_(std::move(name)), inner_(&inner)
  {
    ++recorder_.liveScratch;
    ++recorder_.madeScratch;
  }
  ~Reader() override { --recorder_.liveScratch; }

  FED_ConstDataRecord& GetInner() noexcept override { return *inner_; }

  std::size_t GetFieldCount() const override
  {
    Call("GetFieldCount()");
    return inner_->GetFieldCount();
  }
  int GetFieldType(std::size_t field) const override
  {
    Call("GetFieldType(" + Text(field) + ")");
    return inner_->GetFieldType(field);
  }
  int GetInteger(std::size_t field) const override
  {
    Call("GetInteger(" + Text(field) + ")");
    return inner_->GetInteger(field);
  }
  void GetIntList(std::size_t field, FED_IntArray& out) const override
  {
    Call("GetIntList(" + Text(field) + ")");
    inner_->GetIntList(field, out);
  }
  void GetDoubleList(std::size_t field, FED_DoubleArray& out) const override
  {
    Call("GetDoubleList(" + Text(field) + ")");
    inner_->GetDoubleList(field, out);
  }
  std::size_t GetIntListLen(std::size_t field) const override
  {
    Call("GetIntListLen(" + Text(field) + ")");
    return inner_->GetIntListLen(field);
  }
  std::size_t GetDoubleListLen(std::size_t field) const override
  {
    Call("GetDoubleListLen(" + Text(field) + ")");
    return inner_->GetDoubleListLen(field);
  }
  std::string GetString(std::size_t field) const override
  {
    Call("GetString(" + Text(field) + ")");
    return inner_->GetString(field);
  }
  std::size_t GetFieldSize(std::size_t field) const override
  {
    Call("GetFieldSize(" + Text(field) + ")");
    return inner_->GetFieldSize(field);
  }
  float GetFloat(std::size_t field) const override
  {
    Call("GetFloat(" + Text(field) + ")");
    return inner_->GetFloat(field);
  }
  double GetDouble(std::size_t field) const override
  {
    Call("GetDouble(" + Text(field) + ")");
    return inner_->GetDouble(field);
  }
  void GetVector(std::size_t field, double* out) const override
  {
    Call("GetVector(" + Text(field) + ")");
    inner_->GetVector(field, out);
  }
  void GetTensor(std::size_t field, double* out) const override
  {
    Call("GetTensor(" + Text(field) + ")");
    inner_->GetTensor(field, out);
  }

protected:
  void Call(const std::string& call) const { recorder_.Call(Detail::Records, name_ + '.' + call); }

private:
  CallRecorder&        recorder_;
  std::string          name_;
  FED_ConstDataRecord* inner_;
};

class Writer final : public Reader<FED_DataRecord>
{
public:
  Writer(CallRecorder& recorder, std::string name, FED_DataRecord& inner)
      : Reader<FED_DataRecord>(recorder, std::move(name), inner), writable_(&inner)
  {}

  const FED_DataRecord& GetInnerRecord() const noexcept { return *writable_; }

  void SetInteger(std::size_t field, int value) override
  {
    Call("SetInteger(" + Text(field) + ", " + Text(value) + ")");
    writable_->SetInteger(field, value);
  }
  void SetIntList(std::size_t field, const FED_IntArray& values) override
  {
    Call("SetIntList(" + Text(field) + ", " + List(values) + ")");
    writable_->SetIntList(field, values);
  }
  void SetDoubleList(std::size_t field, const FED_DoubleArray& values) override
  {
    Call("SetDoubleList(" + Text(field) + ", " + List(values) + ")");
    writable_->SetDoubleList(field, values);
  }
  void SetString(std::size_t field, const std::string& value) override
  {
    Call("SetString(" + Text(field) + ", " + Quoted(value) + ")");
    writable_->SetString(field, value);
  }
  void SetFloat(std::size_t field, float value) override
  {
    Call("SetFloat(" + Text(field) + ", " + Text(static_cast<double>(value)) + ")");
    writable_->SetFloat(field, value);
  }
  void SetDouble(std::size_t field, double value) override
  {
    Call("SetDouble(" + Text(field) + ", " + Text(value) + ")");
    writable_->SetDouble(field, value);
  }
  void SetVector(std::size_t field, const double* values) override
  {
    Call("SetVector(" + Text(field) + ", " + Triple(values) + ")");
    writable_->SetVector(field, values);
  }
  void SetTensor(std::size_t field, const double* values) override
  {
    Call("SetTensor(" + Text(field) + ", " + Six(values) + ")");
    writable_->SetTensor(field, values);
  }

private:
  FED_DataRecord* writable_;
};

}  // namespace

std::string Key(const FED_DataDescriptor& descriptor)
{
  std::string text = "<" + Text(descriptor.values[FED_DataDescriptor::OnfId]);
  for (int index = 0; index < FED_DataDescriptor::kNumIndices; ++index) {
    const bool isSet = ((descriptor.mask >> index) & 1u) != 0;
    // The ONF id stands in front; here it is told only when its bit is clear.
    if (index == FED_DataDescriptor::OnfId ? isSet : !isSet && descriptor.values[index] == 0) continue;
    text += std::string(isSet ? " " : " ~") + kIndexNames[index] + '=' + Text(descriptor.values[index]);
  }
  return text + '>';
}

std::string Key(const FED_DataDescriptorPattern& pattern)
{
  std::string text;
  for (int index = 0; index < FED_DataDescriptor::kNumIndices; ++index) {
    const FED_DataDescriptorPattern::Criterion& criterion = pattern.criteria[index];
    if (criterion.mode == -1) continue;
    if (!text.empty()) text += ' ';
    text += std::string(kIndexNames[index]) + '=' + Text(criterion.value);
    if (criterion.mode != 0) text += "(mode " + Text(criterion.mode) + ")";
  }
  return '{' + (text.empty() ? "*" : text) + '}';
}

std::string Content(const FED_ConstDataRecord& record)
{
  std::string text;
  for (std::size_t field = 1; field <= record.GetFieldCount(); ++field) {
    if (field > 1) text += "; ";
    text += FieldContent(record, field);
  }
  return '[' + text + ']';
}

class RecordingDatabase::Block final : public FED_DataBlock
{
public:
  Block(CallRecorder& recorder, const FED_DataBlock& inner)
      : FED_DataBlock(inner.GetDescriptor()), recorder_(recorder), key_(Key(inner.GetDescriptor())), inner_(&inner)
  {}

  const FED_DataBlock* GetInner() const noexcept { return inner_; }
  void                 AllowWriting(FED_DataBlock& inner) noexcept { writable_ = &inner; }

  bool HasRecord(std::size_t index) const override
  {
    Call("HasRecord(" + Text(index) + ")");
    return inner_->HasRecord(index);
  }
  void SetRecord(std::size_t index, const FED_DataRecord& record) override
  {
    const auto* const     wrapper = dynamic_cast<const Writer*>(&record);
    const FED_DataRecord& own     = wrapper != nullptr ? wrapper->GetInnerRecord() : record;
    Call("SetRecord(" + Text(index) + ", " + Content(own) + ")");
    writable_->SetRecord(index, own);
  }
  void GetRecord(std::size_t index, FED_ConstDataRecord& record) const override
  {
    Call("GetRecord(" + Text(index) + ")");
    auto* const wrapper = dynamic_cast<Wrapper*>(&record);
    inner_->GetRecord(index, wrapper != nullptr ? wrapper->GetInner() : record);
  }
  std::size_t GetSize() const override
  {
    Call("GetSize()");
    return inner_->GetSize();
  }
  std::size_t GetMaxIndex() const override
  {
    Call("GetMaxIndex()");
    return inner_->GetMaxIndex();
  }
  void SetScalarAt(std::size_t index, double value) override
  {
    Call("SetScalarAt(" + Text(index) + ", " + Text(value) + ")");
    writable_->SetScalarAt(index, value);
  }
  double GetScalarAt(std::size_t index) const override
  {
    Call("GetScalarAt(" + Text(index) + ")");
    return inner_->GetScalarAt(index);
  }
  void SetValuesAt(std::size_t index, const double* values) override
  {
    Call("SetValuesAt(" + Text(index) + ", (" + Join(values, CountDoubles()) + "))");
    writable_->SetValuesAt(index, values);
  }
  void GetValuesAt(std::size_t index, double* out) const override
  {
    Call("GetValuesAt(" + Text(index) + ")");
    inner_->GetValuesAt(index, out);
  }
  FED_DataRecord* CreateDataRecord() override
  {
    Call("CreateDataRecord()");
    auto            record = std::make_unique<Writer>(recorder_, "record" + key_, *writable_->CreateDataRecord());
    FED_DataRecord* result = record.get();
    scratch_.push_back(std::move(record));
    return result;
  }
  FED_ConstDataRecord* CreateConstDataRecord() const override
  {
    Call("CreateConstDataRecord()");
    auto record =
        std::make_unique<Reader<FED_ConstDataRecord>>(recorder_, "record" + key_, *inner_->CreateConstDataRecord());
    FED_ConstDataRecord* result = record.get();
    scratch_.push_back(std::move(record));
    return result;
  }
  void DeleteDataRecord(FED_ConstDataRecord* record) const override
  {
    recorder_.Free(Detail::Blocks, Name("DeleteDataRecord()"));
    auto* const wrapper = dynamic_cast<Wrapper*>(record);
    if (wrapper == nullptr) return inner_->DeleteDataRecord(record);
    const auto own = std::find_if(scratch_.begin(), scratch_.end(), [&](const auto& it) { return it.get() == record; });
    if (own == scratch_.end()) throw std::logic_error(Name("DeleteDataRecord: the record is another block's"));
    inner_->DeleteDataRecord(&wrapper->GetInner());
    scratch_.erase(own);
  }

private:
  std::string Name(const std::string& call) const { return "block" + key_ + '.' + call; }
  void        Call(const std::string& call) const { recorder_.Call(Detail::Blocks, Name(call)); }

  // Doubles in one record of the block's format, as its fields tell.
  std::size_t CountDoubles() const
  {
    FED_ConstDataRecord* const record = inner_->CreateConstDataRecord();
    std::size_t                count  = 0;
    for (std::size_t field = 1; field <= record->GetFieldCount(); ++field) {
      const int type = record->GetFieldType(field);
      count += type == 2 || type == 11 ? 1u : type == 5 ? 3u : type == 6 ? 6u : 0u;
    }
    inner_->DeleteDataRecord(record);
    return count;
  }

  CallRecorder&        recorder_;
  std::string          key_;
  const FED_DataBlock* inner_;
  FED_DataBlock*       writable_ = nullptr;  // the same block, once it was handed out for writing
  mutable std::vector<std::unique_ptr<FED_ConstDataRecord>> scratch_;
};

class RecordingDatabase::Pool final : public FED_IdMapsPool
{
public:
  // The inner pool is asked for at each call: some databases have none before they are opened.
  Pool(CallRecorder& recorder, FED_Database& inner) : recorder_(recorder), inner_(inner) {}

  std::size_t FindIndex(int kind, int id) const override
  {
    recorder_.Call(Detail::Blocks, "pool.FindIndex(" + Text(kind) + ", " + Text(id) + ")");
    return inner_.GetIdMapsPool().FindIndex(kind, id);
  }
  std::size_t FindOrAddIndex(int kind, int id) override
  {
    recorder_.Call(Detail::Blocks, "pool.FindOrAddIndex(" + Text(kind) + ", " + Text(id) + ")");
    return inner_.GetIdMapsPool().FindOrAddIndex(kind, id);
  }
  int GetId(int kind, std::size_t index) const override
  {
    recorder_.Call(Detail::Blocks, "pool.GetId(" + Text(kind) + ", " + Text(index) + ")");
    return inner_.GetIdMapsPool().GetId(kind, index);
  }

private:
  CallRecorder& recorder_;
  FED_Database& inner_;
};

RecordingDatabase::RecordingDatabase(FED_Database& inner, Detail detail)
    : inner_(&inner), recorder_(detail), pool_(std::make_unique<Pool>(recorder_, inner))
{}

RecordingDatabase::~RecordingDatabase() = default;

bool RecordingDatabase::IsInitialized() const
{
  recorder_.Call(Detail::Database, "db.IsInitialized()");
  return inner_->IsInitialized();
}

FED_DataBlock* RecordingDatabase::CreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t firstSize,
                                                  std::size_t secondSize, const std::string& recordFormat)
{
  recorder_.Call(Detail::Database, "db.CreateDataBlock(" + Key(descriptor) + ", " + Text(firstSize) + ", " +
                                       Text(secondSize) + ", " + Quoted(recordFormat) + ")");
  FED_DataBlock* const block = inner_->CreateDataBlock(descriptor, firstSize, secondSize, recordFormat);
  return block == nullptr ? nullptr : &WrapWritable(*block);
}

FED_DataBlock& RecordingDatabase::GetOrCreateDataBlock(const FED_DataDescriptor& descriptor,
                                                       std::size_t               expectedRecords)
{
  recorder_.Call(Detail::Database, "db.GetOrCreateDataBlock(" + Key(descriptor) + ", " + Text(expectedRecords) + ")");
  return WrapWritable(inner_->GetOrCreateDataBlock(descriptor, expectedRecords));
}

bool RecordingDatabase::HasDataBlock(const FED_DataDescriptor& descriptor) const
{
  recorder_.Call(Detail::Database, "db.HasDataBlock(" + Key(descriptor) + ")");
  return inner_->HasDataBlock(descriptor);
}

const FED_DataBlock& RecordingDatabase::GetConstDataBlock(const FED_DataDescriptor& descriptor) const
{
  recorder_.Call(Detail::Database, "db.GetConstDataBlock(" + Key(descriptor) + ")");
  return Wrap(std::as_const(*inner_).GetConstDataBlock(descriptor));
}

FED_DataBlock& RecordingDatabase::GetDataBlock(const FED_DataDescriptor& descriptor)
{
  recorder_.Call(Detail::Database, "db.GetDataBlock(" + Key(descriptor) + ")");
  return WrapWritable(inner_->GetDataBlock(descriptor));
}

std::vector<FED_DataBlock*> RecordingDatabase::GetDataBlocks(const FED_DataDescriptorPattern& pattern)
{
  recorder_.Call(Detail::Database, "db.GetDataBlocks(" + Key(pattern) + ")");
  std::vector<FED_DataBlock*> blocks = inner_->GetDataBlocks(pattern);
  for (FED_DataBlock*& block : blocks) block = &WrapWritable(*block);
  return blocks;
}

void RecordingDatabase::DeleteDataBlock(const FED_DataDescriptor& descriptor)
{
  recorder_.Call(Detail::Database, "db.DeleteDataBlock(" + Key(descriptor) + ")");
  inner_->DeleteDataBlock(descriptor);
  blocks_.erase(std::remove_if(blocks_.begin(), blocks_.end(),
                               [&](const auto& block) { return block->GetDescriptor() == descriptor; }),
                blocks_.end());
}

std::vector<FED_DataDescriptor> RecordingDatabase::GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const
{
  recorder_.Call(Detail::Database, "db.GetDataDescriptors(" + Key(pattern) + ")");
  return inner_->GetDataDescriptors(pattern);
}

FED_IdMapsPool& RecordingDatabase::GetIdMapsPool()
{
  recorder_.Call(Detail::Database, "db.GetIdMapsPool()");
  return *pool_;
}

const FED_IdMapsPool& RecordingDatabase::GetIdMapsPool() const
{
  recorder_.Call(Detail::Database, "db.GetIdMapsPool() const");
  return *pool_;
}

std::string RecordingDatabase::GetUserKindName(FED_OnfId onf) const
{
  recorder_.Call(Detail::Database, "db.GetUserKindName(" + Text(static_cast<int>(onf)) + ")");
  return inner_->GetUserKindName(onf);
}

void RecordingDatabase::SetUserKindName(FED_OnfId onf, const std::string& name)
{
  recorder_.Call(Detail::Database, "db.SetUserKindName(" + Text(static_cast<int>(onf)) + ", " + Quoted(name) + ")");
  inner_->SetUserKindName(onf, name);
}

void RecordingDatabase::FailAt(std::size_t call, std::exception_ptr failure)
{
  recorder_.FailAt(call == 0 ? 0 : recorder_.GetCallCount() + call, std::move(failure));
}

void RecordingDatabase::FailAt(std::size_t call)
{
  FailAt(call, std::make_exception_ptr(FED_Failure("injected failure", "|%P|Test|RecordingDatabase")));
}

std::size_t RecordingDatabase::GetCallCount() const noexcept { return recorder_.GetCallCount(); }

const std::vector<std::string>& RecordingDatabase::GetLines() const noexcept { return recorder_.GetLines(); }
void                            RecordingDatabase::ClearLines() noexcept { recorder_.ClearLines(); }
void                            RecordingDatabase::SetDetail(Detail detail) noexcept { recorder_.SetDetail(detail); }

std::size_t RecordingDatabase::GetLiveScratchRecords() const noexcept { return recorder_.liveScratch; }
std::size_t RecordingDatabase::GetMadeScratchRecords() const noexcept { return recorder_.madeScratch; }

RecordingDatabase::Block& RecordingDatabase::Wrap(const FED_DataBlock& block) const
{
  for (const auto& known : blocks_) {
    if (known->GetInner() == &block) return *known;
  }
  blocks_.push_back(std::make_unique<Block>(recorder_, block));
  return *blocks_.back();
}

RecordingDatabase::Block& RecordingDatabase::WrapWritable(FED_DataBlock& block)
{
  Block& wrapper = Wrap(block);
  wrapper.AllowWriting(block);
  return wrapper;
}

}  // namespace quilon_test
