// Command lines that ask for nothing, and guests that let the program read nothing.
#include "support/Usage.h"
#include "vm/Answers.h"

namespace {

using support::kUsage;

const char* const kNoMemory =
    "Critical error in srvinfo: Could not open /dev/mem.\n"
    "Catastrophic DPMI_ReadMemoryInRM failure -2\n"
    " SERVER_INFORMATION::LoadBIOSBuffer()\n";

const char* const kInternalError =
    "Internal error.\n"
    "Note: This program cannot run with expanded memory drivers (EMM386) loaded.\n";

class CommandLine : public vm::OnGuest {
  protected:
    static void ExpectSyntaxError(const std::string& command) {
        EXPECT_EQ(Ran(command).out, std::string("Syntax Error.\n") + kUsage);
        EXPECT_EQ(Ran(command).status, 255);
    }
};

TEST_P(CommandLine, WithoutArgumentsThereIsTheUsage) {
    EXPECT_EQ(Ran("no-arguments").out, kUsage);
    EXPECT_EQ(Ran("no-arguments").status, 255);
}

TEST_P(CommandLine, UnknownSwitchIsASyntaxError) {
    ExpectSyntaxError("unknown-switch");
}

TEST_P(CommandLine, TwoQuestionsAreASyntaxError) {
    ExpectSyntaxError("two-questions");
}

TEST_P(CommandLine, StartWithoutIdsIsASyntaxError) {
    ExpectSyntaxError("start-without-ids");
}

TEST_P(CommandLine, AddAloneEndsSilently) {
    EXPECT_EQ(Ran("add-alone").out, "");
    EXPECT_EQ(Ran("add-alone").status, 255);
}

INSTANTIATE_TEST_SUITE_P(Guest, CommandLine, vm::GuestsThatAnswerAlone(), vm::GuestName);

class OrdinaryUser : public vm::OnGuest {};

TEST_P(OrdinaryUser, IsToldThatMemoryCannotBeOpened) {
    EXPECT_EQ(Ran("nobody-server-family").out, std::string(kNoMemory) + kInternalError);
    EXPECT_EQ(Ran("nobody-server-family").status, 255);
}

TEST_P(OrdinaryUser, GetsAReportOfTheError) {
    EXPECT_EQ(Ran("nobody-report").out, std::string(kNoMemory) + "[ERROR]\nERROR = 255\n");
    EXPECT_EQ(Ran("nobody-report").status, 255);
}

TEST_P(OrdinaryUser, LearnsOfTheProcessorAllTheSame) {
    EXPECT_EQ(Ran("nobody-x64").status, Ran("x64").status);
    EXPECT_EQ(Ran("nobody-x64").out, "");
}

INSTANTIATE_TEST_SUITE_P(Guest, OrdinaryUser, vm::GuestsThatAnswerAlone(), vm::GuestName);

class WithoutMemory : public vm::OnGuest {};

TEST_P(WithoutMemory, QuestionsAboutTheMachineEndWith255) {
    for (const char* command : {"no-memory-server-family", "no-memory-type"}) {
        EXPECT_EQ(Ran(command).out, std::string(kNoMemory) + kInternalError);
        EXPECT_EQ(Ran(command).status, 255);
    }
}

TEST_P(WithoutMemory, ReportsHoldTheErrorAlone) {
    EXPECT_EQ(Ran("no-memory-report").out, std::string(kNoMemory) + "[ERROR]\nERROR = 255\n");
    EXPECT_EQ(Ran("no-memory-report").status, 255);
    EXPECT_EQ(Ran("no-memory-properties").out, std::string(kNoMemory) + "ERROR = 255\n");
    EXPECT_EQ(Ran("no-memory-properties").status, 255);
}

TEST_P(WithoutMemory, DumpEndsWithSuccessAllTheSame) {
    EXPECT_EQ(Ran("no-memory-dump").out, kNoMemory);
    EXPECT_EQ(Ran("no-memory-dump").status, 0);
}

TEST_P(WithoutMemory, PciFunctionsAreCountedAllTheSame) {
    EXPECT_EQ(Ran("no-memory-vid-8086").status, Ran("vid-8086").status);
}

INSTANTIATE_TEST_SUITE_P(Guest, WithoutMemory, vm::GuestsThatAnswerAlone(), vm::GuestName);

class WithoutPci : public vm::OnGuest {
  protected:
    // The report up to the line before the PCI section.
    static std::string SystemPart() {
        const std::string report = Ran("report-ini").out;
        return report.substr(0, report.find("\n[PCI]\n"));
    }
};

TEST_P(WithoutPci, EmptyTreeIsReportedAsNoFunctions) {
    EXPECT_EQ(Ran("empty-pci-report").out, SystemPart() + "\n[PCI]\nTotal_Number_Of_Devices = 0\n");
    EXPECT_EQ(Ran("empty-pci-report").status, 0);
}

TEST_P(WithoutPci, EmptyTreeCountsNothing) {
    EXPECT_EQ(Ran("empty-pci-vid-8086").status, 7);
    EXPECT_EQ(Ran("empty-pci-vid-8086").out, "");
}

TEST_P(WithoutPci, MissingTreeEndsTheReportBeforeThePciSection) {
    EXPECT_EQ(Ran("no-pci-report").out, SystemPart() + "Cannot open /proc/bus/pci\n");
    EXPECT_EQ(Ran("no-pci-report").status, 1);
}

TEST_P(WithoutPci, MissingTreeEndsACountWith1WhateverIsAdded) {
    EXPECT_EQ(Ran("no-pci-vid-8086").out, "Cannot open /proc/bus/pci\n");
    EXPECT_EQ(Ran("no-pci-vid-8086").status, 1);
}

TEST_P(WithoutPci, QuestionsAboutTheMachineAreAnsweredAllTheSame) {
    EXPECT_EQ(Ran("no-pci-server-family").status, Ran("server-family").status);
    EXPECT_EQ(Ran("no-pci-server-family").out, "");
}

INSTANTIATE_TEST_SUITE_P(Guest, WithoutPci, vm::GuestsThatAnswerAlone(), vm::GuestName);

class WorkingFolder : public vm::OnGuest {};

TEST_P(WorkingFolder, StaysEmpty) {
    const vm::Answer answer = Ran("files-of-working-folder");
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.out, "");
}

INSTANTIATE_TEST_SUITE_P(Guest, WorkingFolder, vm::GuestsThatAnswerAlone(), vm::GuestName);

}  // namespace
