#include "FED_YaleMatrixText.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <system_error>
#include <utility>
#include <vector>

#include <QuilonUtilities/FED_DoubleArray.h>
#include <QuilonUtilities/FED_IntArray.h>
#include <QuilonUtilities/LoadTextFileFast.h>
#include <QuilonUtilities/QuilonStringUtil.h>

#include "failure.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbDataTools|FED_YaleMatrixText";

constexpr int kNumCounts = 3;  // entries before the values

FedStatusCode Convert(const std::string& text, int& out) { return QuilonStringUtil::ToInt(text, out); }
FedStatusCode Convert(const std::string& text, double& out) { return QuilonStringUtil::ToDouble(text, out); }

const char* TypeName(int) { return "a 32-bit integer"; }
const char* TypeName(double) { return "a number that fits a double"; }

/// The lines of a file that are neither blank nor comments.
class Entries
{
public:
  explicit Entries(const std::wstring& path) : path_(QuilonStringUtil::wide_to_utf8(path.c_str()))
  {
    errno = 0;
    if (!LoadTextFileFast(path.c_str(), entries_, numLines_)) {
      const std::string reason = errno == 0 ? "" : ": " + std::generic_category().message(errno);
      ThrowFailure(kTag, "%s: cannot be read, expected a text file with a sparse matrix%s", path_.c_str(),
                   reason.c_str());
    }
    QuilonStringUtil::Trim(entries_);
    numLines_ = entries_.size();
    DropOtherLines();
  }

  /// @param what what the entry stands for
  template <typename Number>
  Number Get(std::size_t entry, const char* what) const
  {
    const std::string& text  = entries_[entry];
    Number             value = 0;
    switch (Convert(text, value)) {
      case FedStatusSuccess:
      case FedStatusTrailingText:
        return value;
      default:
        ThrowFailure(kTag, "%s:%zu: %s is \"%.40s\", expected %s", path_.c_str(), LineOf(entry), what, text.c_str(),
                     TypeName(value));
    }
  }

  /// @param next the first entry of the list; receives the one behind its last
  template <typename Number>
  std::vector<Number> GetList(std::size_t& next, std::int64_t count, const char* what) const
  {
    std::vector<Number> numbers;
    numbers.reserve(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i) numbers.push_back(Get<Number>(next++, what));
    return numbers;
  }

  /// @return the count as the file has it: it may be negative
  int GetCount(std::size_t entry, const char* what) const
  {
    RequireEntries(static_cast<std::int64_t>(entry) + 1, what);
    return Get<int>(entry, what);
  }

  /// @param what the last entry that is needed
  void RequireEntries(std::int64_t count, const char* what) const
  {
    if (static_cast<std::int64_t>(entries_.size()) >= count) return;
    ThrowFailure(kTag, "%s:%zu: the file ends after %zu entries, expected %lld up to the %s", path_.c_str(),
                 std::max<std::size_t>(numLines_, 1), entries_.size(), static_cast<long long>(count), what);
  }

private:
  /// Takes blank lines and comments out of the list: of a file that has none, no line is moved.
  void DropOtherLines()
  {
    std::size_t kept = 0;
    for (std::size_t line = 0; line < entries_.size(); ++line) {
      if (entries_[line].empty() || entries_[line].front() == '#') {
        droppedLines_.push_back(line);
      } else {
        if (kept != line) entries_[kept] = std::move(entries_[line]);
        ++kept;
      }
    }
    entries_.resize(kept);
  }

  /// @return the line of the file, from 1
  std::size_t LineOf(std::size_t entry) const
  {
    std::size_t line = entry;
    for (const std::size_t dropped : droppedLines_) {
      if (dropped > line) break;
      ++line;
    }
    return line + 1;
  }

  std::string              path_;
  std::vector<std::string> entries_;
  std::size_t              numLines_ = 0;
  std::vector<std::size_t> droppedLines_;  ///< ascending, from 0: lines of entries are counted from them for messages
};

}  // namespace

FED_YaleMatrix FED_YaleMatrixText::ReadYaleMatrix(const std::wstring& path)
{
  const Entries entries(path);

  const int numValues  = entries.GetCount(0, "number of values");
  const int numRows    = entries.GetCount(1, "number of rows");
  const int numColumns = entries.GetCount(2, "number of columns");

  const std::int64_t numStored   = std::max(numValues, 0);
  const std::int64_t numPointers = std::max<std::int64_t>(std::int64_t{numRows} + 1, 0);
  // Counts are claims: they are held against the file before memory is asked for.
  entries.RequireEntries(kNumCounts + 2 * numStored + numPointers, "last row pointer");

  std::size_t next   = kNumCounts;
  const auto  values = entries.GetList<double>(next, numStored, "value");
  // The file has the column indices before the row pointers, the matrix takes them behind.
  // Test: ColumnIndicesStandBeforeRowPointers.
  const auto columnIndices = entries.GetList<int>(next, numStored, "column index");
  const auto rowPointers   = entries.GetList<int>(next, numPointers, "row pointer");

  // Negative counts widen to what no matrix has; whoever uses the matrix judges them.
  // Test: NegativeCountsAreTakenAsTheyStand.
  FED_YaleMatrix matrix;
  matrix.SetInternalData(static_cast<std::size_t>(numRows), static_cast<std::size_t>(numColumns),
                         FED_DoubleArray(values), FED_IntArray(rowPointers), FED_IntArray(columnIndices));
  return matrix;
}
