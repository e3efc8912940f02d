// Runs systally-export and looks at how it complains.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "export/Reports.h"
#include "support/Program.h"

namespace exporter {

inline const std::string kProgram = support::ProgramPath("systally-export");

inline support::Result Export(const support::Arguments& arguments) {
    support::Arguments command = {kProgram};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return support::Run(command);
}

inline void ExpectComplaint(const support::Result& result, int status, const std::string& message) {
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "systally-export: " + message + "\n");
    EXPECT_EQ(result.status, status);
}

}  // namespace exporter
