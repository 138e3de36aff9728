#include <string>
#include <string_view>

#include "diff/Report.h"
#include "terminal/Format.h"

namespace quilon::diff {

namespace {

/// Text for an attribute or an element. XML has no word for most control characters.
std::string Escaped(std::string_view text)
{
  std::string escaped;
  for (const char c : Printable(text)) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string Describe(const DifferenceRow& row)
{
  return "id " + row.id + ", " + row.component + ": A " + row.a + ", B " + row.b + ", " + row.rule;
}

std::string Case(const BlockRow& block)
{
  const std::string head =
      "  <testcase classname=\"" + Escaped(block.name.kind) + "\" name=\"" + Escaped(block.name.block) + "\"";
  if (block.status == BlockOutcome::Same) return head + "/>\n";
  if (block.status == BlockOutcome::Ignored) return head + ">\n    <skipped/>\n  </testcase>\n";
  std::string lines;
  for (const DifferenceRow& row : block.worst) lines += Escaped(Describe(row)) + '\n';
  const bool        isCompared = block.status == BlockOutcome::Different;
  const std::string message =
      isCompared ? Counted(block.differingRecords, "record") + " different" : block.worst.front().rule;
  return head + ">\n    <failure message=\"" + Escaped(message) + "\">" + lines + "</failure>\n  </testcase>\n";
}

}  // namespace

std::string ToJUnit(const Report& report)
{
  const std::size_t failures = report.differingBlocks + report.missingBlocks + report.additionalBlocks;
  std::string       text     = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"quilon diff\" tests=\"" +
                     std::to_string(report.all.size()) + "\" failures=\"" + std::to_string(failures) +
                     "\" errors=\"0\" skipped=\"" + std::to_string(report.ignoredBlocks) + "\">\n";
  for (const BlockRow& block : report.all) text += Case(block);
  return text + "  <system-out>" + Escaped(report.Summarize()) + "</system-out>\n</testsuite>\n";
}

}  // namespace quilon::diff
