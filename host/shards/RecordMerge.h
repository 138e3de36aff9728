#pragma once

/// @file
/// Blocks that several shards have, record by record.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "shards/BorderRule.h"

class FED_DataBlock;
class FED_Database;
class FED_DataDescriptor;

namespace quilon {

/// A block of one shard on its way into the joined database, with what messages tell of it.
struct ShardBlock
{
  const FED_Database&       shard;
  const FED_DataDescriptor& descriptor;
  std::string               shardName;
  std::string               text;  ///< of the block: "nodal-stress (521@it=0,sub=1)"
};

struct MergedRecords
{
  std::size_t records = 0;  ///< that were read
  std::size_t shared  = 0;  ///< of them those that the joined database had already
};

/// Adds the records of a block to those of the shards before it.
/// @param rule nothing: a record that is there already is a failure
/// @throws FED_Failure that names block, id and shard where the rule does not hold or does not fit the values
MergedRecords MergeBlock(const ShardBlock& block, const std::optional<BorderRule>& rule, FED_Database& target);

/// Adds means of a tensor at nodes to those of the shards before, with the counts of values behind them and, where they
/// are kept, variances, errors and principal values: at a node that both have, as if one process had averaged all
/// values.
///
/// Formula: with n values here and m there, n + m = k, delta the difference of the means,
///     mean = mean_n + delta m / k,  m2 = m2_n + m2_m + delta^2 n m / k,  variance = m2 / k,
/// the last two as variance = variance_n + (m (variance_m - variance_n) + delta^2 n m / k) / k;
/// T. F. Chan, G. H. Golub, R. J. LeVeque, Updating formulae and a pairwise algorithm for computing sample variances,
/// COMPSTAT (1982) 30-41.
/// @param block of the means
/// @throws FED_Failure where counts are missing, or variances that errors are made of
MergedRecords MergeAverages(const ShardBlock& block, FED_Database& target);

/// @return whether means of the kind may be merged with MergeAverages()
bool HasCounts(int kind) noexcept;

/// @return the kind of means that a kind goes with when these are merged: variances, errors, counts, principal values;
///         0 for any other
int FindAverageOf(int kind);

/// @return the kinds that go with means of a kind when these are merged; none for any other
std::vector<int> ListCompanionsOf(int average);

}  // namespace quilon
