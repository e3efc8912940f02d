// The table of shapes against every place that tells of them.
#include <gtest/gtest.h>

#include <set>

#include "export/CommandLine.h"
#include "export/Exporter.h"
#include "support/Patterns.h"

namespace {

using reports::Contents;

using Words = std::set<std::string>;

Words Shapes() {
    Words names;
    for (const report::ShapeOption& shape : report::Shapes()) {
        names.insert(shape.name);
    }
    return names;
}

std::string Between(const std::string& text, const std::string& from, const std::string& to) {
    const size_t start = text.find(from);
    EXPECT_NE(start, std::string::npos) << "there is no " << from;
    return start == std::string::npos ? "" : text.substr(start, text.find(to, start) - start);
}

TEST(Shapes, AreFive) {
    EXPECT_EQ(Shapes(), (Words{"ansible", "facter", "html", "json", "prometheus"}));
}

TEST(Shapes, AreThoseOfTheUsageText) {
    const std::string help = exporter::Export({"--help"}).output;
    EXPECT_EQ(support::FindWords(Between(help, "in another shape:", "-o, --output"),
                                 "^  --([a-z0-9-]+) "),
              Shapes());
}

TEST(Shapes, AreThoseOfTheManual) {
    const std::string page =
        support::ReplaceAll(Contents(SYSTALLY_DOCS "/systally-export.1"), R"(\\-)", "-");
    EXPECT_EQ(support::FindWords(Between(page, ".SH SHAPES", ".SH OPTIONS"),
                                 "^\\.TP\n\\.B --([a-z0-9-]+)$"),
              Shapes());
}

TEST(Shapes, AreThoseOfTheCompletion) {
    const std::string completion = Contents(SYSTALLY_DOCS "/../completions/systally");
    EXPECT_EQ(support::FindWords(Between(completion, "local shapes='", "'\n"), "--([a-z0-9-]+)"),
              Shapes());
}

}  // namespace
