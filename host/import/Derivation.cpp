#include "import/Derivation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonDbConnector/FED_IdMapsPool.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>
#include <QuilonUtilities/FED_LogMacros.h>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/OnfKinds.h>

#include "database/StoredDatabase.h"
#include "FEM_PrincipalValue.h"
#include "FEM_ResultUtil.h"
#include "import/TensorKinds.h"
#include "progress/Crew.h"
#include "progress/Interrupt.h"
#include "selection/Selection.h"

namespace quilon {

namespace {

/// Principal values and the tensors that they come from.
constexpr std::array<std::pair<int, int>, 4> kPrincipalKinds = {
    {{OnfKind::ElementStressPrincipal, OnfKind::ElementStress},
     {OnfKind::NodalStressPrincipal, OnfKind::NodalStress},
     {OnfKind::ElementStrainPrincipal, OnfKind::ElementStrain},
     {OnfKind::NodalStrainPrincipal, OnfKind::NodalStrain}}};

/// Some records of a block of tensors.
struct TensorSlice
{
  FED_DataDescriptor source;
  FED_DataDescriptor target;
  std::size_t        first;  ///< of the records by ascending index
  std::size_t        count;
  std::size_t        all;  ///< records of the block
};

struct Principals
{
  std::vector<std::size_t> indices;  ///< in the database that was read
  std::vector<double>      values;   ///< three each

  template <typename Parcel>
  friend void Travel(Parcel& parcel, Principals& principals)
  {
    parcel(principals.indices, principals.values);
  }
};

/// Reads tensors, one thread its own.
class PrincipalReader
{
public:
  /// @param stored null: the other one is read
  PrincipalReader(std::unique_ptr<StoredDatabase> stored, const FED_Database& database)
      : stored_(std::move(stored)), database_(stored_ ? stored_->Get() : database)
  {}

  Principals Read(const TensorSlice& slice)
  {
    const FED_DataBlock& block = database_.GetConstDataBlock(slice.source);
    if (block_ != &block) {
      indices_.clear();
      for (FED_DataBlock::IndexIterator it = block.Begin(), end = block.End(); it != end; ++it) indices_.push_back(*it);
      block_ = &block;
    }
    Principals  principals;
    const auto* first = indices_.data() + slice.first;
    principals.indices.assign(first, first + slice.count);
    principals.values.resize(3 * slice.count);
    for (std::size_t i = 0; i < slice.count; ++i) {
      double tensor[kNumComponents];
      block.GetValuesAt(principals.indices[i], tensor);
      CalculateScaledPrincipals(tensor, &principals.values[3 * i]);
    }
    return principals;
  }

private:
  std::unique_ptr<StoredDatabase> stored_;
  const FED_Database&             database_;
  const FED_DataBlock*            block_ = nullptr;
  std::vector<std::size_t>        indices_;  // of the block
};

/// @param iteration nothing: all
std::vector<TensorSlice> ListSlices(const FED_Database& database, std::optional<int> iteration,
                                    OnfResultRequestFile& requests)
{
  constexpr std::size_t    kRecords = std::size_t{1} << 16;  // 2 MiB of results
  std::vector<TensorSlice> slices;
  for (const auto& [target, source] : kPrincipalKinds) {
    if (!requests.typeIsRequested(target)) continue;
    FED_DataDescriptorPattern pattern;
    if (iteration) pattern.SetEqual(FED_DataDescriptor::Iteration, *iteration);
    pattern.SetEqual(FED_DataDescriptor::OnfId, source);
    for (const FED_DataDescriptor& tensors : database.GetDataDescriptors(pattern)) {
      FED_DataDescriptor descriptor = tensors;
      descriptor.SetInteger(FED_DataDescriptor::OnfId, target);
      if (database.HasDataBlock(descriptor)) continue;
      const auto&       block = dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(tensors));
      const std::size_t all   = block.GetRecordCount();
      std::size_t       first = 0;
      do {
        slices.push_back({tensors, descriptor, first, std::min(kRecords, all - first), all});
        first += kRecords;
      } while (first < all);
    }
  }
  return slices;
}

/// Writes by ascending index, as tensors are stored where they were not read from another database.
class PrincipalWriter
{
public:
  /// @param source null: the database itself
  PrincipalWriter(FED_Database& database, const FED_Database* source) : database_(database), source_(source) {}

