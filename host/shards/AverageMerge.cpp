#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include <bundled/FED_BlockSpans.h>
#include <bundled/OnfKinds.h>

#include "import/Derivation.h"
#include "import/TensorKinds.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "shards/RecordMerge.h"
#include "text/Failure.h"

namespace quilon {

namespace {

using Tensor = std::array<double, kNumComponents>;

FED_DataDescriptor OfKind(const FED_DataDescriptor& descriptor, int kind)
{
  FED_DataDescriptor other = descriptor;
  other.SetInteger(FED_DataDescriptor::OnfId, kind);
  return other;
}

const TensorKinds* FindKinds(int average) noexcept
{
  for (const TensorKinds& kinds : kTensorKinds)
    if (kinds.average == average) return &kinds;
  return nullptr;
}

/// What goes with means, in one database; null where there is no such block.
template <typename Block>
struct Companions
{
  Block* mean;
  Block* variance;
  Block* error;
  Block* count;
  Block* principal;
};

template <typename Block, typename Find>
Companions<Block> FindCompanions(const FED_DataDescriptor& means, const TensorKinds& kinds, const Find& find)
{
  const auto of = [&](int kind) -> Block* { return find(OfKind(means, kind)); };
  return {of(kinds.average), of(kinds.variance), of(kinds.error), of(kinds.count),
          of(OnfKind::PrincipalOf(kinds.average))};
}

/// Errors as imports make them.
double CalculateError(const Tensor& variance, double count)
{
  Tensor error;
  for (std::size_t k = 0; k < kNumComponents; ++k) error[k] = std::sqrt(std::abs(variance[k] / count));
  std::array<double, 3> principal{};
  CalculateScaledPrincipals(error.data(), principal.data());
  return principal[0];
}

class AverageMerger
{
public:
  AverageMerger(const Companions<const FED_DataBlock>& from, const Companions<FED_DataBlock>& to) : from_(from), to_(to)
  {}

  /// Of a node that no shard before has.
  void Copy(std::size_t source, std::size_t target)
  {
    CopyValues(from_.mean, source, to_.mean, target);
    CopyValues(from_.variance, source, to_.variance, target);
    CopyValues(from_.error, source, to_.error, target);
    CopyValues(from_.count, source, to_.count, target);
    CopyValues(from_.principal, source, to_.principal, target);
  }

  void Merge(std::size_t source, std::size_t target)
  {
    const double n = to_.count->GetScalarAt(target);
    const double m = from_.count->GetScalarAt(source);
    if (m == 0.0) return;
    if (n == 0.0) return Copy(source, target);
    const double k = n + m;
    Tensor       mean{};
    Tensor       other{};
    to_.mean->GetValuesAt(target, mean.data());
    from_.mean->GetValuesAt(source, other.data());
    Tensor delta;
    for (std::size_t c = 0; c < kNumComponents; ++c) delta[c] = other[c] - mean[c];
    // A step from what is there rounds less than weighted sums do, shard after shard.
    for (std::size_t c = 0; c < kNumComponents; ++c) mean[c] += delta[c] * m / k;
    to_.mean->SetValuesAt(target, mean.data());
    to_.count->SetScalarAt(target, k);
    if (to_.variance != nullptr) {
      Tensor variance{};
      Tensor otherVariance{};
      to_.variance->GetValuesAt(target, variance.data());
      from_.variance->GetValuesAt(source, otherVariance.data());
      for (std::size_t c = 0; c < kNumComponents; ++c)
        variance[c] += (m * (otherVariance[c] - variance[c]) + delta[c] * delta[c] * (n * m / k)) / k;
      to_.variance->SetValuesAt(target, variance.data());
      if (to_.error != nullptr) to_.error->SetScalarAt(target, CalculateError(variance, k));
    }
    if (to_.principal == nullptr) return;
    std::array<double, 3> principal{};
    CalculateScaledPrincipals(mean.data(), principal.data());
    to_.principal->SetValuesAt(target, principal.data());
  }

private:
  static void CopyValues(const FED_DataBlock* from, std::size_t source, FED_DataBlock* to, std::size_t target)
  {
    if (from == nullptr || to == nullptr || !from->HasRecord(source)) return;
    Tensor values{};  // room for the most values
    from->GetValuesAt(source, values.data());
    to->SetValuesAt(target, values.data());
  }

