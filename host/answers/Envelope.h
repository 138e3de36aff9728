#pragma once

/// @file
/// The least and the greatest value over result steps, at each node or element.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "database/Readers.h"
#include "IdRadixMap.h"
#include "kinds/Component.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "selection/Selection.h"

class FED_DataBlock;
class FED_Database;
class FED_IdMapsPool;

namespace quilon {

/// The analysis that results of several steps are written as.
inline constexpr int kOtherAnalysis = 3;

class KindTable;
class Listener;
class RecordTurner;
class Region;

/// Extremes of components at each id over steps.
///
/// A NaN never governs. Of equal values the one of the earlier step governs; 0 and -0 are equal.
/// Memory: 24 bytes a component of each id and 20 bytes an id, however many steps there are; 112 bytes more of each id
/// that has come since the last Settle(), of a component that HasEstimate().
class EnvelopeField
{
public:
  static constexpr std::uint32_t kNoStep = static_cast<std::uint32_t>(-1);

  struct Extreme
  {
    double        value = std::numeric_limits<double>::quiet_NaN();
    std::uint32_t step  = kNoStep;  ///< number of the step that governs, from 0; none where no value was a number
  };

  EnvelopeField() = default;
  /// @param components of one kind, at least one
  explicit EnvelopeField(std::vector<Component> components);

  /// Makes room for as many ids.
  void Reserve(std::size_t numIds);

  /// What is offered from here on is of this step. Steps count from 0 and may come in any order and several times;
  /// those that ascend take the least time. Going back settles what there is.
  void BeginStep(std::uint32_t step);
  /// Begins the step behind all others.
  void BeginStep() { BeginStep(numSteps_); }
  /// @param values of one record, in stored order
  void Offer(int id, std::span<const double> values);
  /// Offers many records. Those whose ids come in the order of the steps before go by the column.
  /// @param ids    shape [count]
  /// @param values shape [count, numValues], in stored order
  void OfferAll(std::size_t count, const int* ids, const double* values, std::size_t numValues);

  /// Values of the records of a step, shape [count, numValues], in stored order.
  struct StepValues
  {
    std::uint32_t step;
    const double* values;
  };
  /// Does what BeginStep() and OfferAll() do for each step, some records after the other: what is kept of them stays
  /// near the processor.
  /// @param ids   shape [count], each once; of all steps
  /// @param steps ascending
  void OfferSteps(std::size_t count, const int* ids, std::span<const StepValues> steps, std::size_t numValues);

  /// Evaluates what governs where it is only estimated so far: at once it takes less time than one by one, when it is
  /// asked for. More may be offered.
  void Settle();

  /// Takes what was offered to another field of the same components. Steps with one number are the same.
  void Merge(EnvelopeField&& other);

  const std::vector<Component>& GetComponents() const noexcept { return components_; }
  std::size_t                   NumSteps() const noexcept { return numSteps_; }
  std::size_t                   NumIds() const noexcept { return rows_.Entries().size(); }

  /// @return rows by ascending id
  std::vector<std::size_t> SortedRows() const;
  int                      GetId(std::size_t row) const { return rows_.Entries()[row].first; }
  Extreme                  GetLeast(std::size_t row, std::size_t component) const;
  Extreme                  GetGreatest(std::size_t row, std::size_t component) const;
  /// The value of largest magnitude, with its sign: the least or the greatest one.
  Extreme GetLargest(std::size_t row, std::size_t component) const;

  /// Values that were no numbers, over all ids, components and steps.
  std::size_t NumNans() const noexcept { return numNans_; }
  /// @return ids that were offered in fewer than all steps
  std::size_t CountPartial() const;

  /// The components stay those that each side has.
  template <typename Parcel>
  friend void Travel(Parcel& parcel, EnvelopeField& field)
  {
    if constexpr (!Parcel::kReads) field.Settle();
    std::vector<int>           ids;
    std::vector<std::uint32_t> counts;
    for (const auto& [id, count] : field.rows_.Entries()) {
      ids.push_back(id);
      counts.push_back(count);
    }
    parcel(ids, counts, field.least_, field.greatest_, field.leastStep_, field.greatestStep_, field.numSteps_,
           field.numNans_);
    if constexpr (Parcel::kReads) {
      field.rows_.Clear();
      field.next_ = 0;
      for (std::size_t row = 0; row < ids.size(); ++row)
        field.rows_.At(field.rows_.FindOrInsert(ids[row])) = counts[row];
      field.FinishRows();
    }
  }

private:
  static constexpr std::size_t kMostAtOnce = 1024;  // records whose values stay near the processor

  std::size_t FindRow(int id);
  std::size_t InsertNew(std::size_t count, const int* ids);
  bool        FindRun(std::size_t count, const int* ids);
  void        SizeRows();
  void        OfferKnown(std::size_t first, std::size_t count, const double* values, std::size_t numValues);
  void        OfferComponent(std::size_t component, std::size_t first, std::size_t count, const double* values,
                             std::size_t numValues);
  void        OfferEstimated(std::size_t component, std::size_t first, std::size_t count, const double* values);
  void        TakeValues(std::span<const double> values, std::size_t row, std::size_t at);
  void        TakeValue(double value, std::size_t at);

  /// What governs a component of an id by its estimate. Of values that only rise each step governs until the next, and
  /// few have to be evaluated.
  struct Estimates
  {
    std::vector<double>                errors;  ///< of values that are estimates; 0: the value is exact
    std::vector<std::array<double, 6>> tensors;

