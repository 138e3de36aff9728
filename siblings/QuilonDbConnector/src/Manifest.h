#pragma once

/// @file
/// The manifest of a database on disk: which segments it consists of.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/// Version of the layout of manifests and segments that this code writes. It reads all up to it.
inline constexpr std::uint32_t kDatabaseFormatVersion = 2;

/// Version of the layout of manifests that name linked segments. Those that name none keep the version above, so that
/// older programs read them.
inline constexpr std::uint32_t kLinkedFormatVersion = 3;

/// A segment as the manifest names it.
struct SegmentEntry
{
  std::uint64_t number        = 0;  ///< in the file's name
  std::uint64_t first         = 0;  ///< the numbers of the segments that it stands for: itself, or those merged into it
  std::uint64_t last          = 0;
  std::uint64_t fileBytes     = 0;
  std::uint64_t indexOffset   = 0;
  std::uint64_t indexBytes    = 0;
  std::uint64_t indexChecksum = 0;
  /// Of a linked segment: bytes of the file that is another database's segment as well. Places from there on are in the
  /// file of its own, which stands beside. 0 for a segment whose only file is its own.
  std::uint64_t linkedBytes = 0;

  bool IsLinked() const noexcept { return linkedBytes > 0; }

  bool operator==(const SegmentEntry& other) const = default;
};

struct Manifest
{
  std::uint64_t             generation  = 0;  ///< counts the commits
  std::uint64_t             nextSegment = 1;  ///< greater than the number of any segment
  std::uint64_t             nextBlock   = 1;  ///< greater than the uid of any block, deleted ones too
  std::vector<SegmentEntry> segments;         ///< later ones replace what earlier ones say

  bool operator==(const Manifest& other) const = default;
};

/// What makes a lone segment a commit: what the manifest would say beside it.
struct CommitMark
{
  std::uint64_t generation = 0;
  std::uint64_t nextBlock  = 1;
  std::uint64_t previous   = 0;  ///< ManifestState::link of the state that it changes

  bool operator==(const CommitMark& other) const = default;
};

/// A manifest and the commits that were appended to its text.
struct ManifestState
{
  Manifest      manifest;
  std::uint64_t version    = kDatabaseFormatVersion;
  std::uint64_t link       = 0;  ///< tells this state from all others; the next commit repeats it
  std::size_t   commits    = 0;  ///< that were appended
  std::size_t   wholeBytes = 0;  ///< of the text: all of it unless the last line was cut short
};

/// @return the manifest as text, its checksum in the last line
std::string EncodeManifest(const Manifest& manifest);

/// Makes a segment the last of the state, as a commit of its own.
/// @return the line to be appended to the text
std::string AppendCommit(ManifestState& state, const SegmentEntry& segment, std::uint64_t nextBlock);

/// Takes appended commits as far as they are whole: the segments of those behind say the same of themselves.
/// @param path for messages
/// @throws FED_Failure that names the file for a text that does not begin with a whole manifest of a version that is
///         known
ManifestState DecodeManifest(const std::string& text, const std::filesystem::path& path);

/// @param newest version that is known
/// @throws FED_Failure that names the file and the versions unless it is known
void RequireFormatVersion(std::uint64_t version, std::uint64_t newest, const std::filesystem::path& path);

/// @return "segment-000012.h5"
std::string GetSegmentName(std::uint64_t number);

/// @return "segment-000012.index": the file of its own that a linked segment has beside the one that it shares
std::string GetLinkIndexName(std::uint64_t number);

/// @param name of a segment's file
/// @return its number; 0 where there is no such number
std::uint64_t GetSegmentNumber(const std::string& name);

/// @return whether a file name is that of a segment
bool IsSegmentName(const std::string& name);

/// @return whether a file name is that of a linked segment's own file
bool IsLinkIndexName(const std::string& name);

/// @return whether the file belongs to a segment, be it of any database
inline bool IsFileOfSegment(const std::string& name) { return IsSegmentName(name) || IsLinkIndexName(name); }

/// @return whether the file is one of those that a segment has
bool IsFileOf(const SegmentEntry& segment, const std::string& name);
