#pragma once

/// @file
/// Streaming reader of the solver's .frd files, ASCII (long format) and binary.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "progress/ReadProgress.h"

namespace quilon::calculix {

/// One result data set as its header lines describe it.
struct FrdDataset
{
  std::string              name;                ///< "DISP", "STRESS", ... without trailing blanks
  std::vector<std::string> components;          ///< stored components only (a viewer's "ALL" is none)
  double                   value        = 0.0;  ///< total time; frequency in modal steps
  int                      kind         = 0;    ///< ictype: 0 time, 2 modes, others as the file says
  int                      step         = 0;    ///< from the preceding 1PSTEP line
  int                      increment    = 0;    ///< from the preceding 1PSTEP line
  int                      outputNumber = 0;    ///< running output number
  int                      mode         = 0;    ///< from 1PMODE, 0 when there was none
  std::int64_t             line         = 0;    ///< of the 100C line, from 1
};

/// One element. Node order is that of a deck, whatever the file's order is.
struct FrdElement
{
  int                  id       = 0;
  int                  type     = 0;  ///< the file's type code: 1 hex8, 2 wedge6, 3 tet4, 4 hex20, ... 12 line3
  int                  material = 0;
  std::span<const int> nodes;
};

/// Where a data set begins, with the first line that tells of it: the reading may begin there.
struct FrdMark
{
  std::uint64_t position = 0;  ///< of the line, in bytes
  std::int64_t  line     = 0;  ///< before it
  std::uint64_t bytes    = 0;  ///< of the data set
};

/// Receives what a file holds, in the file's order. Rows arrive in batches that are valid during the call only.
class FrdSink
{
public:
  virtual ~FrdSink() = default;

  /// @param coordinates shape [ids.size(), 3]
  virtual void OnNodes(std::span<const int> ids, std::span<const double> coordinates) = 0;
  virtual void OnElements(std::span<const FrdElement> elements)                       = 0;
  /// @return whether the rows are wanted. Rows that are not are counted and passed over undecoded, and OnRows() is not
  ///         called for them
  virtual bool OnDatasetBegin(const FrdDataset& dataset) = 0;
  /// @param values shape [ids.size(), dataset.components.size()]
  /// @param line   of the first row of the batch (0 in binary files), rows follow each other
  virtual void OnRows(const FrdDataset& dataset, std::span<const int> ids, std::span<const double> values,
                      std::int64_t line)               = 0;
  virtual void OnDatasetEnd(const FrdDataset& dataset) = 0;
  /// The file ends before its last line, right behind a dataset. The failure follows.
  virtual void OnCutBehindDataset() {}
  /// @return whether a node is known that the file's mesh has not. The mesh is that of the first results: elements that
  ///         come into the model later (*MODEL CHANGE) may bring nodes of their own
  virtual bool IsKnown(int /*node*/) const { return false; }
};

/// Reads a whole file with flat memory: one bit per node id and buffers of fixed size.
/// Every node of an element or a row is a node of the mesh, and no node is there twice. A node count or a row count is
/// that of the rows; an element count is not, since the solver miscounts composite shells.
/// A job that adds elements after its first step fails here: the solver writes the mesh once, without their nodes.
/// @throws FED_Failure "FILE:LINE: what was expected" for a file that ends early, a damaged number, a count that lies
///         or a line that fits no rule; what the sink received before stays with it
void ReadFrd(const std::filesystem::path& path, FrdSink& sink, const ReadProgress& progress = {});

/// The same from a seekable stream.
/// @param name stands for the file in messages
void ReadFrd(std::istream& in, const std::string& name, FrdSink& sink, const ReadProgress& progress = {});

/// Reads a whole file but for the rows of data sets, whatever the sink says: of text they are passed over at one go
/// where their number and their widths lead to their end.
/// @return where the data sets are, in the file's order; nothing where mesh comes behind the first of them
std::vector<FrdMark> ReadFrdHeads(const std::filesystem::path& path, FrdSink& sink, const ReadProgress& progress = {});

/// Reads one data set. Which nodes there are is for the sink to say.
/// @throws FED_Failure as ReadFrd() does
void ReadFrdDataset(const std::filesystem::path& path, const FrdMark& mark, FrdSink& sink,
                    const ReadProgress& progress = {});

}  // namespace quilon::calculix
