// The machine type that a product name implies.
#include <gtest/gtest.h>

#include "app/systally.h"

namespace {

/// What fillInMachineTypeIfPossible makes of a product name.
std::string TypeOf(const char* product) {
    SERVER_INFORMATION info;
    info.SetProductName(product);
    char type[5] = "....";
    EXPECT_EQ(fillInMachineTypeIfPossible(info, type), type);
    return type;
}

TEST(FillInMachineType, EachModelHasItsType) {
    EXPECT_EQ(TypeOf("Arlo 2"), "7712");
    EXPECT_EQ(TypeOf("Arlo 1"), "7711");
    EXPECT_EQ(TypeOf("Arlo"), "7710");
    EXPECT_EQ(TypeOf("Birch"), "7709");
    EXPECT_EQ(TypeOf("Cedar 1"), "7730");
    EXPECT_EQ(TypeOf("Dune R"), "7731");
}

TEST(FillInMachineType, ModelMayStandAnywhereInTheName) {
    EXPECT_EQ(TypeOf("QEV Corvina Arlo 2 Blade"), "7712");
    EXPECT_EQ(TypeOf("Birchwood"), "7709");
}

TEST(FillInMachineType, LongerNamesAreTriedBeforeTheShorterOneThatTheyContain) {
    EXPECT_EQ(TypeOf("Arlo 3"), "7710");
    EXPECT_EQ(TypeOf("Arlo 1 and Arlo 2"), "7712");
    EXPECT_EQ(TypeOf("Birch Arlo"), "7710");
}

TEST(FillInMachineType, UnknownProductGivesThePlaceholder) {
    EXPECT_EQ(TypeOf(""), "XXXX");
    EXPECT_EQ(TypeOf("Cedar 2"), "XXXX");
    EXPECT_EQ(TypeOf("arlo 2"), "XXXX");
}

}  // namespace
