// The error handler: messages, responses, the question.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <type_traits>

#include "util/ErrorHandler.h"

namespace {

using Code = CErrorHandler::ErrorCodeDef;

/// What the handler writes to standard error for this kind and detail.
std::string Message(int kind, const std::string& text, int response = 1) {
    std::string detail = text;
    testing::internal::CaptureStderr();
    CErrorHandler().ErrorHandler(static_cast<Code>(response), static_cast<Code>(kind),
                                 detail.data());
    return testing::internal::GetCapturedStderr();
}

TEST(ErrorHandler, EnumeratorsHaveTheirValues) {
    EXPECT_EQ(CErrorHandler::ERROR_FATAL, 0);
    EXPECT_EQ(CErrorHandler::ERROR_CONTINUE, 1);
    EXPECT_EQ(CErrorHandler::ERROR_QUERY, 2);
    EXPECT_EQ(CErrorHandler::ERROR_NONE, 0);
    EXPECT_EQ(CErrorHandler::GENERAL_SYSTEM_ERROR, 1);
    EXPECT_EQ(CErrorHandler::GENERAL_PROGRAM_ERROR, 2);
    EXPECT_EQ(CErrorHandler::CUSTOM_ERROR, 3);
    EXPECT_EQ(CErrorHandler::MEMORY_ALLOCATION_ERROR, 4);
    EXPECT_EQ(CErrorHandler::FILE_OPEN_ERROR, 5);
    EXPECT_EQ(CErrorHandler::FILE_READ_ERROR, 6);
    EXPECT_EQ(CErrorHandler::FILE_WRITE_ERROR, 7);
    EXPECT_EQ(CErrorHandler::FILE_CLOSE_ERROR, 8);
    EXPECT_EQ(CErrorHandler::PARSE_ERROR, 9);
    EXPECT_EQ(CErrorHandler::TCPIP_ERROR, 10);
}

TEST(ErrorHandler, EachKindHasItsText) {
    EXPECT_EQ(Message(0, "detail"), "\n\n\n");
    EXPECT_EQ(Message(1, "detail"), "\n\nGeneral System Error\n\ndetail\n");
    EXPECT_EQ(Message(2, "detail"), "\n\nGeneral Program Error\n\ndetail\n");
    EXPECT_EQ(Message(3, "abc"), "\n\nabc\n");
    EXPECT_EQ(Message(4, "detail"),
              "\n\nMemory Allocation Error\n\n"
              "Not enough memory is available for this application.\n\n"
              "Please close some programs to free up memory and try running\n"
              "this application again.\n\ndetail\n");
    EXPECT_EQ(Message(5, "detail"), "\n\nFile Open Error\n\nUnable to open file...\n\ndetail\n");
    EXPECT_EQ(Message(6, "detail"),
              "\n\nFile Read Error\n\nUnable to read from file...\n\ndetail\n");
    EXPECT_EQ(Message(7, "detail"),
              "\n\nFile Write Error\n\nUnable to write to file...\n\ndetail\n");
    EXPECT_EQ(Message(8, "detail"), "\n\nFile Close Error\n\nUnable to close file...\n\ndetail\n");
    EXPECT_EQ(Message(9, "detail"),
              "\n\nParse Error\n\nUnable to parse data file...\n\ndetail\n\n"
              "The data file may not be in the correct format or it may be corrupt.\n\n\n");
    EXPECT_EQ(Message(10, "detail"), "\n\nTCP/IP Error\n\ndetail\n");
}

TEST(ErrorHandler, KindAboveTenShowsNothing) {
    EXPECT_EQ(Message(11, "detail"), "\n\n\n");
    EXPECT_EQ(Message(15, "detail"), "\n\n\n");
    EXPECT_EQ(Message(99, "detail"), "\n\n\n");
    EXPECT_EQ(Message(2147483647, "detail"), "\n\n\n");
}

TEST(ErrorHandler, SelectorsAreSigned32BitNumbers) {
    using Number = std::underlying_type_t<Code>;
    EXPECT_TRUE((std::is_same_v<Number, int32_t>));
}

TEST(ErrorHandler, ParseErrorWithoutDetailKeepsTheBlankLine) {
    EXPECT_EQ(Message(9, ""),
              "\n\nParse Error\n\nUnable to parse data file...\n\n\n\n"
              "The data file may not be in the correct format or it may be corrupt.\n\n\n");
}

TEST(ErrorHandler, ParseErrorReadsThroughANullDetail) {
    EXPECT_DEATH(CErrorHandler().ErrorHandler(CErrorHandler::ERROR_CONTINUE,
                                              CErrorHandler::PARSE_ERROR, nullptr),
                 "");
}

TEST(ErrorHandler, UnlistedResponseContinues) {
    EXPECT_EQ(Message(3, "abc", 5), "\n\nabc\n");
    EXPECT_EQ(Message(3, "abc", 3), "\n\nabc\n");
    EXPECT_EQ(Message(3, "abc", 99), "\n\nabc\n");
    EXPECT_EQ(Message(0, "abc", 99), "\n\n\n");
    EXPECT_EQ(Message(3, "abc", -1), "\n\nabc\n");
}

TEST(ErrorHandler, LongMessageIsTruncatedTo511Bytes) {
    const std::string message = Message(3, std::string(2000, 'x'));
    EXPECT_EQ(message, "\n\n" + std::string(510, 'x') + "\n");
}

TEST(ErrorHandler, FatalResponseExitsWithStatus1) {
    char detail[] = "gone";
    EXPECT_EXIT(CErrorHandler().ErrorHandler(CErrorHandler::ERROR_FATAL,
                                             CErrorHandler::CUSTOM_ERROR, detail),
                testing::ExitedWithCode(1), "gone");
}

TEST(ErrorHandler, FatalExitRunsExitHandlers) {
    char detail[] = "gone";
    EXPECT_EXIT(
        {
            std::atexit([] { std::fputs("exit handler ran", stderr); });
            CErrorHandler().ErrorHandler(CErrorHandler::ERROR_FATAL, CErrorHandler::CUSTOM_ERROR,
                                         detail);
        },
        testing::ExitedWithCode(1), "exit handler ran");
}

/// Asks with this on standard input, and ends the process with 42 when the handler returns.
[[noreturn]] void Ask(const std::string& input) {
    int ends[2];
    if (pipe(ends) != 0 ||
        write(ends[1], input.data(), input.size()) != static_cast<ssize_t>(input.size())) {
        std::abort();
    }
    close(ends[1]);
    dup2(ends[0], STDIN_FILENO);
    char detail[] = "what now";
    CErrorHandler().ErrorHandler(CErrorHandler::ERROR_QUERY, CErrorHandler::CUSTOM_ERROR, detail);
    std::fprintf(stderr, "rest:%c", std::getchar());
    std::exit(42);
}

TEST(ErrorHandlerQuestion, StandsBehindTheMessage) {
    EXPECT_EXIT(Ask("yx."), testing::ExitedWithCode(42), "\n\nwhat now\n\nContinue anyway\\? ");
}

TEST(ErrorHandlerQuestion, YesInEitherCaseContinues) {
    EXPECT_EXIT(Ask("yx."), testing::ExitedWithCode(42), "");
    EXPECT_EXIT(Ask("Yx."), testing::ExitedWithCode(42), "");
}

TEST(ErrorHandlerQuestion, AnyOtherAnswerExitsWithStatus1) {
    EXPECT_EXIT(Ask("nx."), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(Ask("1y."), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(Ask("ny."), testing::ExitedWithCode(1), "");
}

TEST(ErrorHandlerQuestion, BlanksBeforeTheAnswerAreSkipped) {
    EXPECT_EXIT(Ask(" \n\tYx."), testing::ExitedWithCode(42), "");
}

TEST(ErrorHandlerQuestion, ASecondCharacterIsReadAndIgnored) {
    EXPECT_EXIT(Ask("y \nn."), testing::ExitedWithCode(42), "rest:\\.");
}

TEST(ErrorHandlerQuestion, EndOfInputMeansNo) {
    EXPECT_EXIT(Ask(""), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(Ask(" \n"), testing::ExitedWithCode(1), "");
}

TEST(ErrorHandlerQuestion, EndOfInputBehindTheAnswerChangesNothingOfIt) {
    EXPECT_EXIT(Ask("y"), testing::ExitedWithCode(42), "");
    EXPECT_EXIT(Ask(" Y\n"), testing::ExitedWithCode(42), "");
    EXPECT_EXIT(Ask("n"), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(Ask("n\n"), testing::ExitedWithCode(1), "");
}

}  // namespace
