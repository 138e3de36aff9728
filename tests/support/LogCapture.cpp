#include "LogCapture.h"

namespace quilon_test {

std::vector<std::string> LogCapture::GetTexts() const
{
  std::vector<std::string> texts;
  for (const QuilonLog::Line& line : lines_) texts.push_back(line.text);
  return texts;
}

std::vector<std::string> LogCapture::GetWhole() const
{
  std::vector<std::string> whole;
  for (const QuilonLog::Line& line : lines_) {
    // "|program|module|source": the first part is the program's name.
    const std::size_t module = line.tag.find('|', 1);
    whole.push_back(std::to_string(static_cast<int>(line.type)) + ' ' + line.file + ':' + std::to_string(line.line) +
                    ' ' + (module == std::string::npos ? line.tag : line.tag.substr(module)) + ": " + line.text);
  }
  return whole;
}

}  // namespace quilon_test