  void Write(const TensorSlice& slice, const Principals& principals)
  {
    if (slice.first == 0)
      FED_LogMacros::log_msg(FED_LogMacros::LogDetail, "Derivation.cpp", __LINE__, "|%P|Quilon|Derivation",
                             "Principal values: %s", ToSelectionText(slice.target).c_str());
    FED_DataBlock& block = database_.GetOrCreateDataBlock(slice.target, slice.all);
    for (std::size_t i = 0; i < principals.indices.size(); ++i)
      block.SetValuesAt(IndexOf(slice.source, principals.indices[i]), &principals.values[3 * i]);
  }

private:
  std::size_t IndexOf(const FED_DataDescriptor& tensors, std::size_t index)
  {
    if (source_ == nullptr) return index;
    const int entity = OnfKind::EntityOf(tensors);
    return database_.GetIdMapsPool().FindOrAddIndex(entity, source_->GetIdMapsPool().GetId(entity, index));
  }

  FED_Database&       database_;
  const FED_Database* source_;
};

void DerivePrincipals(FED_Database& database, std::optional<int> iteration, OnfResultRequestFile& requests,
                      const TensorSource& source)
{
  const std::vector<TensorSlice> slices = ListSlices(database, iteration, requests);
  Plan<Principals>               plan;
  CrewOrSelf                     crew(source.readers.crew);
  plan.units      = slices.size();
  plan.state      = source.readers.state;
  plan.ahead      = 2 * crew.Get().GetSize();
  plan.makeWorker = [&](bool isFirst) -> Plan<Principals>::Worker {
    // This thread has a database of its own as well where there is one: what is read of the one that is written would
    // decide when its rows go to the disk.
    auto stored = source.readers.open ? source.readers.open() : nullptr;
    if (!stored && !isFirst) return {};
    const FED_Database& here   = source.database != nullptr ? *source.database : database;
    const auto          reader = std::make_shared<PrincipalReader>(std::move(stored), here);
    return [&slices, reader](std::size_t unit) {
      ThrowIfInterrupted();
      return reader->Read(slices[unit]);
    };
  };
  PrincipalWriter writer(database, source.database);
  CarryOut(crew.Get(), std::move(plan),
           [&](std::size_t unit, const Principals& principals) { writer.Write(slices[unit], principals); });
}

/// @return the exponent of the largest component, nothing for a tensor that is zero or not finite
std::optional<int> ExponentOf(const double* tensor)
{
  double largest = 0.0;
  for (std::size_t k = 0; k < kNumComponents; ++k) {
    if (!std::isfinite(tensor[k])) return std::nullopt;
    largest = std::max(largest, std::abs(tensor[k]));
  }
  if (largest == 0.0) return std::nullopt;
  int exponent = 0;
  std::frexp(largest, &exponent);
  return exponent;
}

/// @param tensor with a largest component between 0.5 and 1
void CalculateUnitPrincipals(const double* tensor, double* principal)
{
  // Below a deviator of a quarter the cubic's coefficients have too few digits left for the differences of its roots.
  // Above, the tensor itself is taken: zeros of a plane tensor stay zeros.
  constexpr int kNearlyHydrostatic = -2;

  const double             mean                     = (tensor[0] + tensor[1] + tensor[2]) / 3.0;
  const double             deviator[kNumComponents] = {tensor[0] - mean, tensor[1] - mean, tensor[2] - mean,
                                                       tensor[3],        tensor[4],        tensor[5]};
  const std::optional<int> exponent                 = ExponentOf(deviator);
  if (exponent && *exponent > kNearlyHydrostatic) return FEM_PrincipalValue::Calculate(tensor, principal);

  double scaled[kNumComponents] = {};
  if (exponent) {
    for (std::size_t k = 0; k < kNumComponents; ++k) scaled[k] = std::ldexp(deviator[k], -*exponent);
  }
  FEM_PrincipalValue::Calculate(scaled, principal);
  for (int k = 0; k < 3; ++k) principal[k] = mean + std::ldexp(principal[k], exponent.value_or(0));
}

}  // namespace

void CalculateScaledPrincipals(const double* tensor, double* principal)
{
  const std::optional<int> exponent = ExponentOf(tensor);
  if (!exponent) return FEM_PrincipalValue::Calculate(tensor, principal);

  double scaled[kNumComponents];
  for (std::size_t k = 0; k < kNumComponents; ++k) scaled[k] = std::ldexp(tensor[k], -*exponent);
  CalculateUnitPrincipals(scaled, principal);
  for (int k = 0; k < 3; ++k) principal[k] = std::ldexp(principal[k], *exponent);
}

void DerivePrincipals(FED_Database& database, OnfResultRequestFile& requests, const TensorSource& source)
{
  DerivePrincipals(database, std::nullopt, requests, source);
}

void DeriveResults(FED_Database& database, OnfResultRequestFile& requests, int iteration)
{
  // First: the derivation that follows keeps blocks that exist.
  DerivePrincipals(database, iteration, requests, {});
  FEM_ResultUtil::CalculateAdditionalResults(database, requests, iteration, 0);
}

}  // namespace quilon
