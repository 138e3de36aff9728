#pragma once

/// @file
/// Lines of words, as the text files of matrices have them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>

#include "text/LineFile.h"

namespace quilon {

/// A file whose lines are words between blanks or tabs.
class WordFile
{
public:
  /// @param in       borrowed, seekable
  /// @param comment  a line that begins with this character is passed over; '\0' for none
  /// @param progress borrowed
  WordFile(std::istream& in, const std::string& name, char comment, const ReadProgress& progress);

  /// Goes to the next line that is neither blank nor a comment.
  /// @return false at the end of the file
  bool NextLine()
  {
    return NextLine([](std::string_view) { return false; });
  }

  /// The same for a caller who knows how most lines look.
  /// @param take called as take(std::string_view line) for each line, comments and blank ones included; true where it
  ///             has taken what the line says, which has then no words
  template <typename Take>
  bool NextLine(const Take& take)
  {
    while (file_.NextLine()) {
      numWords_ = 0;
      if (take(file_.Text())) return true;
      SplitLine();
      const bool isComment = comment_ != '\0' && numWords_ > 0 && words_[0].front() == comment_;
      if (numWords_ > 0 && !isComment) return true;
    }
    return false;
  }

  /// Words of the current line; one more than kMaxWords says that there are more.
  std::size_t      NumWords() const noexcept { return numWords_; }
  std::string_view Word(std::size_t i) const noexcept { return words_[i]; }

  /// @return word i as an integer in a range
  /// @throws FED_Failure naming what it stands for
  int GetInteger(std::size_t i, const char* what, int least, int greatest) const;
  /// @throws FED_Failure naming what it stands for
  double GetDouble(std::size_t i, const char* what) const;

  /// @throws FED_Failure for a line with another number of words
  void RequireWords(std::size_t count, const char* expected) const;
  /// @throws FED_Failure when the current line is cut: the last line of a file ends as the others do
  void RequireWholeLine() const;

  const LineFile&    File() const noexcept { return file_; }
  const std::string& Name() const noexcept { return name_; }

  static constexpr std::size_t kMaxWords = 5;

private:
  void SplitLine();

  std::string                                 name_;
  LineFile                                    file_;
  char                                        comment_;
  std::array<std::string_view, kMaxWords + 1> words_;
  std::size_t                                 numWords_ = 0;
};

}  // namespace quilon
