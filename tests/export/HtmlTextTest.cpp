// Pieces of HTML: what is escaped, and how numbers are written for people.
#include <gtest/gtest.h>

#include "export/HtmlText.h"

namespace {

using report::Count;
using report::Escape;
using report::Grouped;
using report::MemorySize;
using report::Shown;
using report::Speed;

TEST(HtmlText, MarkupIsEscaped) {
    EXPECT_EQ(Escape("<b a=\"1\" c='2'>&amp;"), "&lt;b a=&quot;1&quot; c=&#39;2&#39;&gt;&amp;amp;");
}

TEST(HtmlText, OtherCharactersStay) {
    EXPECT_EQ(Escape("caf\xC3\xA9 / `x` {y} %s"), "caf\xC3\xA9 / `x` {y} %s");
}

TEST(HtmlText, ControlCharactersAreVisible) {
    EXPECT_EQ(Escape("\t\x1B\x7F"), "\xE2\x90\x89\xE2\x90\x9B\xE2\x90\xA1");
    EXPECT_EQ(Escape("a\u0080\u0085\u009F\u00A0"), "a&lt;80&gt;&lt;85&gt;&lt;9f&gt;\u00A0");
}

TEST(HtmlText, ValuesWithoutAnythingToSeeAreNotGiven) {
    EXPECT_EQ(Shown(""), "<span class=\"none\">not given</span>");
    EXPECT_EQ(Shown("  "), "<span class=\"none\">not given</span>");
    EXPECT_EQ(Shown("<1>"), "&lt;1&gt;");
}

TEST(HtmlText, DigitsStandInGroupsOfThree) {
    EXPECT_EQ(Grouped(0), "0");
    EXPECT_EQ(Grouped(999), "999");
    EXPECT_EQ(Grouped(1000), "1,000");
    EXPECT_EQ(Grouped(11280), "11,280");
    EXPECT_EQ(Grouped(1234567), "1,234,567");
    EXPECT_EQ(Grouped(-2048), "-2,048");
    EXPECT_EQ(Grouped(-204), "-204");
}

TEST(HtmlText, MemoryHasTheLargestUnitThatItFills) {
    EXPECT_EQ(MemorySize(0), "0 MiB");
    EXPECT_EQ(MemorySize(1023), "1,023 MiB");
    EXPECT_EQ(MemorySize(1024), "1 GiB");
    EXPECT_EQ(MemorySize(1536), "1.5 GiB");
    EXPECT_EQ(MemorySize(11280), "11 GiB");
    EXPECT_EQ(MemorySize(262144), "256 GiB");
    EXPECT_EQ(MemorySize(1048576), "1 TiB");
    EXPECT_EQ(MemorySize(1572864), "1.5 TiB");
    EXPECT_EQ(MemorySize(-5), "-5 MiB");
}

TEST(HtmlText, SpeedsAreRoundedToHundredthsOfAGigahertz) {
    EXPECT_EQ(Speed(800), "800 MHz");
    EXPECT_EQ(Speed(1000), "1.00 GHz");
    EXPECT_EQ(Speed(2933), "2.93 GHz");
    EXPECT_EQ(Speed(2996), "3.00 GHz");
    EXPECT_EQ(Speed(2066), "2.07 GHz");
}

TEST(HtmlText, OneIsSingular) {
    EXPECT_EQ(Count(0, "function"), "0 functions");
    EXPECT_EQ(Count(1, "function"), "1 function");
    EXPECT_EQ(Count(2000, "function"), "2,000 functions");
}

}  // namespace
