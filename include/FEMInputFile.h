#pragma once

/// @file
/// Lines of an input deck and of the files that it includes.

#include "quilon_language.h"

#include <iosfwd>
#include <string>
#include <vector>

#include "FemInputBase.h"
#include "quilon_export.h"

/// Reads a deck line by line, one line ahead, enters included files when told to and comes back when they end. While an
/// output stream is set, every included file gets an echo file of its own, so that a converter writes a converted copy
/// of the whole tree. Statements are the derived converter's affair: it finds the include statements and their paths.
///
///     Initialize();
///     currentOutput_ = new std::ofstream(...);  // if echo files are wanted; handed over
///     while (true) {
///       ReadLine();
///       if (end_of_file()) break;
///       if (/* GetCurrentLine() includes a file */) {
///         Include(path);
///       } else {
///         if (currentOutput_ != nullptr) *currentOutput_ << GetCurrentLine() << '\n';
///         RestoreOutputStreamIfNeeded();
///       }
///     }
///
/// Line ends may be LF or CR LF; neither reaches the current line. Paths may use either separator. Nesting has no limit
/// of its own: each level holds an open input stream and, with echo, an open output stream.
///
/// Line numbers: in the main file GetCurrentLine() is line `lineCounter_`, inside an included file it is line
/// `lineCounter_ - 1`, because Include() starts at 1 and Initialize() at 0. The counter moves when a line is read
/// ahead: at a last line of the main file without a line feed nothing is read any more, and the counter lags one
/// behind. With the last line of an included file it is the including file's again, and so is everything that will be
/// read.
///
/// Positions: `currentLinePosition_` is the byte at which the current line starts, as long as the line before it came
/// from the same file. Entering a file and returning from it neither save nor restore the positions: the first line of
/// an included file carries the position of the line behind the include statement, and the first line after the return
/// carries the position last taken from the included file (its length, or -1 without a last line feed).
///
/// Copies are member by member: a copy refers to the same streams and deletes them too, so one of the two gives its
/// pointers up before it is destroyed.
///
/// Threads: one at a time per reader.
class QUILON_EXPORT FEMInputFile : public FemInputBase
{
public:
  enum file_status
  {
    file_ok    = 0,  ///< a line was delivered and its file goes on
    file_ended = 1   ///< the file that supplied the line just delivered has no more lines
  };

  /// Opens nothing.
  /// @param name      kept for the converter
  /// @param inputPath path of the deck
  /// @param suffix    names of echo files are those of the included files with "_" and this text before the extension;
  ///                  empty: an echo file is the included file itself and destroys it
  /// @param number    kept for the converter
  FEMInputFile(const std::wstring& name, const std::wstring& inputPath, const std::wstring& suffix, int number);
  FEMInputFile(const FEMInputFile& other);
  FEMInputFile& operator=(const FEMInputFile& other);

  /// Closes and deletes the current input and the current output. Streams of including files stay open and allocated: a
  /// reader that is destroyed inside an included file leaves them to whoever else refers to them.
  ~FEMInputFile() override;

  /// After an included file has ended, closes its echo file and goes back to that of the including file; otherwise does
  /// nothing. Called when the line that ended the file has been written.
  void RestoreOutputStreamIfNeeded();

protected:
  /// Opens the deck and reads its first line ahead. Called once, before the first ReadLine().
  /// @throws FED_Failure "The provided file \"%s\" is a directory." (of the path only the first character shows) or
  ///         "The file \"%s\" was not found."
  virtual void Initialize();

  /// @return true from the call of ReadLine() that found nothing more in the main file until the next one
  virtual bool end_of_file();

  /// Makes the next line current. The last line of a file is delivered with `file_ended`; an empty line behind the last
  /// line feed is none. When an included file has ended, the next call delivers the line behind the include statement.
  /// After the last line of the main file one more call delivers an empty line, and end_of_file() is true.
  /// @throws FED_Failure when the system fails to read: such a stream would never end. An included file or the deck is
  ///         then only partly read
  file_status ReadLine();

  /// ReadLine(), then copies the current line.
  void GetLine(std::string& line);

  /// @return the line last delivered, valid until the next one is
  const std::string& GetCurrentLine() const;

  /// @return the folder part of the deck's path with its separator, empty when it has none
  const std::wstring& GetPath() const;

  /// Goes on with the first line of another file. While an output is set, the current line is written to it (so that a
  /// converter may name the echo file in the statement first) and an echo file is opened; an echo file that cannot be
  /// opened is no failure, its stream is in the fail state.
  /// @param path of the file as the process finds it; relative paths are not looked up in GetPath()
  /// @throws FED_Failure "The file \"%s\" (FEMInputFile) was not found." (of the path only the first character shows),
  ///         for a folder too, which some systems open like a file; the including file stays on the stacks, and
  ///         ReadLine() delivers the line read ahead and then empty lines without end
  void Include(const std::wstring& path);

  std::wstring               spare_;           ///< for derived converters
  std::wstring               inputDirectory_;  ///< see GetPath()
  std::vector<std::istream*> inputStack_;      ///< of the including files, innermost last
  std::istream*              currentInput_;    ///< a std::ifstream, owned; null before Initialize()
  std::vector<std::ostream*> outputStack_;     ///< echo streams of the including files, innermost last
  std::ostream*              currentOutput_;   ///< null: no echo; owned once set, so allocated with new
  bool                       restorePending_;  ///< an included file has ended, its echo stream is still current
  std::wstring               includeSuffix_;   ///< "_" and the suffix, or empty
  int                        userNumber_;      ///< for derived converters
  std::streamoff             currentLinePosition_;
  std::streamoff             nextLinePosition_;
  std::vector<int>           lineNumberStack_;  ///< counters of the including files
  int                        lineCounter_;
  std::string                currentLine_;
  std::string                nextLine_;       ///< read ahead
  std::vector<std::string>   nextLineStack_;  ///< of the including files
  int                        endState_;       ///< 0 reading, 1 last line delivered, 2 nothing was left to deliver
};
