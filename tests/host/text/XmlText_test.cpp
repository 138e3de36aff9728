#include "text/XmlText.h"

#include <gtest/gtest.h>

namespace quilon {
namespace {

TEST(XmlText, SpellsOutWhatXmlReadsAsItsOwn)
{
  EXPECT_EQ(XmlText("a < b && \"c\" > 'd'"), "a &lt; b &amp;&amp; &quot;c&quot; &gt; 'd'");
  EXPECT_EQ(XmlText("&amp;"), "&amp;amp;");
  EXPECT_EQ(XmlText(""), "");
}

TEST(XmlText, LeavesAllOtherBytesAlone) { EXPECT_EQ(XmlText("\xc3\xa9\n\t"), "\xc3\xa9\n\t"); }

}  // namespace
}  // namespace quilon
