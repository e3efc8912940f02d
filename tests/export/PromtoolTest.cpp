// promtool reads the metrics, and finds nothing to say against their names either.
#include "export/Consumer.h"

namespace {

using consumer::Export;
using reports::Arlo2;
using reports::File;
using reports::kBare;
using reports::Replaced;

/// What promtool says about metrics; nothing when they are good.
std::string Verdict(const std::string& metrics) {
    const File file(metrics, "systally.prom");
    const support::Result result =
        consumer::Run("promtool", "prometheus", "promtool check metrics <" + file.path());
    EXPECT_EQ(result.status == 0, (result.output + result.errors).empty());
    return result.output + result.errors;
}

TEST(Promtool, AcceptsTheSampleServer) {
    EXPECT_EQ(Verdict(Export("--prometheus", Arlo2())), "");
}

TEST(Promtool, AcceptsFirmwareThatSaysNothing) {
    EXPECT_EQ(Verdict(Export("--prometheus", kBare)), "");
}

TEST(Promtool, AcceptsAFleet) {
    EXPECT_EQ(Verdict(Export("--prometheus", kBare + Arlo2("properties") + Arlo2() + kBare)), "");
}

TEST(Promtool, AcceptsWhateverFirmwareSays) {
    EXPECT_EQ(Verdict(Export("--prometheus",
                             Replaced(Arlo2(), "QS0012345", "a\"b\\c} \x01\xE9 # HELP {"))),
              "");
}

TEST(Promtool, ComplainsAboutMetricsThatAreNone) {
    EXPECT_NE(Verdict(Replaced(Export("--prometheus", Arlo2()), "slots 4", "slots four")), "");
}

}  // namespace
