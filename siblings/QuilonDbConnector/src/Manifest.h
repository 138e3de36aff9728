#pragma once

/// @file
/// The manifest of a database on disk: which segments it consists of.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/// Version of the layout of manifests and segments that this code writes, and the only one that it reads.
inline constexpr std::uint32_t kDatabaseFormatVersion = 1;

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

/// @return the manifest as text, its checksum in the last line
std::string EncodeManifest(const Manifest& manifest);

/// @param path for messages
/// @throws FED_Failure that names the file for a text that is no whole manifest of this format version
Manifest DecodeManifest(const std::string& text, const std::filesystem::path& path);

/// @throws FED_Failure that names the file and both versions unless it is ours
void RequireFormatVersion(std::uint64_t version, const std::filesystem::path& path);

/// @return "segment-000012.h5"
std::string GetSegmentName(std::uint64_t number);

/// @return whether a file name is that of a segment
bool IsSegmentName(const std::string& name);
