#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "diff/Report.h"
#include "text/Format.h"
#include "text/XmlText.h"

namespace quilon::diff {

namespace {

/// @return bytes of a UTF-8 character by its first; 0 for a byte that begins none
std::size_t LengthByLead(unsigned char lead)
{
  if (lead < 0x80) return 1;
  if (lead < 0xc2 || lead >= 0xf8) return 0;
  if (lead < 0xe0) return 2;
  return lead < 0xf0 ? 3 : 4;
}

/// @return bytes of the UTF-8 character that the text begins with; 0 for bytes that are none, and for a character that
///         XML does not know
std::size_t GetCharacterLength(std::string_view text)
{
  const auto          byte   = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead   = byte(0);
  const std::size_t   length = LengthByLead(lead);
  if (length < 2 || length > text.size()) return length == 1 ? 1 : 0;
  std::uint32_t code = lead & (0x7fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xc0u) != 0x80u) return 0;
    code = code << 6 | (byte(i) & 0x3fu);
  }
  const bool isLongForm  = length == 3 ? code < 0x800 : length == 4 && code < 0x10000;
  const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
  return isLongForm || isSurrogate || code == 0xfffe || code == 0xffff || code > 0x10ffff ? 0 : length;
}

/// @return the text with U+FFFD in place of every byte that is no UTF-8, which the file claims to be
std::string ToUtf8(std::string_view text)
{
  std::string utf8;
  while (!text.empty()) {
    const std::size_t length = GetCharacterLength(text);
    if (length == 0)
      utf8 += "\xef\xbf\xbd";
    else
      utf8 += text.substr(0, length);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return utf8;
}

/// Text for an attribute or an element. XML has no word for most control characters.
std::string Escaped(std::string_view text) { return XmlText(Printable(ToUtf8(text))); }

std::string Describe(const DifferenceRow& row)
{
  const std::string id = row.id ? std::to_string(*row.id) : "-";
  return "id " + id + ", " + (row.component.empty() ? "-" : row.component) + ": A " + ToText(row.a) + ", B " +
         ToText(row.b) + ", " + row.rule;
}

enum class Verdict
{
  Passed,
  Skipped,
  Failed
};

Verdict Judge(const BlockRow& block)
{
  if (block.status == BlockOutcome::Same) return Verdict::Passed;
  const bool isPassedOver = block.status == BlockOutcome::Ignored || (block.isMissingIgnored && block.worst.empty());
  return isPassedOver ? Verdict::Skipped : Verdict::Failed;
}

std::string Case(const BlockRow& block)
{
  const std::string head =
      "  <testcase classname=\"" + Escaped(block.name.kind) + "\" name=\"" + Escaped(block.name.block) + "\"";
  const Verdict verdict = Judge(block);
  if (verdict == Verdict::Passed) return head + "/>\n";
  if (verdict == Verdict::Skipped) return head + ">\n    <skipped/>\n  </testcase>\n";
  std::string lines;
  for (const DifferenceRow& row : block.worst) lines += Escaped(Describe(row)) + '\n';
  const std::string message = block.status == BlockOutcome::MissingInSecond ? "block missing in B"
                              : block.status == BlockOutcome::OnlyInSecond
                                  ? "block only in B"
                                  : Counted(block.differingRecords, "record") + " different";
  return head + ">\n    <failure message=\"" + Escaped(message) + "\">" + lines + "</failure>\n  </testcase>\n";
}

}  // namespace

std::string ToJUnit(const Report& report)
{
  const auto count = [&](Verdict verdict) {
    return std::to_string(std::count_if(report.all.begin(), report.all.end(),
                                        [&](const BlockRow& block) { return Judge(block) == verdict; }));
  };
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"quilon diff\" tests=\"" +
                     std::to_string(report.all.size()) + "\" failures=\"" + count(Verdict::Failed) +
                     "\" errors=\"0\" skipped=\"" + count(Verdict::Skipped) + "\">\n";
  for (const BlockRow& block : report.all) text += Case(block);
  return text + "  <system-out>" + Escaped(report.Summarize()) + "</system-out>\n</testsuite>\n";
}

}  // namespace quilon::diff
