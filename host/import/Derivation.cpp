#include "import/Derivation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonDbConnector/FED_IdMapsPool.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>
#include <QuilonUtilities/FED_LogMacros.h>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "database/DatabaseParts.h"
#include "database/DescriptorParcel.h"
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

/// With the segments of an import in parts, fewer than the 32 of which one is made.
constexpr std::size_t kMostDerivedParts = 6;

/// Some records of a block of tensors.
struct TensorSlice
{
  FED_DataDescriptor source;
  FED_DataDescriptor target;
  std::size_t        first = 0;  ///< of the records by ascending index
  std::size_t        count = 0;
  std::size_t        all   = 0;  ///< records of the block

  template <typename Parcel>
  friend void Travel(Parcel& parcel, TensorSlice& slice)
  {
    parcel(slice.source, slice.target, slice.first, slice.count, slice.all);
  }
};

/// What one reader derives at a time.
struct DerivationUnit
{
  std::optional<PartTicket> ticket;  ///< of whole blocks that he writes; nothing: one slice, which goes to who leads
  std::vector<TensorSlice>  slices;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, DerivationUnit& unit)
  {
    parcel(unit.ticket, unit.slices);
  }
};

/// What readers have to know beside the database that they read.
struct DerivationBrief
{
  bool                        isCopy = false;  ///< results go to another database, which has indices of its own
  FED_PartBase                base;            ///< where parts are written
  std::vector<DerivationUnit> units;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, DerivationBrief& brief)
  {
    parcel(brief.isCopy, brief.base, brief.units);
  }
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

/// What became of a unit.
struct DerivedUnit
{
  std::uint64_t segment = 0;  ///< of a part
  Principals    principals;   ///< of a slice

  template <typename Parcel>
  friend void Travel(Parcel& parcel, DerivedUnit& derived)
  {
    parcel(derived.segment, derived.principals);
  }
};

/// Writes by ascending index, as tensors are stored where they were not read from another database.
class PrincipalWriter
{
public:
  /// @param source null: the indices of the two databases are the same
  PrincipalWriter(FED_Database& database, const FED_Database* source) : database_(database), source_(source) {}

