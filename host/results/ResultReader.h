#pragma once

/// @file
/// What readers of result files hand out, whoever wrote the files.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "progress/ReadProgress.h"

namespace quilon {

/// Values of result index 5.
enum Analysis : int
{
  AnalysisTime  = 1,  ///< results in time
  AnalysisModes = 2,  ///< modes, buckling modes
  AnalysisOther = 3   ///< harmonic response, sensitivities
};

/// What the value of a step is.
enum class StepValue
{
  None,
  Time,  ///< from the start of the job
  Frequency,
  BucklingFactor
};

/// One result of a job, as far as a file tells which it is.
///
/// A file that lists its results names the step. A file that prints values at a time or under a mode's number alone
/// leaves the step 0; its values are then put to the result of that time or mode that the job's other files list.
struct ResultStep
{
  int       step      = 0;  ///< from 1; 0 where the file does not say
  Analysis  analysis  = AnalysisTime;
  int       substep   = 0;  ///< increment, or number of the mode; 0 outside AnalysisTime: numbered as the results come
  int       number    = 0;  ///< tells results without a substep apart: fields of one number are of one result
  StepValue meaning   = StepValue::Time;
  double    value     = 0.0;
  double    tolerance = 0.0;  ///< half a unit of the last digit that the value is written with, or a little more
};

/// One line of a table of eigenvalues or buckling factors.
struct ResultMode
{
  int    mode       = 0;  ///< from 1
  bool   isBuckling = false;
  double eigenvalue = 0.0;  ///< or buckling factor
  double frequency  = 0.0;  ///< cycles per time; 0 where isBuckling
};

/// What is known of a field by its meaning; by its place it then has a kind of the catalogue.
enum class FieldQuantity
{
  Other,  ///< kept under its name
  Displacement,
  Reaction,
  Velocity,
  Temperature,
  HeatFlux,
  HeatFlow,  ///< at nodes, from outside
  PlasticStrain,
  Energy,  ///< of an element; at nodes its density
  Stress,
  Strain
};

/// What rows are keyed by.
enum class FieldPlace
{
  Node,
  Point,    ///< element and integration point
  Element,  ///< element, or a face of it
  Total     ///< nothing: values of a whole set
};

/// One field of one result: what stands before its rows. The imaginary part of a complex field is a field of a name of
/// its own, and of no quantity.
struct ResultField
{
  ResultStep    step;
  std::string   name;      ///< as its program has it; what no kind of the catalogue holds is kept under this name
  std::string   identity;  ///< what tells it from the other fields of its result: quantity and set, for example
  FieldQuantity quantity  = FieldQuantity::Other;
  FieldPlace    place     = FieldPlace::Node;
  std::size_t   numValues = 0;          ///< of a row; 0 where it differs between rows
  std::vector<std::string> valueNames;  ///< of a total: a name in full for each value
  std::int64_t             line = 0;    ///< where it begins, from 1
};

/// One row. Vectors are x, y, z and tensors xx, yy, zz, xy, yz, zx with shears as tensor components, all in global axes
/// unless the row says otherwise, in the units of the job.
struct ResultRow
{
  int                     id    = 0;  ///< node or element; 0 in totals
  int                     point = 0;  ///< integration point from 1, in its program's order; face of an element from 1
  std::span<const double> values;
  bool                    localSystem = false;  ///< the values are in axes of the node's or the element's own
  std::int64_t            line        = 0;      ///< 0 in binary files
};

/// One element of a mesh.
struct MeshElement
{
  int                  id       = 0;
  int                  type     = 0;  ///< 1 hex8, 2 wedge6, 3 tet4, 4 hex20, 5 wedge15, 6 tet10, ... 12 line3
  int                  material = 0;  ///< number, 0 none; see ResultSink::OnMaterials()
  std::span<const int> nodes;         ///< in the order of elements/ElementShape.h
};

/// A set of nodes or of elements.
struct ModelSet
{
  std::string_view     name;
  std::span<const int> ids;  ///< in its program's order
};

/// What is known of a material, in the units of the job; NaN where nothing is.
struct ModelMaterial
{
  std::string_view name;
  double           density       = std::numeric_limits<double>::quiet_NaN();
  double           youngsModulus = std::numeric_limits<double>::quiet_NaN();
  double           poissonRatio  = std::numeric_limits<double>::quiet_NaN();
};

/// Receives what a file holds, in the file's order. Whatever it is given is valid during the call only.
///
/// The mesh comes before the fields. Between OnFieldBegin() and OnFieldEnd() of a field come its rows, in batches, and
/// nothing else. Points of an element follow each other in one batch or in successive ones. Where a file has a tensor
/// at points and its program's own average of it at nodes, the points come first within a result.
class ResultSink
{
public:
  virtual ~ResultSink() = default;

