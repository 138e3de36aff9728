#include <string>

#include <gtest/gtest.h>

#include "diff/Report.h"

namespace {

using namespace quilon::diff;

// The file for one block of this kind, which has no difference.
std::string FileFor(const std::string& kind)
{
  Report   report;
  BlockRow block;
  block.name   = {"1000@lc=1", kind, "lc=1", "-"};
  block.status = BlockOutcome::Same;
  report.all.push_back(block);
  report.blocks = 1;
  return ToJUnit(report);
}

std::string Expected(const std::string& kind)
{
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<testsuite name=\"quilon diff\" tests=\"1\" failures=\"0\" errors=\"0\" skipped=\"0\">\n"
         "  <testcase classname=\"" +
         kind +
         "\" name=\"1000@lc=1\"/>\n"
         "  <system-out>same: 1 block, 0 records, 0 values</system-out>\n"
         "</testsuite>\n";
}

TEST(JUnitReport, NamesAreWrittenForXml)
{
  struct Row
  {
    const char* name;
    std::string kind;
    std::string written;
  };
  const std::string none   = "\xef\xbf\xbd";  // U+FFFD
  const Row         rows[] = {
              {"plain", "Wear depth", "Wear depth"},
              {"markup", "a<b> & \"c\" 'd'", "a&lt;b&gt; &amp; &quot;c&quot; 'd'"},
              {"control characters",
               "a\nb\tc\x01"
                       "d\x7f",
               "a\\nb\\tc\\x01d\\x7f"},
              {"two, three and four bytes", "\xc3\xa4 \xe2\x82\xac \xf0\x9f\x94\xa7", "\xc3\xa4 \xe2\x82\xac \xf0\x9f\x94\xa7"},
              {"another encoding", "H\xf6he", "H" + none + "he"},
              {"cut short", "a\xe2\x82", "a" + none + none},
              {"a continuation alone", "\x80", none},
              {"more bytes than it needs", "\xc0\xbc", none + none},
              {"the same of three bytes", "\xe0\x80\xbc", none + none + none},
              {"half of a pair", "\xed\xa0\x80", none + none + none},
              {"no character", "\xef\xbf\xbf", none + none + none},
              {"beyond the last", "\xf4\x90\x80\x80", none + none + none + none},
              {"far beyond the last", "\xf5\x80\x80\x80", none + none + none + none},
              {"a byte that begins nothing", "\xf8\x90\x80\x80", none + none + none + none},
              {"the last", "\xf4\x8f\xbf\xbd", "\xf4\x8f\xbf\xbd"},
              {"the first of two, three and four bytes", "\xc2\xa1 \xe0\xa0\x80 \xf0\x90\x80\x80",
               "\xc2\xa1 \xe0\xa0\x80 \xf0\x90\x80\x80"},
              {"the last of two and three bytes", "\xdf\xbf \xef\xbf\xbd", "\xdf\xbf \xef\xbf\xbd"},
              {"beside the halves of pairs", "\xed\x9f\xbf \xee\x80\x80", "\xed\x9f\xbf \xee\x80\x80"},
              {"the last half of a pair", "\xed\xbf\xbf", none + none + none},
              {"no character either", "\xef\xbf\xbe", none + none + none},
  };
  for (const Row& row : rows) EXPECT_EQ(FileFor(row.kind), Expected(row.written)) << row.name;
}

}  // namespace
