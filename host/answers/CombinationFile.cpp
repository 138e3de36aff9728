#include "answers/CombinationFile.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <map>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "text/Case.h"
#include "text/Format.h"
#include "text/LineFile.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

constexpr int              kFirstUnnumbered = 10001;
constexpr std::string_view kExample         = "NAME = 1.35*lc1 + 1.5*lc2";

/// A term as it is written: a load case, or the name of a combination.
struct WrittenTerm
{
  double      factor = 1.0;
  CaseName    loadCase;
  std::string name;  // empty: a load case
};

struct WrittenLine
{
  std::string              name;
  std::optional<int>       loadCase;
  std::vector<WrittenTerm> terms;
  std::int64_t             line = 0;
};

/// Bytes of letters beyond ASCII count as letters.
bool BeginsName(char c)
{
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

bool IsOfName(char c) { return BeginsName(c) || IsDigit(c) || c == '.'; }

/// Whether a word is a load case, or would be one.
bool IsCaseName(std::string_view word)
{
  return word.size() > 2 && (word[0] == 'l' || word[0] == 'L') && (word[1] == 'c' || word[1] == 'C') &&
         word.find_first_not_of("0123456789", 2) == std::string_view::npos;
}

/// Reads one line from left to right.
class LineParser
{
public:
  LineParser(const LineFile& file, std::string_view text) : file_(file), rest_(text) {}

  WrittenLine Parse()
  {
    WrittenLine line;
    line.line = file_.Line();
    line.name = TakeName("the name of a combination");
    if (IsCaseName(line.name)) {
      file_.Fail("'" + line.name + "' is the name of a load case, expected another name for a combination, as in '" +
                 std::string(kExample) + "'");
    }
    if (Take('[')) {
      line.loadCase = TakeNumber("the load case to write");
      if (!Take(']')) FailExpected("']' behind the load case to write");
    }
    if (!Take('=')) FailExpected("'=' behind the name, as in '" + std::string(kExample) + "'");
    double sign = TakeSign();
    for (;;) {
      line.terms.push_back(TakeTerm(sign));
      if (Peek() == '\0') return line;
      if (Peek() != '+' && Peek() != '-') FailExpected("'+', '-' or '*'");
      sign = TakeSign();
    }
  }

private:
  [[noreturn]] void FailExpected(const std::string& expected)
  {
    Peek();
    constexpr std::size_t kMostShown = 40;
    const std::string     found(rest_.substr(0, kMostShown));
    file_.Fail("expected " + expected + ", found " +
               (found.empty() ? "the end of the line" : "'" + Printable(found) + "'"));
  }

  /// @return the next character that is no blank, without taking it; '\0' at the end
  char Peek()
  {
    rest_ = Trimmed(rest_);
    return rest_.empty() ? '\0' : rest_.front();
  }

  bool Take(char c)
  {
    if (Peek() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }

  double TakeSign()
  {
    if (Take('-')) return -1.0;
    Take('+');
    return 1.0;
  }

  std::string TakeName(const char* what)
  {
    if (!BeginsName(Peek())) FailExpected(what);
    std::size_t length = 1;
    while (length < rest_.size() && IsOfName(rest_[length])) ++length;
    std::string name(rest_.substr(0, length));
    rest_.remove_prefix(length);
    return name;
  }

  int TakeNumber(const char* what)
  {
    Peek();
    int        number = 0;
    const auto taken  = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (taken.ec != std::errc() || number < 1) FailExpected(std::string(what) + ", a number from 1 to 2147483647");
    rest_.remove_prefix(static_cast<std::size_t>(taken.ptr - rest_.data()));
    return number;
  }

  double TakeFactor()
  {
    double     factor = 0.0;
    const auto taken  = std::from_chars(rest_.data(), rest_.data() + rest_.size(), factor);
    if (taken.ec != std::errc()) FailExpected("a number");
    rest_.remove_prefix(static_cast<std::size_t>(taken.ptr - rest_.data()));
    if (!rest_.empty() && rest_.front() == ',') FailExpected("a point in a number, no comma");
    return factor;
  }

  WrittenTerm TakeTerm(double sign)
  {
    WrittenTerm term;
    bool        hasName = false;
    term.factor         = sign;
    do {
      if (BeginsName(Peek())) {
        if (hasName) FailExpected("one load case or name in a product");
        hasName = true;
        TakeReference(term);
      } else {
        term.factor *= TakeSign();
        const char first = Peek();
        if (!IsDigit(first) && first != '.') FailExpected("a number, a load case such as lc1, or a name");
        term.factor *= TakeFactor();
      }
    } while (Take('*'));
    if (!hasName) FailExpected("'*' and a load case or a name behind a number");
    if (!std::isfinite(term.factor)) file_.Fail("a factor is no finite number");
    return term;
  }

  void TakeReference(WrittenTerm& term)
  {
    term.name = TakeName("a load case or a name");
    if (!IsCaseName(term.name)) return;
    const char* end   = term.name.data() + term.name.size();
    const auto  taken = std::from_chars(term.name.data() + 2, end, term.loadCase.loadCase);
    if (taken.ec != std::errc())
      file_.Fail("'" + term.name + "' is no load case, expected a number to 2147483647 behind lc");
    term.name.clear();
    if (Take('/')) term.loadCase.substep = TakeNumber("a substep");
  }

  const LineFile&  file_;
  std::string_view rest_;
};

std::vector<WrittenLine> ReadLines(LineFile& file)
{
  constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";  // some editors write one
  std::vector<WrittenLine>   lines;
  while (file.NextLine()) {
    std::string_view text = file.Text();
    if (file.Line() == 1 && text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    text = Trimmed(text.substr(0, text.find('#')));
    if (!text.empty()) lines.push_back(LineParser(file, text).Parse());
  }
  if (lines.empty()) file.FailAtEnd("a combination such as '" + std::string(kExample) + "'");
  return lines;
}

/// Replaces names by what they stand for.
class Expansion
{
public:
  Expansion(const LineFile& file, std::vector<WrittenLine> lines) : file_(file), lines_(std::move(lines))
  {
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      const auto [known, isNew] = positions_.try_emplace(lines_[i].name, i);
      if (!isNew)
        Fail(i, "'" + lines_[i].name + "' is defined twice, first in line " +
                    std::to_string(lines_[known->second].line) + ", expected another name");
    }
  }

  std::vector<Combination> Expand()
  {
    states_.resize(lines_.size());
    sums_.resize(lines_.size());
    for (std::size_t i = 0; i < lines_.size(); ++i) Visit(i);

    std::vector<Combination>   combinations;
    std::map<int, std::size_t> written;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      Combination combination;
      combination.name          = lines_[i].name;
      combination.line          = lines_[i].line;
      combination.loadCase      = lines_[i].loadCase.value_or(kFirstUnnumbered + static_cast<int>(i));
      const auto [known, isNew] = written.try_emplace(combination.loadCase, i);
      if (!isNew)
        Fail(i, "'" + lines_[i].name + "' is written as load case " + std::to_string(combination.loadCase) +
                    ", as is '" + lines_[known->second].name + "' of line " +
                    std::to_string(lines_[known->second].line) + ", expected one of its own");
      for (const auto& [loadCase, term] : sums_[i]) {
        if (!std::isfinite(term.factor))
          Fail(i, "the factor of " + loadCase.ToString() + " in '" + lines_[i].name + "' is no finite number");
        combination.terms.push_back({term.factor, loadCase, term.line});
      }
      combinations.push_back(std::move(combination));
    }
    return combinations;
  }

private:
  struct SumTerm
  {
    double       factor = 0.0;
    std::int64_t line   = 0;
  };
  using Sum = std::map<CaseName, SumTerm>;

  enum class State
  {
    Unseen,
    Open,  // on the way from the line that is visited
    Done
  };

  [[noreturn]] void Fail(std::size_t position, const std::string& message) const
  {
    file_.FailAt(lines_[position].line, message);
  }

  std::size_t Find(const std::string& name, std::size_t user) const
  {
    const auto found = positions_.find(name);
    if (found != positions_.end()) return found->second;
    std::vector<std::string> names;
    for (const WrittenLine& line : lines_) names.push_back(line.name);
    const std::string suggestion = DidYouMean(name, names);
    Fail(user,
         "'" + name + "' is defined nowhere" +
             (suggestion.empty() ? ", expected a load case such as lc1 or the name of a combination" : suggestion));
  }

  /// Adds up a line whose names have been. Names are followed without recursion: chains may be of any length.
  void Visit(std::size_t from)
  {
    std::vector<std::size_t> way{from};
    while (!way.empty()) {
      const std::size_t at = way.back();
      if (states_[at] == State::Done) {
        way.pop_back();
        continue;
      }
      states_[at]  = State::Open;
      bool isReady = true;
      for (const WrittenTerm& term : lines_[at].terms) {
        if (term.name.empty()) continue;
        const std::size_t next = Find(term.name, at);
        if (states_[next] == State::Done) continue;
        if (states_[next] == State::Open) FailCircle(next, at);
        way.push_back(next);
        isReady = false;
        break;
      }
      if (!isReady) continue;
      AddUp(at);
      states_[at] = State::Done;
      way.pop_back();
    }
  }

  void AddUp(std::size_t at)
  {
    Sum& sum = sums_[at];
    for (const WrittenTerm& term : lines_[at].terms) {
      if (term.name.empty()) {
        sum.try_emplace(term.loadCase, SumTerm{0.0, lines_[at].line}).first->second.factor += term.factor;
        continue;
      }
      for (const auto& [loadCase, inner] : sums_[positions_.at(term.name)])
        sum.try_emplace(loadCase, SumTerm{0.0, inner.line}).first->second.factor += term.factor * inner.factor;
    }
  }

  /// @param back the line that the circle comes back to
  [[noreturn]] void FailCircle(std::size_t back, std::size_t at) const
  {
    Fail(at, lines_[at].name == lines_[back].name
                 ? "'" + lines_[at].name + "' is made of itself, expected load cases or other names"
                 : "'" + lines_[at].name + "' is made of '" + lines_[back].name +
                       "', which is made of it, through line " + std::to_string(lines_[back].line) +
                       ", expected names that lead to load cases");
  }

  const LineFile&                    file_;
  std::vector<WrittenLine>           lines_;
  std::map<std::string, std::size_t> positions_;  // in lines_, by name
  std::vector<State>                 states_;
  std::vector<Sum>                   sums_;
};

}  // namespace

std::string CaseName::ToString() const
{
  return "lc" + std::to_string(loadCase) + (substep == kLastSubstep ? "" : "/" + std::to_string(substep));
}

std::vector<Combination> ReadCombinations(std::istream& in, const std::string& name)
{
  const ReadProgress       none;
  LineFile                 file(in, name, none);
  std::vector<WrittenLine> lines = ReadLines(file);
  return Expansion(file, std::move(lines)).Expand();
}

std::vector<Combination> ReadCombinations(const std::filesystem::path& path)
{
  std::ifstream in = OpenLineFile(path);
  return ReadCombinations(in, path.string());
}

}  // namespace quilon