    void Resize(std::size_t size)
    {
      errors.resize(size);
      tensors.resize(size);
    }
    void Clear() noexcept { Resize(0); }
  };
  /// Where a component of a row stands: among all, and among those that are estimated.
  struct Place
  {
    std::size_t at;
    std::size_t slot;
  };
  enum Side
  {
    Below,
    Above
  };
  void TakeExtreme(Side side, double value, std::uint32_t step, std::size_t at);
  bool TakeEstimate(Side side, const double* tensor, double estimate, double error, std::size_t at, std::size_t slot);
  void SettlePlaces(std::size_t component);
  void SizeEstimates();
  void FinishRows() noexcept;
  /// @param row from fresh_ on
  /// @return the position of an estimated component of the row
  std::size_t SlotOf(std::size_t row, std::size_t component) const noexcept
  {
    return (row - fresh_) * numSlots_ + slots_[component];
  }
  Extreme     ExtremeOf(Side side, std::size_t row, std::size_t component) const;
  std::size_t CountKnown(std::size_t count, const int* ids) const;

  std::vector<Component>    components_;
  std::vector<int>          positions_;  // of stored components; -1 of invariants
  IdRadixMap<std::uint32_t> rows_;       // how many steps have offered the id; its position is the row
  std::size_t               next_ = 0;   // row that the next record has if the ids come as they came before
  // Rows from here on are of ids that have come since all was settled: their steps came ascending, and what governs
  // them may be estimated. Rows before it are exact.
  std::size_t                fresh_ = 0;
  std::uint32_t              step_  = 0;  // that values are offered of
  std::vector<double>        least_;      // shape [ids, components], as are the others
  std::vector<double>        greatest_;
  std::vector<std::uint32_t> leastStep_;
  std::vector<std::uint32_t> greatestStep_;
  std::vector<std::size_t>   slots_;  // of components that have estimates, their position among these; else kNoSlot
  std::size_t                numSlots_ = 0;
  Estimates                  leastEstimates_;  // shape [rows from fresh_ on, numSlots_], or less before they are used
  Estimates                  greatestEstimates_;
  std::uint32_t              numSteps_ = 0;
  std::size_t                numNans_  = 0;
  // Of one component of records that OfferAll() was given.
  std::vector<std::uint32_t> beyond_;  // those that may govern
  std::vector<double>        gathered_;
  std::vector<double>        evaluated_;
  std::vector<double>        errors_;
  std::vector<std::uint8_t>  marks_;  // see MarkExtremes()
  // Whose values are to be settled.
  std::vector<Place>  places_;
  std::vector<Place>  settled_;
  std::vector<double> exact_;
};

/// Results of one kind that differ in their step alone, and their envelope.
struct EnvelopeSeries
{
  FED_DataDescriptor              key;    ///< of the blocks, without analysis, load case, substep and increment
  std::vector<FED_DataDescriptor> steps;  ///< by number; see GetResultStep()
  std::vector<std::string>        names;  ///< of the steps where they have names (combinations), else empty
  EnvelopeField                   field;
  std::size_t                     numWithoutAxes = 0;  ///< records of places where the axes are none
};

struct EnvelopeRequest
{
  std::string database;   ///< name of the database, for messages
  Selection   selection;  ///< components of the kinds
  std::string axes;       ///< see ComponentAxes; empty: global
  /// Whose records count; null: all. Borrowed. A kind of which nothing is in it has no envelope.
  Region*     region        = nullptr;
  std::string selectionText = {};  ///< what the user wrote, for messages
};

struct EnvelopeReport
{
  std::vector<std::string> skippedKinds;  ///< names of selected kinds that have no envelope
  std::string              axes;          ///< what the axes are, for people; empty for global ones
};

/// @return the kinds of blocks that an envelope can be of: scalars, vectors and tensors of nodes or elements
bool HasEnvelope(const FED_DataDescriptor& block);

/// The key of all blocks that differ from this one in their step alone.
FED_DataDescriptor SeriesOf(const FED_DataDescriptor& block);

/// @return whether a step comes before another: by iteration, analysis, load case, substep and increment
bool ComesBefore(const FED_DataDescriptor& step, const FED_DataDescriptor& other);

/// Goes through blocks, each once, and hands out the envelope of each series, one after the other. One series is in
/// memory at a time; where readers share it, a field of what each has read.
/// @param blocks   the selected descriptors
/// @param listener borrowed, may be null
/// @param readers  share each series by its chunks and steps; what is handed out is the same for any
/// @throws FED_Failure when none of the blocks has an envelope, and when nothing is in the region
EnvelopeReport CalculateEnvelopes(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                                  const EnvelopeRequest& request, Listener* listener,
                                  const std::function<void(const EnvelopeSeries& series)>& take,
                                  const Readers&                                           readers = {});

/// Load cases of an envelope in a database.
enum EnvelopeLoadCase : int
{
  EnvelopeLeast    = 20001,
  EnvelopeGreatest = 20002,
  EnvelopeLargest  = 20003  ///< the value of largest magnitude, with its sign
};

/// Writes an envelope as user kinds, with analysis 3, substep 1 and a load case of EnvelopeLoadCase: "nodal-stress
/// envelope" with all stored components, or "nodal-stress mises envelope" for each component that was asked for; behind
/// the name " load case" and " substep" stand those of the step that governs, and " analysis" where steps have several.
/// Least values of several steps are no tensor: their kinds are told apart from those of results.
/// @throws FED_Failure when all user kinds are taken
void WriteEnvelope(const EnvelopeSeries& series, const KindTable& kinds, FED_Database& target);

}  // namespace quilon
