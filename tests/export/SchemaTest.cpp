// A validator of JSON schemas reads the schema and what systally-export writes.
#include <gtest/gtest.h>

#include "export/Reports.h"
#include "support/Program.h"

namespace {

using reports::Arlo2;
using reports::File;
using reports::kBare;
using reports::Replaced;

std::string Json(const std::string& reports) {
    const File file(reports);
    return support::Run({support::ProgramPath("systally-export"), "--json", file.path()}).output;
}

/// What the validator says about JSON lines.
std::string Verdict(const std::string& lines) {
    const File file(lines, "lines.json");
    const support::Result result = support::Run(
        {SYSTALLY_EXPORT_TESTS "/validate.py", SYSTALLY_DOCS "/report.schema.json", file.path()});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    return result.output;
}

TEST(Schema, DescribesTheSampleServer) {
    EXPECT_EQ(Verdict(Json(Arlo2())), "1 good\n");
}

TEST(Schema, DescribesFirmwareThatSaysNothing) {
    EXPECT_EQ(Verdict(Json(kBare)), "1 good\n");
}

TEST(Schema, DescribesEveryLineOfSeveralMachines) {
    EXPECT_EQ(Verdict(Json(kBare + Arlo2("properties") + Arlo2("ini"))), "3 good\n");
}

TEST(Schema, DescribesExtremeValues) {
    EXPECT_EQ(Verdict(Json(Replaced(
                  Replaced(Replaced(Arlo2(), "Memory_Mb = 11280", "Memory_Mb = -2147483648"),
                           "MHz.0 = 2933", "MHz.0 = -25536"),
                  "QS0012345", "caf\xE9 \x01\"\\<b>"))),
              "1 good\n");
}

TEST(Schema, RefusesMissingAndUnknownMembers) {
    EXPECT_EQ(Verdict(Replaced(Json(kBare), "\"bios_date\":null,", "")),
              "1: 'bios_date' is a required property\n0 good\n");
    EXPECT_EQ(Verdict(Replaced(Json(kBare), "\"bios_date\":null,", "\"bios_date\":null,\"a\":1,")),
              "1: Additional properties are not allowed ('a' was unexpected)\n0 good\n");
}

TEST(Schema, RefusesValuesOfOtherTypes) {
    EXPECT_EQ(Verdict(Replaced(Json(kBare), "\"processor_slots\":0", "\"processor_slots\":\"0\"")),
              "1: '0' is not of type 'integer'\n0 good\n");
    EXPECT_EQ(Verdict(Replaced(Json(Arlo2()), "\"3A20\"", "\"3a20\"")),
              "1: '3a20' does not match '^[0-9A-F]{4}$'\n0 good\n");
    EXPECT_EQ(Verdict(Replaced(Json(kBare), "\"model_number\":null", "\"model_number\":\"\"")),
              "1: '' is too short\n0 good\n");
}

}  // namespace
