// Reads the captured answers of the guests.
#include "vm/Answers.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vm {

namespace {

std::string Contents(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error(file.string() +
                                 " is missing: run this test by ctest, which boots the guests");
    }
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace

Answer AnswerOf(const std::string& guest, const std::string& command) {
    const std::string start = std::string(SYSTALLY_VM_ANSWERS) + "/" + guest + "/" + command;
    return {Contents(start + ".out"), Contents(start + ".err"),
            std::stoi(Contents(start + ".status"))};
}

bool AnswersAlone(const std::string& guest) {
    return guest == "plain" || guest == "dressed" || guest == "assembled";
}

Answer OnGuest::Ran(const std::string& command) {
    Answer answer = AnswerOf(GetParam(), AnswersAlone(GetParam()) ? command : "this-" + command);
    EXPECT_EQ(answer.err, "") << command;
    return answer;
}

std::string OnGuest::PeerSays(const std::string& command) {
    const Answer answer = AnswerOf(GetParam(), command);
    if (answer.status != 0 || answer.out.empty()) {
        throw std::runtime_error(command + " failed in the guest: " + answer.err);
    }
    return answer.out;
}

std::string OnGuest::PeerSaysInOneLine(const std::string& command) {
    const std::string text = PeerSays(command);
    return text.substr(0, text.find('\n'));
}

}  // namespace vm