  void Write(const TensorSlice& slice, const Principals& principals)
  {
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

/// Reads tensors, one thread its own.
class PrincipalReader
{
public:
  /// @param stored null: the other one is read
  PrincipalReader(std::unique_ptr<StoredDatabase> stored, const FED_Database& database)
      : stored_(std::move(stored)), database_(stored_ ? stored_->Get() : database)
  {}

  DerivedUnit Derive(const DerivationBrief& brief, std::size_t number)
  {
    const DerivationUnit& unit = brief.units[number];
    if (!unit.ticket) return {0, Read(unit.slices.front())};
    WrittenPart     part(*unit.ticket, brief.base);
    PrincipalWriter writer(part.Get(), brief.isCopy ? &database_ : nullptr);
    for (const TensorSlice& slice : unit.slices) writer.Write(slice, Read(slice));
    return {part.Finish(), {}};
  }

private:
  /// Slices of a block come in their order: however many records it has, no list of them is kept.
  Principals Read(const TensorSlice& slice)
  {
    ThrowIfInterrupted();
    const FED_DataBlock& block = database_.GetConstDataBlock(slice.source);
    if (block_ != &block || slice.first < next_) {
      block_ = &block;
      next_  = 0;
      at_.emplace(block.Begin());
    }
    for (; next_ < slice.first; ++next_) ++*at_;
    Principals principals;
    principals.indices.resize(slice.count);
    principals.values.resize(3 * slice.count);
    for (std::size_t i = 0; i < slice.count; ++i, ++next_, ++*at_) {
      principals.indices[i] = **at_;
      double tensor[kNumComponents];
      block.GetValuesAt(principals.indices[i], tensor);
      CalculateScaledPrincipals(tensor, &principals.values[3 * i]);
    }
    return principals;
  }

  std::unique_ptr<StoredDatabase>             stored_;
  const FED_Database&                         database_;
  const FED_DataBlock*                        block_ = nullptr;
  std::optional<FED_DataBlock::IndexIterator> at_;        // in the block
  std::size_t                                 next_ = 0;  // its place among the records
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

/// @param parts null: one thread writes all
DerivationBrief MakeBrief(const std::vector<TensorSlice>& slices, bool isCopy, DatabaseParts* parts)
{
  constexpr std::uint64_t    kBytes = 3 * sizeof(double);  // of a record's results
  std::vector<std::uint64_t> bytes;                        // by block
  for (const TensorSlice& slice : slices)
    if (slice.first == 0) bytes.push_back(kBytes * slice.all);
  DerivationBrief                brief{isCopy, {}, {}};
  const std::vector<std::size_t> ends =
      parts == nullptr ? std::vector<std::size_t>() : DivideIntoParts(bytes, kMostDerivedParts);
  if (ends.size() < 2) {
    for (const TensorSlice& slice : slices) brief.units.push_back({std::nullopt, {slice}});
    return brief;
  }
  for (PartTicket& ticket : parts->GiveOut(ends.size())) brief.units.push_back({std::move(ticket), {}});
  brief.base        = parts->GetBase();
  std::size_t block = 0;  // those that have begun
  std::size_t part  = 0;
  for (const TensorSlice& slice : slices) {
    if (slice.first == 0 && ++block > ends[part]) ++part;
    brief.units[part].slices.push_back(slice);
  }
  return brief;
}

/// @param source borrowed, as the brief
Plan<DerivedUnit> MakePlan(const DerivationBrief& brief, const FED_Database& source, const Readers& readers)
{
  Plan<DerivedUnit> plan;
  plan.units      = brief.units.size();
  plan.state      = readers.state;
  plan.makeWorker = [&brief, &source, open = readers.open](bool isFirst) -> Plan<DerivedUnit>::Worker {
    // This thread has a database of its own as well, unless another one is written: what is read of the one that is
    // would decide when its rows go to the disk.
    auto stored = open && !(isFirst && brief.isCopy) ? open() : nullptr;
    if (!stored && !isFirst) return {};
    return [&brief, reader = std::make_shared<PrincipalReader>(std::move(stored), source)](std::size_t unit) {
      return reader->Derive(brief, unit);
    };
  };
  return plan;
}

void DerivePrincipals(FED_Database& database, std::optional<int> iteration, OnfResultRequestFile& requests,
                      const TensorSource& source)
{
  const bool            isCopy = source.database != nullptr;
  const DerivationBrief brief  = MakeBrief(ListSlices(database, iteration, requests), isCopy, source.parts);
  CrewOrSelf            crew(source.readers.crew);
  Plan<DerivedUnit>     plan = MakePlan(brief, isCopy ? *source.database : database, source.readers);
  plan.ahead                 = 2 * crew.Get().GetSize();
  plan.makeBrief             = [&brief] {
    DerivationBrief own = brief;
    ParcelWriter    parcel;
    parcel(own);
    return parcel.Take();
  };
  PrincipalWriter writer(database, source.database);
  CarryOut(crew.Get(), std::move(plan), [&](std::size_t number, const DerivedUnit& derived) {
    const DerivationUnit& unit = brief.units[number];
    for (const TensorSlice& slice : unit.slices)
      if (slice.first == 0)
        FED_LogMacros::log_msg(FED_LogMacros::LogDetail, "Derivation.cpp", __LINE__, "|%P|Quilon|Derivation",
                               "Principal values: %s", ToSelectionText(slice.target).c_str());
    if (unit.ticket)
      source.parts->Take(*unit.ticket, derived.segment);
    else
      writer.Write(unit.slices.front(), derived.principals);
  });
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

void HelpToDerivePrincipals(const FED_Database& source, const Readers& readers)
{
  DerivationBrief   brief;
  Plan<DerivedUnit> plan = MakePlan(brief, source, readers);
  plan.takeBrief         = [&brief](std::string_view bytes) {
    ParcelReader parcel(bytes);
    parcel(brief);
  };
  CarryOut(*readers.crew, std::move(plan), [](std::size_t, const DerivedUnit&) {});
}

void DeriveResults(FED_Database& database, OnfResultRequestFile& requests, int iteration)
{
  // First: the derivation that follows keeps blocks that exist.
  DerivePrincipals(database, iteration, requests, {});
  FEM_ResultUtil::CalculateAdditionalResults(database, requests, iteration, 0);
}

}  // namespace quilon
