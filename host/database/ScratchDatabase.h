#pragma once

/// @file
/// A database for the time of a command.

#include <cstdint>
#include <filesystem>
#include <memory>

#include <bundled/OnfStores.h>

#include "database/WatchedFiles.h"

class FED_ResultDatabase;

namespace quilon {

/// A working database in a folder of its own in the temporary folder, which nobody else may enter. Memory holds a
/// fourth of what it holds of another that is written: most often one is filled from it, which has the rest. All of it
/// goes with the object. A program that is killed leaves the folder behind.
class ScratchDatabase final : public OnfStore
{
public:
  /// @param bytes of the text that is read: more than what it says, and what is derived from it is about as much again
  /// @return whether that may not stay in memory
  static bool IsNeededFor(std::uint64_t bytes) noexcept;

  /// @throws FED_Failure that names the folder when it cannot be made
  ScratchDatabase();
  ScratchDatabase(const ScratchDatabase&)            = delete;
  ScratchDatabase& operator=(const ScratchDatabase&) = delete;
  ~ScratchDatabase() override;

  FED_ResultDatabase& Get() noexcept override { return *database_; }

private:
  static constexpr std::size_t kShare = 4;

  /// Removed behind the database.
  struct Folder
  {
    Folder();
    Folder(const Folder&)            = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder();
    std::filesystem::path path;
  };

  Folder                              folder_;
  WatchedFiles                        files_;
  std::unique_ptr<FED_ResultDatabase> database_;
};

/// Has what this thread reads of large ONF folders stay in scratch databases, for as long as the object lives.
class LargeOnfOnDisk final : public OnfStores
{
public:
  LargeOnfOnDisk() noexcept;
  LargeOnfOnDisk(const LargeOnfOnDisk&)            = delete;
  LargeOnfOnDisk& operator=(const LargeOnfOnDisk&) = delete;
  ~LargeOnfOnDisk() override;

  std::unique_ptr<OnfStore> MakeStore(std::uint64_t bytes) override;

private:
  OnfStores* former_;
};

}  // namespace quilon
