#pragma once

/// @file
/// Streaming reader of the solver's .dat files.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <span>
#include <string>

#include "progress/ReadProgress.h"

namespace quilon::calculix {

/// How the rows of a block are keyed.
enum class DatRows
{
  Node,     ///< node id, values
  Point,    ///< element id, integration point (from 1), values, perhaps the name of a local system
  Element,  ///< element id, values; in contact blocks a face (as the solver numbers it) stands in DatRow::point
  Total     ///< values without an id
};

/// One block as its header line describes it.
struct DatBlock
{
  /// The output key: "U", "RF", "S", "E", "ME", ...; for totals the key of what is summed. The four parts of a section
  /// print have the key "SOF" and their own titles.
  std::string key;
  std::string title;  ///< the header up to " for set", as printed
  std::string set;    ///< set name; empty when the header names none
  DatRows     rows      = DatRows::Node;
  int         numValues = 0;    ///< per row; 0 when it differs between rows (state variables)
  double      time      = 0.0;  ///< total time as printed; in steady-state steps the frequency
  int         mode      = 0;    ///< from the preceding eigenvalue banner, 0 outside modal steps
  /// Behind an "imaginary part" banner, or in a harmonic response, which has none, the second of two blocks alike.
  bool         imaginary = false;
  bool         harmonic  = false;  ///< of the frequency that a banner of participation factors names
  std::int64_t line      = 0;      ///< of the header, from 1
};

/// One row. Tensors (S, E, ME and the moments of inertia of EMAS) are in the library's order xx, yy, zz, xy, yz, zx
/// (the file prints xy, xz, yz).
struct DatRow
{
  int                     id    = 0;  ///< node or element; 0 in totals
  int                     point = 0;  ///< integration point from 1; 0 where there is none
  std::span<const double> values;
  bool                    localSystem = false;  ///< the row names a local system: its values are not global
  std::int64_t            line        = 0;
};

/// One line of an eigenvalue or buckling table.
struct DatMode
{
  int    mode       = 0;
  double eigenvalue = 0.0;  ///< buckling factor in a buckling table
  double omega      = 0.0;
  double frequency  = 0.0;  ///< cycles per time
  double imaginary  = 0.0;
  bool   buckling   = false;
  int    diameter   = -1;  ///< nodal diameter under cyclic symmetry, -1 without it
};

/// Receives what a file holds, in the file's order. Rows arrive in batches that are valid during the call only.
class DatSink
{
public:
  virtual ~DatSink() = default;

  virtual void OnModes(std::span<const DatMode> modes)                     = 0;
  virtual void OnBlockBegin(const DatBlock& block)                         = 0;
  virtual void OnRows(const DatBlock& block, std::span<const DatRow> rows) = 0;
  virtual void OnBlockEnd(const DatBlock& block)                           = 0;
  /// Something the reader does not deliver, by reason: rows of KNOT blocks, participation factors, a block of a title
  /// it does not know, ...
  virtual void OnSkipped(const std::string& reason, std::size_t rows, std::int64_t line) = 0;
};

/// Reads a whole file with flat memory.
///
/// The file has no end mark. A last line that is cut short fails; a file that is cut between two rows of a block reads
/// as a shorter file.
///
/// A mode ends where its blocks end: the first mode of a step tells how many it has, and another time ends it too.
/// @throws FED_Failure "FILE:LINE: what was expected"; what the sink received before stays with it
void ReadDat(const std::filesystem::path& path, DatSink& sink, const ReadProgress& progress = {});

/// The same from a seekable stream.
/// @param name stands for the file in messages
void ReadDat(std::istream& in, const std::string& name, DatSink& sink, const ReadProgress& progress = {});

}  // namespace quilon::calculix