  Companions<const FED_DataBlock> from_;
  Companions<FED_DataBlock>       to_;
};

/// @param to what all shards have
void RequireCompanions(const Companions<const FED_DataBlock>& from, const Companions<FED_DataBlock>& to,
                       const ShardBlock& block)
{
  const auto require = [&](bool isThere, const char* what, const char* why) {
    if (!isThere) Fail(block.shardName + ": " + block.text + " has no " + what + " beside it, expected them: " + why);
  };
  constexpr const char* kOthers = "other shards have them";
  require(from.count != nullptr, "counts of values", "averages are put together by them");
  require(from.error == nullptr || from.variance != nullptr, "variances", "errors are made of them");
  require(from.variance != nullptr || to.variance == nullptr, "variances", kOthers);
  require(from.error != nullptr || to.error == nullptr, "errors", kOthers);
  require(from.principal != nullptr || to.principal == nullptr, "principal values", kOthers);
  const bool isAlone = to.count == nullptr || (from.variance != nullptr && to.variance == nullptr) ||
                       (from.error != nullptr && to.error == nullptr) ||
                       (from.principal != nullptr && to.principal == nullptr);
  if (isAlone)
    Fail(block.shardName + ": " + block.text +
         " has counts, variances, errors or principal values beside it that other shards have not, expected the same");
}

}  // namespace

bool HasCounts(int kind) noexcept { return FindKinds(kind) != nullptr; }

std::vector<int> ListCompanionsOf(int average)
{
  const TensorKinds* const kinds = FindKinds(average);
  if (kinds == nullptr) return {};
  return {kinds->variance, kinds->error, kinds->count, OnfKind::PrincipalOf(average)};
}

int FindAverageOf(int kind)
{
  for (const TensorKinds& kinds : kTensorKinds) {
    const std::vector<int> companions = ListCompanionsOf(kinds.average);
    if (std::find(companions.begin(), companions.end(), kind) != companions.end()) return kinds.average;
  }
  return 0;
}

MergedRecords MergeAverages(const ShardBlock& block, FED_Database& target)
{
  const TensorKinds& kinds = *FindKinds(block.descriptor.GetInteger(FED_DataDescriptor::OnfId));
  const auto from = FindCompanions<const FED_DataBlock>(block.descriptor, kinds, [&](const FED_DataDescriptor& wanted) {
    return block.shard.HasDataBlock(wanted) ? &block.shard.GetConstDataBlock(wanted) : nullptr;
  });
  const auto to   = FindCompanions<FED_DataBlock>(block.descriptor, kinds, [&](const FED_DataDescriptor& wanted) {
    return target.HasDataBlock(wanted) ? &target.GetDataBlock(wanted) : nullptr;
  });
  RequireCompanions(from, to, block);
  AverageMerger   merger(from, to);
  MergedRecords   result;
  FED_IdMapsPool& pool = target.GetIdMapsPool();
  FED_ForEachSpan(*from.mean, block.shard.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
    ThrowIfInterrupted();
    for (std::size_t i = 0; i < span.GetCount(); ++i) {
      const std::size_t source = span.GetIndices().GetData()[i];
      const std::size_t index  = pool.FindOrAddIndex(OnfKind::NodeEntity, span.GetIds().GetData()[i]);
      ++result.records;
      if (to.mean->HasRecord(index)) {
        ++result.shared;
        merger.Merge(source, index);
      } else {
        merger.Copy(source, index);
      }
    }
  });
  return result;
}

}  // namespace quilon
