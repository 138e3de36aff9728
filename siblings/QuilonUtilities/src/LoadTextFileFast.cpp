#include "QuilonUtilities/LoadTextFileFast.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "bundled/NativePath.h"

namespace {

/// @return false when the file cannot be opened or read to its end
bool ReadAll(const std::filesystem::path& path, std::string& text)
{
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;

  // The size is a hint: what is no plain file has none, and a file may grow meanwhile. One byte more than the size, so
  // that the first read meets the end of an ordinary file.
  constexpr std::size_t kLeastBuffer = 4096;
  std::error_code       error;
  const std::uintmax_t  hint = std::filesystem::file_size(path, error);
  text.resize(error || hint < kLeastBuffer ? kLeastBuffer : static_cast<std::size_t>(hint) + 1);

  std::size_t used = 0;
  while (in.read(text.data() + used, static_cast<std::streamsize>(text.size() - used))) {
    used = text.size();
    text.resize(2 * used);
  }
  if (in.bad()) return false;
  text.resize(used + static_cast<std::size_t>(in.gcount()));
  return true;
}

}  // namespace

bool LoadTextFileFast(const wchar_t* path, std::vector<std::string>& lines, std::size_t& lineCount)
{
  lines.clear();
  lineCount = 0;

  std::string text;
  if (!ReadAll(NativePath(path), text)) return false;

  // Counted first: a list of lines that grows moves every line twice, in a quarter of the time of all.
  lines.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t feed = text.find('\n', begin);
    const std::size_t next = feed == std::string::npos ? text.size() : feed + 1;
    std::size_t       end  = feed == std::string::npos ? text.size() : feed;
    if (feed != std::string::npos && end > begin && text[end - 1] == '\r') --end;
    lines.emplace_back(text, begin, end - begin);
    begin = next;
  }
  lineCount = lines.size();
  return true;
}
