#pragma once

/// @file
/// Averaging of element-based values at nodes.

#include "quilon_language.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

#include "FEM_AvgFieldDefs.h"
#include "FEM_AvgUtil.h"
#include "FillLog.h"
#include "IdRadixMap.h"
#include "quilon_export.h"

class FED_Database;
class FED_DataDescriptor;

/// Gathers, per id and layer, the values that several elements contribute. Fill it with AddValue() while reading
/// results, save it once with SaveField(), then ResetField() for the next result step.
///
/// Exists for Key = int and the six pairs of Data and N declared below: sums with counts (FEM_AvgUtil::AvgData) or
/// running statistics (FEM_AvgUtil::StatData) of 1, 3 or 6 components. Six components are a symmetric tensor: xx, yy,
/// zz, xy, yz, zx.
///
/// Units:    those of the values; a variance has their square.
/// Ids:      any int; ascending means ascending as unsigned 32-bit, so negative ids come last.
/// Layers:   0 <= layer < NumLayers() here, and from 1 in saved blocks. Layers are not checked: a layer out of range
///           is undefined behaviour, except that debug builds assert.
/// Counts:   at most 2147483647 values per id and layer.
/// Memory:   per layer that of an IdRadixMap<Data>, and from the second fill on, as long as fills come in one order, 4
///           bytes per value of the longest. An id once added stays until the field is destroyed.
/// Failures: a failed allocation passes through as std::bad_alloc; the field then holds exactly the values of the
///           AddValue() calls that returned.
/// Threads:  one thread fills a field. Several may read it once filling has ended: const members write nothing.
template <typename Key, typename Data, int N>
class QUILON_EXPORT FEM_AvgField
{
public:
  /// @param numLayers 0 or less makes a field without layers: nothing can be added to it, and saving it writes nothing
  FEM_AvgField(int numLayers = 1);
  /// Copies are deep.
  FEM_AvgField(const FEM_AvgField& other);
  /// Leaves the other field without layers.
  FEM_AvgField(FEM_AvgField&& other) noexcept;
  /// When the copy throws, this field is unchanged.
  FEM_AvgField& operator=(const FEM_AvgField& other);
  /// Leaves the other field without layers; a field moved to itself keeps everything.
  FEM_AvgField& operator=(FEM_AvgField&& other) noexcept;
  ~FEM_AvgField();

  /// Folds a value into the id's entry in layer 0.
  void AddValue(const Key& id, const double (&value)[N]);
  /// Folds a value into the id's entry in the layer; a new id gets an entry.
  void AddValue(const Key& id, int layer, const double (&value)[N]);

  /// @return the entry's data, null when the layer holds no entry for the id. Valid until the next AddValue() to the
  ///         layer.
  const Data* GetData(int layer, const Key& id) const;

  /// Replaces the contents of both vectors by all entries of the layer, by ascending id; ids[k] belongs to data[k].
  void DumpField(int layer, std::vector<Key>& ids, std::vector<Data>& data) const;

  /// @return the number of entries of layer 0; those of other layers are not counted
  std::size_t FieldSize() const;

  /// @return 0 for a field without layers
  int NumLayers() const;

  /// @return whether any layer ever received a value; ResetField() does not change the answer
  bool IsAnyValueAdded() const;

  /// Sets the data of every entry to zero. Keeps the entries, their ids and which layers ever received a value.
  void ResetField();

  /// Writes one record per id, by ascending id, layer after layer; layers that never received a value are left out.
  ///
  /// Values per component, for sums with counts and for running statistics:
  ///     Average   sum / count, 0.0 when the count is 0 | mean
  ///     Sum       sum                                  | count * mean
  ///     Variance  0.0                                  | m2 / count, which is 0/0 (a NaN) for an entry that was reset
  ///
  /// Records are scalars (N = 1), vectors (N = 3) or tensors (N = 6). With a mode other than SeparateLayers all layers
  /// share a block, and of an id's layers the highest remains.
  /// @param db        borrowed for this call; its blocks are obtained with GetOrCreateDataBlock
  /// @param desc      copied; the mode says what becomes of its layer index
  /// @param blockFlag handed to the id view of every block
  /// @param written   null, or receives the descriptor of every block before it is written
  /// @throws FED_Failure for an operation that is none of the three, also where there is nothing to save; nothing is
  ///         then written. What the database throws passes through: records written so far stay, their descriptors
  ///         stay in `written`, and so does the one at work
  void SaveField(FED_Database& db, const FED_DataDescriptor& desc, FEM_AvgFieldDefs::LayerMode mode,
                 FEM_AvgFieldDefs::Operation op, bool blockFlag, std::set<FED_DataDescriptor>* written) const;

private:
  using LayerStore = IdRadixMap<Data>;

  std::int32_t            numLayers;
  std::vector<LayerStore> layers_;  // shape [numLayers]
  std::vector<bool>       added;    // shape [numLayers]: whether a layer ever received a value

  std::vector<FillLog<std::uint32_t>> logs_;  // shape [numLayers]: positions of the entries of a layer's values
};

extern template class FEM_AvgField<int, FEM_AvgUtil::AvgData<1>, 1>;
extern template class FEM_AvgField<int, FEM_AvgUtil::AvgData<3>, 3>;
extern template class FEM_AvgField<int, FEM_AvgUtil::AvgData<6>, 6>;
extern template class FEM_AvgField<int, FEM_AvgUtil::StatData<1>, 1>;
extern template class FEM_AvgField<int, FEM_AvgUtil::StatData<3>, 3>;
extern template class FEM_AvgField<int, FEM_AvgUtil::StatData<6>, 6>;
