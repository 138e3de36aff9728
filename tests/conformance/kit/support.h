#pragma once

/// @file
/// What the tests of the kit share.

#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonDbConnector/FED_DataDescriptor.h>
#include <QuilonDbConnector/FED_DataRecord.h>
#include <QuilonUtilities/FED_DoubleArray.h>
#include <QuilonUtilities/FED_Failure.h>
#include <QuilonUtilities/FED_IntArray.h>

#include "ConformanceFactory.h"

namespace conformance {

/// ONF ids that the tests use, with their kinds and formats.
inline constexpr int kHistory      = 500;   ///< kind 15, "D"
inline constexpr int kElementNodes = 595;   ///< kind 1, an integer list
inline constexpr int kMatrixHalf   = 597;   ///< kind 1, format from the first record
inline constexpr int kUserScalar   = 1000;  ///< kind 0, "D"
inline constexpr int kUserVector   = 1100;  ///< kind 0, "V"
inline constexpr int kUserTensor   = 1200;  ///< kind 0, "T"
inline constexpr int kUserElement  = 1400;  ///< kind 1, "D"
inline constexpr int kUserHistory  = 1800;  ///< kind 15, "D"
inline constexpr int kUserMatrix   = 1900;  ///< kind 16, "IIbDbLbLb"
inline constexpr int kUnknown      = 2777;  ///< kind 14, format from the first record

/// Entity kinds.
inline constexpr int kNodeKind    = 0;
inline constexpr int kElementKind = 1;
inline constexpr int kUnknownKind = 14;

/// All fourteen indices are reachable through SetInteger() only by this cast.
inline FED_DataDescriptor::ResultIndex Index(int index) { return static_cast<FED_DataDescriptor::ResultIndex>(index); }

/// A descriptor of iteration 1, with load case and substep where they are given.
FED_DataDescriptor Key(int onf);
FED_DataDescriptor Key(int onf, int loadCase);
FED_DataDescriptor Key(int onf, int loadCase, int substep);

/// Everything that the compiler could tell apart in two doubles: -0.0 and 0.0, the bits of a NaN.
bool SameBits(double a, double b);

/// Doubles that a careless database changes: zeros of either sign, infinities, a NaN, the ends of the range.
std::vector<double> TellingDoubles();

std::vector<int>    ToVector(const FED_IntArray& array);
std::vector<double> ToVector(const FED_DoubleArray& array);

/// @return the indices that hold a record, as the iterator visits them
std::vector<std::size_t> Visited(const FED_DataBlock& block);

/// A scratch record that its block frees at the end of the scope.
class Scratch
{
public:
  explicit Scratch(FED_DataBlock& block) : block_(block), record_(block.CreateDataRecord()) {}
  ~Scratch() { block_.DeleteDataRecord(record_); }
  Scratch(const Scratch&)            = delete;
  Scratch& operator=(const Scratch&) = delete;

  FED_DataRecord* operator->() const { return record_; }
  FED_DataRecord& operator*() const { return *record_; }

private:
  FED_DataBlock&  block_;
  FED_DataRecord* record_;
};

/// A scratch record to read, freed likewise.
class ConstScratch
{
public:
  explicit ConstScratch(const FED_DataBlock& block) : block_(block), record_(block.CreateConstDataRecord()) {}
  ConstScratch(const FED_DataBlock& block, std::size_t index) : ConstScratch(block)
  {
    block.GetRecord(index, *record_);
  }
  ~ConstScratch() { block_.DeleteDataRecord(record_); }
  ConstScratch(const ConstScratch&)            = delete;
  ConstScratch& operator=(const ConstScratch&) = delete;

  FED_ConstDataRecord* operator->() const { return record_; }
  FED_ConstDataRecord& operator*() const { return *record_; }

private:
  const FED_DataBlock& block_;
  FED_ConstDataRecord* record_;
};

/// A test with a fresh database of the kind under test.
class DatabaseTest : public ::testing::Test
{
protected:
  DatabaseTest() : factory_(MakeConformanceFactory()), database_(factory_->Create()) {}

  FED_Database&       Database() { return *database_; }
  const FED_Database& ConstDatabase() const { return *database_; }
  FED_DataBlock&      Block(const FED_DataDescriptor& key) { return database_->GetOrCreateDataBlock(key, 0); }
  FED_IdMapsPool&     Pool() { return database_->GetIdMapsPool(); }

  /// Closes the database and opens it again, as far as its kind does.
  void Reopen() { database_ = factory_->Reopen(std::move(database_)); }

  std::unique_ptr<ConformanceFactory> factory_;
  std::unique_ptr<FED_Database>       database_;
};

/// A test with a folder of its own, removed afterwards.
class FolderTest : public ::testing::Test
{
protected:
  FolderTest();
  ~FolderTest() override;

  void         Write(const std::string& name, const std::string& text) const;
  std::wstring Path(const std::string& name) const { return (folder_ / name).wstring(); }

  std::filesystem::path folder_;
};

}  // namespace conformance