  /// @param coordinates shape [ids.size(), 3]
  virtual void OnNodes(std::span<const int> ids, std::span<const double> coordinates) = 0;
  /// @param elements their nodes have been handed out
  virtual void OnElements(std::span<const MeshElement> elements) = 0;
  // Sets and materials come with the mesh, all of a kind at once. They have their places among them, from 1, as
  // numbers.
  virtual void OnNodeSets(std::span<const ModelSet> sets)            = 0;
  virtual void OnElementSets(std::span<const ModelSet> sets)         = 0;
  virtual void OnMaterials(std::span<const ModelMaterial> materials) = 0;
  /// Results that the file lists without having their fields.
  virtual void OnSteps(std::span<const ResultStep> steps) = 0;
  virtual void OnModes(std::span<const ResultMode> modes) = 0;
  /// @return whether the rows are wanted. Of rows that are not wanted a reader delivers none or all, and may pass over
  ///         what they say: it checks them when they are
  virtual bool OnFieldBegin(const ResultField& field)                            = 0;
  virtual void OnRows(const ResultField& field, std::span<const ResultRow> rows) = 0;
  virtual void OnFieldEnd(const ResultField& field)                              = 0;
  /// A file with an end mark ends before it, right behind a field. The reader's failure follows.
  virtual void OnCutBehindField() {}
  /// @return whether a node is known though no mesh that was handed out has it: a deck has it, for instance. Rows of
  ///         other nodes may be refused by the reader
  virtual bool HasNode(int /*id*/) const { return false; }
  /// Something that the reader does not deliver, by reason.
  virtual void OnSkipped(const std::string& reason, std::size_t rows) = 0;
};

/// Where a field begins in its file, for its reader to read it alone.
struct FieldMark
{
  std::uint64_t position = 0;
  std::int64_t  line     = 0;
  std::uint64_t bytes    = 0;  ///< of the field in the file
};

/// One file with results. It may be read several times, by several threads too, and keeps nothing between.
class ResultReader
{
public:
  virtual ~ResultReader() = default;

  virtual const std::filesystem::path& Path() const noexcept = 0;
  /// @return whether the end of the file shows; where it does not, a file that was cut is told by what it lacks beside
  ///         its earlier results
  virtual bool HasEndMark() const noexcept = 0;
  /// Reads the whole file with flat memory.
  /// @param progress called now and then; may throw to interrupt
  /// @throws FED_Failure "FILE:LINE: what was expected"; what the sink received before stays with it
  virtual void Read(ResultSink& sink, const ReadProgress& progress) const = 0;

  /// @return whether fields can be read one by one, without what stands before them
  virtual bool HasMarks() const noexcept { return false; }
  /// Reads the file but for the rows of its fields, whatever the sink says: mesh, steps, and where fields begin and
  /// end.
  /// @return a mark of each field, in the file's order; nothing where they cannot be read one by one all the same
  virtual std::vector<FieldMark> ReadHeads(ResultSink& /*sink*/, const ReadProgress& /*progress*/) const { return {}; }
  /// Reads one field as Read() does. The sink knows the nodes of the mesh.
  virtual void ReadField(ResultSink& /*sink*/, const FieldMark& /*mark*/, const ReadProgress& /*progress*/) const {}
};

/// The files of one job; files that it has not are null. It has `results` or `prints`.
struct ResultJob
{
  std::filesystem::path         stem;     ///< for people
  std::unique_ptr<ResultReader> results;  ///< the mesh, and fields that name their steps
  std::unique_ptr<ResultReader> prints;   ///< fields that know their time or their mode alone; values have more digits
  std::unique_ptr<ResultReader> status;   ///< steps and their times, without fields

  // Names of files for messages, whether the job has them or lacks them.
  std::string resultsName;  ///< "job.frd", for instance
  std::string statusName;
};

}  // namespace quilon
