#pragma once

/// @file
/// What a page shows, as its browser reads it: a header in JSON and numbered blobs of numbers.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "report/BlobCode.h"
#include "report/PageModel.h"
#include "text/JsonText.h"

class FED_Database;

namespace quilon::diff {
struct Report;
}

namespace quilon {

class FieldSource;
class Listener;

/// What a database is compared with.
struct PageComparison
{
  const FED_Database* second     = nullptr;  ///< borrowed, as is the rest
  const FED_Database* difference = nullptr;  ///< the second less the first, see diff::CompareOptions::difference
  const diff::Report* report     = nullptr;
  std::string         secondName;
};

/// What of a database a page shows.
struct PageRequest
{
  const FED_Database*             database = nullptr;  ///< borrowed
  std::string                     name;                ///< of the database, for messages
  std::vector<FED_DataDescriptor> blocks;              ///< of one iteration; see ChoosePageBlocks()
  std::size_t                     maxSteps = 0;        ///< 0: all; else as many, the first and the last among them
  BlobBits                        bits     = BlobBits::Full;
  /// Of a page that is a file: no more than mail and chat let through.
  std::size_t           mostBytes       = 25'000'000;
  const PageComparison* comparison      = nullptr;  ///< borrowed; null: the database alone
  bool                  leavesOutInside = false;    ///< the inside of solids, without which cuts show no section
};

/// @param selected what the user selected
/// @param isAsked  whether the user did; without it principal values are left out where their tensor is selected too,
/// of
///                 which the page calculates them
/// @return the blocks that a page can show
std::vector<FED_DataDescriptor> ChoosePageBlocks(std::vector<FED_DataDescriptor> selected, bool isAsked);

/// A page's content. Blobs are made when they are asked for, so that memory grows with the mesh and not with steps.
///
/// The first blobs have what is drawn of the model. Those behind them have the inside of solids, which sections need.
class PageSource
{
public:
  /// @throws FED_Failure where there is no mesh with something to draw, and for what is selected of several iterations
  PageSource(const PageRequest& request, Listener& listener);
  PageSource(const PageSource&)            = delete;
  PageSource& operator=(const PageSource&) = delete;
  ~PageSource();

  /// The header. Names are as the database has them: a page shows them as text.
  const Json& GetHeader() const noexcept { return header_; }

  std::size_t NumBlobs() const noexcept { return blobs_.size(); }
  /// Blobs before those of the inside: NumBlobs() where there are no solids.
  std::size_t NumOutsideBlobs() const noexcept { return numOutside_; }
  std::size_t NumSteps() const noexcept { return numSteps_; }
  std::size_t NumPoints() const noexcept { return model_.points.size(); }
  std::size_t NumTriangles() const noexcept { return model_.triangleElements.size(); }

  /// @return whether the blob has values of one step
  bool IsOfStep(std::size_t blob) const;
  /// Where the values of a block are in the page.
  struct Place
  {
    std::string field;
    bool        ofElements = false;
    std::size_t step       = 0;
  };
  /// @param block as ToSelectionText() writes it
  /// @return nothing for a block that is not in the page
  std::optional<Place> FindBlock(const std::string& block) const;

  /// @param blob 0 <= blob < NumBlobs()
  std::string MakeBlob(std::size_t blob);

private:
  enum class Content
  {
    Points,
    Ids,
    ElementIds,
    Triangles,
    TriangleElements,
    Edges,
    Beams,
    BeamElements,
    SetNodes,
    SolidTypes,
    SolidElements,
    SolidPoints,
    Values
  };

  struct Blob
  {
    Content     content      = Content::Values;
    bool        isInside     = false;  ///< of points and elements of the inside, or of those that are drawn
    std::size_t array        = 0;      ///< of values: in the grid
    std::size_t step         = 0;
    bool        isOfStep     = false;
    bool        isDifference = false;  ///< from what the database is compared with
  };

  /// @return the numbers of new blobs by name
  Json        ListBlobs(const std::vector<std::pair<const char*, Content>>& contents, bool isInside);
  Json        ListValues(std::size_t array, bool isInside, bool ofDifference);
  std::string MakePoints(bool isInside) const;
  std::string MakeIds(bool isInside);
  std::string MakeElementIds(bool isInside) const;
  std::string MakeValues(const Blob& of);

  void MakeModelHeader();
  void MakeFieldHeader();
  void MakeStepHeader();
  void MakeInsideHeader();

  const std::vector<std::uint32_t>& PointsOf(bool isInside) const
  {
    return isInside ? model_.insidePoints : model_.points;
  }
  const std::vector<std::uint32_t>& ElementsOf(bool isInside) const
  {
    return isInside ? model_.insideElements : model_.elements;
  }

  std::unique_ptr<FieldSource> fields_;
  PageModel                    model_;
  PageNodeSets                 nodeSets_;
  BlobBits                     bits_;
  std::size_t                  numSteps_   = 0;
  std::size_t                  numOutside_ = 0;
  std::vector<Blob>            blobs_;
  Json                         header_;
};

}  // namespace quilon
