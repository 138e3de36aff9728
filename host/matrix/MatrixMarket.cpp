#include "matrix/MatrixMarket.h"

#include <charconv>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string_view>
#include <system_error>
#include <utility>

#include "text/Case.h"
#include "text/ColumnText.h"
#include "text/Format.h"
#include "text/WordFile.h"

namespace quilon::matrix {

namespace {

/// The fifth and last two words of the banner.
enum class Field
{
  Real,
  Integer,
  Pattern
};

struct Banner
{
  bool     isArray  = false;
  Field    field    = Field::Real;
  Symmetry symmetry = Symmetry::General;
};

Field FieldOf(const WordFile& text, const std::string& word)
{
  if (word == "real" || word == "double") return Field::Real;
  if (word == "integer") return Field::Integer;
  if (word == "pattern") return Field::Pattern;
  if (word == "complex") text.File().Fail("the matrix is complex, expected real, integer or pattern");
  text.File().Fail("field is '" + Shown(word) + "', expected real, integer or pattern");
}

Symmetry SymmetryOf(const WordFile& text, const std::string& word)
{
  if (word == "general") return Symmetry::General;
  if (word == "symmetric" || word == "hermitian") return Symmetry::Symmetric;
  if (word == "skew-symmetric") return Symmetry::SkewSymmetric;
  text.File().Fail("symmetry is '" + Shown(word) + "', expected general, symmetric, skew-symmetric or hermitian");
}

Banner ReadBanner(WordFile& text)
{
  constexpr const char* kExpected = "'%%MatrixMarket matrix coordinate|array real|integer|pattern SYMMETRY'";
  if (!text.NextLine()) text.File().FailAtEnd(kExpected);
  if (text.NumWords() != 5 || LowerCase(text.Word(0)) != "%%matrixmarket" || LowerCase(text.Word(1)) != "matrix")
    text.File().FailExpected(kExpected);
  const std::string format = LowerCase(text.Word(2));
  if (format != "coordinate" && format != "array")
    text.File().Fail("format is '" + Shown(format) + "', expected coordinate or array");

  Banner banner;
  banner.isArray  = format == "array";
  banner.field    = FieldOf(text, LowerCase(text.Word(3)));
  banner.symmetry = SymmetryOf(text, LowerCase(text.Word(4)));
  if (banner.field == Field::Pattern && banner.isArray)
    text.File().Fail("an array without numbers, expected real or integer");
  if (banner.field == Field::Pattern && banner.symmetry == Symmetry::SkewSymmetric)
    text.File().Fail("a skew-symmetric matrix without numbers, expected real or integer");
  return banner;
}

double ReadIntegerValue(const WordFile& text, std::size_t i)
{
  // Beyond this not every integer is a double.
  constexpr std::int64_t kMost = std::int64_t{1} << 53;

  std::string_view word = text.Word(i);
  if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
  std::int64_t value      = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (error != std::errc() || end != word.data() + word.size() || value > kMost || value < -kMost)
    text.File().Fail("value is '" + Shown(text.Word(i)) + "', expected an integer from -2^53 to 2^53");
  return static_cast<double>(value);
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

/// An entry as nearly all files write it: two integers and a number without blanks before or behind them, in digits
/// that all readers take alike.
struct PlainEntry
{
  int    row    = 0;  ///< from 1
  int    column = 0;  ///< from 1
  double value  = 0.0;

  /// @return false for any other line, which may still be one of an entry
  bool Read(std::string_view line)
  {
    const char*       at  = line.data();
    const char* const end = at + line.size();
    if (!ReadIndex(at, end, row) || !ReadIndex(at, end, column)) return false;
    const char* const digit = at != end && *at == '-' ? at + 1 : at;
    if (digit == end || !IsDigit(*digit) || end - at > kMostDigits) return false;
    const auto [behind, error] = std::from_chars(at, end, value);
    return error == std::errc() && behind == end;
  }

private:
  static constexpr std::ptrdiff_t kMostDigits = 24;  // of 17 digits with all that goes with them

  /// Reads the integer and the blanks behind it.
  static bool ReadIndex(const char*& at, const char* end, int& index)
  {
    constexpr int     kMostOfIndex = 9;  // an int has them all
    const char* const first        = at;
    int               read         = 0;
    for (; at != end && at - first <= kMostOfIndex && IsDigit(*at); ++at)
      if (at - first < kMostOfIndex) read = 10 * read + (*at - '0');
    if (at == first || at - first > kMostOfIndex || at == end || !IsBlank(*at)) return false;
    while (at != end && IsBlank(*at)) ++at;
    index = read;
    return true;
  }
};

class Reader
{
public:
  Reader(WordFile& text, const Banner& banner) : text_(text), banner_(banner) {}

  FED_YaleMatrix Read()
  {
    const std::int64_t numListed = ReadSizes();
    entries_.emplace(numRows_, numColumns_, CountOrdered(static_cast<std::uint64_t>(numListed)));
    if (banner_.isArray)
      ReadArray();
    else
      ReadCoordinates(numListed);
    if (text_.NextLine()) text_.File().FailExpected("the end of the file");
    return entries_->Take(text_.Name());
  }

private:
  /// @return the number of entries of a coordinate file
  std::int64_t ReadSizes()
  {
    const char* const expected = banner_.isArray ? "rows and columns" : "rows, columns and number of entries";
    if (!text_.NextLine()) text_.File().FailAtEnd(expected);
    text_.RequireWords(banner_.isArray ? 2 : 3, expected);
    numRows_    = text_.GetInteger(0, "number of rows", 0, INT_MAX);
    numColumns_ = text_.GetInteger(1, "number of columns", 0, INT_MAX);
    if (banner_.symmetry != Symmetry::General && numRows_ != numColumns_)
      text_.File().FailExpected("as many columns as rows in a symmetric matrix");
    return banner_.isArray ? 0 : text_.GetInteger(2, "number of entries", 0, INT_MAX);
  }

  void ReadCoordinates(std::int64_t numListed)
  {
    const bool        hasValue   = banner_.field != Field::Pattern;
    const char* const expected   = hasValue ? "row, column and value" : "row and column";
    const bool        mayBePlain = banner_.field == Field::Real;
    PlainEntry        plain;
    for (std::int64_t i = 0; i < numListed; ++i) {
      bool       isPlain = false;
      const auto read    = [&](std::string_view line) {
        isPlain = mayBePlain && plain.Read(line) && plain.row >= 1 && plain.row <= numRows_ && plain.column >= 1 &&
                  plain.column <= numColumns_;
        return isPlain;
      };
      NextEntry(i, numListed, read);
      if (isPlain) {
        Add(plain.row - 1, plain.column - 1, plain.value);
        continue;
      }
      text_.RequireWords(hasValue ? 3 : 2, expected);
      const int row    = text_.GetInteger(0, "row", 1, numRows_) - 1;
      const int column = text_.GetInteger(1, "column", 1, numColumns_) - 1;
      Add(row, column, hasValue ? ReadValue(2) : 1.0);
    }
  }

  /// @return of how many entries arrays are made before they come: of all where these may be in the order of rows
  std::size_t CountOrdered(std::uint64_t numListed) const
  {
    constexpr std::uint64_t kLeastBytes = 4;  // "1 1" and the line's end
    const bool              areThere    = numListed <= text_.File().Remaining() / kLeastBytes;
    return areThere && banner_.symmetry == Symmetry::General ? static_cast<std::size_t>(numListed) : 0;
  }

  /// Column by column; of a symmetric matrix the lower triangle, of a skew-symmetric one without its diagonal.
  void ReadArray()
  {
    const bool         isGeneral = banner_.symmetry == Symmetry::General;
    const bool         isSkew    = banner_.symmetry == Symmetry::SkewSymmetric;
    const std::int64_t numRows   = numRows_;
    const std::int64_t numAll    = isGeneral ? numRows * numColumns_
                                   : isSkew  ? numRows * (numRows - 1) / 2
                                             : numRows * (numRows + 1) / 2;
    std::int64_t       numRead   = 0;
    if (numAll == 0) return;
    for (int column = 0; column < numColumns_; ++column)
      for (int row = isGeneral ? 0 : column + (isSkew ? 1 : 0); row < numRows_; ++row) {
        NextEntry(numRead++, numAll, [](std::string_view) { return false; });
        text_.RequireWords(1, "one value");
        Add(row, column, ReadValue(0));
      }
  }

  template <typename Take>
  void NextEntry(std::int64_t numRead, std::int64_t numAll, const Take& take)
  {
    if (!text_.NextLine(take))
      text_.File().FailAtEnd("entry " + std::to_string(numRead + 1) + " of " + std::to_string(numAll));
    text_.RequireWholeLine();  // a number that was cut may still be one
  }

  double ReadValue(std::size_t i) const
  {
    return banner_.field == Field::Integer ? ReadIntegerValue(text_, i) : text_.GetDouble(i, "value");
  }

  void Add(int row, int column, double value)
  {
    const std::int64_t line = text_.File().Line();
    if (banner_.symmetry == Symmetry::SkewSymmetric && row == column)
      text_.File().Fail("an entry on the diagonal, expected none in a skew-symmetric matrix");
    entries_->Add(row, column, value, line);
    if (banner_.symmetry == Symmetry::General || row == column) return;
    entries_->Add(column, row, banner_.symmetry == Symmetry::Symmetric ? value : -value, line);
  }

  WordFile&                     text_;
  Banner                        banner_;
  int                           numRows_    = 0;
  int                           numColumns_ = 0;
  std::optional<EntryCollector> entries_;
};

const char* NameOf(Symmetry symmetry)
{
  switch (symmetry) {
    case Symmetry::Symmetric:
      return "symmetric";
    case Symmetry::SkewSymmetric:
      return "skew-symmetric";
    case Symmetry::General:
      break;
  }
  return "general";
}

}  // namespace

FED_YaleMatrix ReadMatrixMarket(std::istream& in, const std::string& name, const ReadProgress& progress)
{
  // The banner begins like a comment, so it is read by a text without any.
  Banner banner;
  {
    WordFile head(in, name, '\0', progress);
    banner = ReadBanner(head);
  }
  in.clear();
  WordFile text(in, name, '%', progress);
  return Reader(text, banner).Read();
}

void WriteMatrixMarket(std::ostream& out, const FED_YaleMatrix& matrix, Symmetry symmetry, const std::string& name)
{
  const RowView rows(matrix, name);
  RequireDistinct(rows, name);
  const auto isWritten = [symmetry](std::int64_t row, std::int64_t column) {
    return symmetry == Symmetry::General || row >= column;
  };
  std::int64_t numWritten = 0;
  for (std::int64_t row = 0; row < rows.NumRows(); ++row)
    for (std::int64_t i = rows.Begin(row); i < rows.Begin(row + 1); ++i)
      if (isWritten(row, rows.Column(i))) ++numWritten;

  out << "%%MatrixMarket matrix coordinate real " << NameOf(symmetry) << '\n'
      << rows.NumRows() << ' ' << rows.NumColumns() << ' ' << numWritten << '\n';
  for (std::int64_t row = 0; row < rows.NumRows(); ++row)
    for (std::int64_t i = rows.Begin(row); i < rows.Begin(row + 1); ++i)
      if (isWritten(row, rows.Column(i)))
        out << row + 1 << ' ' << rows.Column(i) + 1 << ' ' << FormatNumber(rows.Value(i)) << '\n';
}

}  // namespace quilon::matrix
