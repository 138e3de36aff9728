#pragma once

/// @file
/// Walks the lines of a deck and of all files that it includes.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "calculix/deck/DeckModel.h"
#include "calculix/deck/DeckText.h"
#include "FEMInputFile.h"

namespace quilon::calculix {

/// A line where it stands.
struct DeckLine
{
  DeckLineKind     kind = DeckLineKind::Blank;
  std::string_view text;   ///< without its end; valid during the call
  DeckPlace        place;  ///< always exact
};

/// @return the path without links, as far as it is there; absolute
std::filesystem::path CanonicalOf(const std::filesystem::path& path);

/// Finds the include statements of a deck, resolves and confines their paths and enters the files. What is made of the
/// lines is up to the hooks, which derived readers override. For a deck with one include they come in this order:
///
///     OnFileBegin(deck), OnLine... up to and with the include statement,
///     OnInclude(statement, file), OnFileBegin(file), OnLine..., OnFileEnd(file),
///     OnLine... of the deck, OnFileEnd(deck)
///
/// Files end in the order in which their lines do, innermost first, also where an include statement is the last line
/// of an included file and the stream of that file is closed before the file that it includes is entered.
///
/// An echo is set by a derived reader in OnFileBegin() of the deck (file 0). OnInclude() may change currentLine_: this
/// is what Include() writes to the echo of the including file. In OnFileEnd() of an included file the lines of its echo
/// are complete: RestoreOutputStreamIfNeeded() is due, with restorePending_ set (see EndEcho()).
class DeckReader : public FEMInputFile
{
public:
  /// @param suffix of echo files, see FEMInputFile
  DeckReader(const std::filesystem::path& deck, const DeckOptions& options, const std::wstring& suffix = {});
  DeckReader(const DeckReader&)            = delete;
  DeckReader& operator=(const DeckReader&) = delete;
  /// Closes all streams, also those of including files.
  ~DeckReader() override;

  /// The files entered so far.
  const std::vector<DeckFile>& GetFiles() const noexcept { return files_; }

protected:
  const DeckOptions& GetOptions() const noexcept { return options_; }

  /// Reads everything once.
  /// @throws FED_Failure "PATH: ..." when the deck cannot be read; what the hooks throw
  void Walk();

  virtual void OnFileBegin(std::uint32_t file);
  virtual void OnLine(const DeckLine& line) = 0;
  /// An include statement whose file was found; GetFiles()[file] describes it.
  virtual void OnInclude(const DeckLine& line, std::uint32_t file);
  /// An include statement that cannot be followed. Reading goes on behind it when this returns; here it throws.
  /// @throws FED_Failure "PATH:LINE: TEXT"
  virtual void OnBadInclude(const DeckLine& line, const std::string& text);
  /// The file was found where the solver would not look for it.
  virtual void OnDoubtfulInclude(const DeckLine& line, const std::string& text);
  virtual void OnFileEnd(std::uint32_t file);

  /// Closes the echo of an included file that has ended; to be called in OnFileEnd() of files other than 0.
  void EndEcho();

  /// Throws FED_Failure "PATH:LINE: TEXT".
  [[noreturn]] void FailAt(const DeckPlace& place, const std::string& text) const;

private:
  /// A file that is being read, or that has ended with an include statement whose file is being read.
  struct OpenFile
  {
    std::uint32_t file      = 0;
    bool          hasEnded  = false;
    std::uint64_t bytesRead = 0;  // up to the include statement whose file is being read
  };

  /// Where an include statement leads.
  struct Target
  {
    std::filesystem::path path;
    std::filesystem::path canonical;
    std::string           statement;
    std::string           trouble;  // not empty: the statement cannot be followed
    std::string           doubt;    // not empty: the solver looks elsewhere
  };

  void   BeginFile(const std::filesystem::path& path, const std::filesystem::path& canonical,
                   const std::string& statement, const DeckPlace& includedAt);
  void   EndFiles();
  void   FollowInclude(const DeckLine& line);
  Target FindTarget(const DeckLine& line) const;
  /// @return where the file may be, in the order in which it is looked for
  std::vector<std::filesystem::path> CandidatesFor(const DeckIncludePath& named, const DeckLine& line) const;
  /// @return why a file that is there cannot be included; empty when it can
  std::string TroubleWith(const Target& target, const DeckLine& line) const;
  std::string ChainTo(const DeckPlace& statement) const;
  bool        IsInsideRoot(const std::filesystem::path& canonical) const;
  /// @return how far the innermost file has been read, about
  std::uint64_t BytesRead() const;
  void          ReportProgress();

  std::filesystem::path              deck_;
  DeckOptions                        options_;
  std::filesystem::path              workingFolder_;  // that the solver would run in
  std::filesystem::path              root_;           // canonical folder that includes stay in
  std::vector<DeckFile>              files_;
  std::vector<std::filesystem::path> canonicalPaths_;  // of files_
  std::vector<OpenFile>              open_;            // innermost last
  std::uint64_t                      bytesOfFiles_      = 0;
  std::uint64_t                      bytesOfEndedFiles_ = 0;
};

}  // namespace quilon::calculix
