#include "QuilonOnfEngine/OnfResultRequestFile.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <numeric>
#include <optional>
#include <string_view>
#include <vector>

#include "bundled/NativePath.h"
#include "bundled/OnfCatalogue.h"
#include "bundled/OnfFileLayer.h"
#include "file_text.h"
#include "text_cursor.h"

namespace {

/// The least number of letters to insert, delete or replace (Levenshtein 1966).
std::size_t EditDistance(std::string_view a, std::string_view b)
{
  std::vector<std::size_t> row(b.size() + 1);  // distances of the first i letters of a to the first letters of b
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0]               = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal                   = row[j + 1];
      row[j + 1]                 = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

/// @return the catalogue's name that is nearest, empty when none is near
std::string FindNearName(std::string_view name)
{
  constexpr std::size_t kMaxLength   = 64;  // longer words are no slips of a name
  constexpr std::size_t kMaxDistance = 3;
  std::string           nearest;
  std::size_t           least = kMaxDistance + 1;
  if (name.size() > kMaxLength) return nearest;
  for (const std::string& candidate : OnfCatalogue::Names()) {
    const std::size_t distance = EditDistance(name, candidate);
    if (distance >= least) continue;
    least   = distance;
    nearest = candidate;
  }
  return nearest;
}

bool LooksLikeNumber(std::string_view word)
{
  const std::size_t sign = word[0] == '-' || word[0] == '+' ? 1 : 0;
  return word.size() > sign && word[sign] >= '0' && word[sign] <= '9';
}

/// @param word not empty
int ReadOnfId(const TextCursor& in, std::string_view word)
{
  if (LooksLikeNumber(word)) {
    int        onf    = 0;
    const auto result = std::from_chars(word.data(), word.data() + word.size(), onf);
    if (result.ec != std::errc() || result.ptr != word.data() + word.size())
      in.Fail(QuoteForMessage(word) + " is no ONF id, expected a 32-bit integer");
    return onf;
  }
  if (const std::optional<FED_OnfId> onf = OnfCatalogue::FindIdByName(std::string(word))) return *onf;
  const std::string near = FindNearName(word);
  in.Fail("no kind of result is named " + QuoteForMessage(word) +
          (near.empty() ? ", expected an ONF id or the name of a kind" : ", did you mean \"" + near + "\"?"));
}

}  // namespace

OnfResultRequestFile::OnfResultRequestFile() = default;

OnfResultRequestFile::OnfResultRequestFile(const std::wstring& path)
{
  const std::filesystem::path file = NativePath(path);
  const FileText              text = ReadFileText(OnfFileLayer::Get(), file);
  TextCursor                  in(DisplayPath(file), {text.bytes.get(), text.size});
  while (!in.AtEnd()) {
    std::string_view line = in.ReadRestOfLine();
    line                  = line.substr(0, line.find('#'));
    line                  = line.substr(0, line.find_last_not_of(" \t\r") + 1);
    if (line.find_first_of(" \t\r") != std::string_view::npos)
      in.Fail("expected one ONF id or name a line, found " + QuoteForMessage(line));
    if (!line.empty()) requested_.insert(ReadOnfId(in, line));
    if (!in.AtEnd()) in.ReadLineEnd();  // the last line may lack its line feed
  }
}

OnfResultRequestFile::OnfResultRequestFile(const OnfResultRequestFile& other) = default;

OnfResultRequestFile& OnfResultRequestFile::operator=(const OnfResultRequestFile& other) = default;

OnfResultRequestFile::~OnfResultRequestFile() = default;

bool OnfResultRequestFile::typeIsRequested(int onf) const { return requested_.count(onf) != 0; }
