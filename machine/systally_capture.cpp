// systally-capture: writes the machine at hand into a folder for systally-on.
// Tells what it did on standard error; standard output stays empty.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "machine/Capture.h"

namespace {

constexpr int kFailure = 255;

constexpr char kHelp[] =
    "usage: systally-capture FOLDER [--sanitize]\n"
    "Writes this machine, as systally sees it, into a new folder.\n"
    "  --sanitize  replaces serial numbers, asset tags and UUIDs by placeholders\n"
    "  --help      prints this text\n"
    "  --version   prints the version\n"
    "  --          ends the options: what follows is the folder, even if it begins with -\n"
    "systally-on FOLDER SWITCH... answers from such a folder on any host.\n";

void Tell(const std::string& message) {
    std::fprintf(stderr, "systally-capture: %s\n", message.c_str());
}

int Explain(const std::string& message) {
    Tell(message);
    return kFailure;
}

int Print(const char* text) {
    return std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0 ? 0 : kFailure;
}

int CaptureInto(const machine::CaptureRequest& request) {
    const machine::CaptureEnding ending = machine::Capture(request);
    for (const std::string& message : ending.messages) {
        Tell(message);
    }
    return ending.failure.empty() ? 0 : Explain(ending.failure);
}

/// An empty text, or what is wrong with a folder's name at this place.
std::string Take(const std::string& folder, machine::CaptureRequest& request) {
    if (folder.empty() || !request.folder.empty()) {
        return "give one folder; systally-capture --help says more";
    }
    request.folder = folder;
    return "";
}

int Run(const std::vector<std::string>& arguments) {
    machine::CaptureRequest request;
    bool optionsHaveEnded = false;
    for (const std::string& argument : arguments) {
        if (optionsHaveEnded || !argument.starts_with('-')) {
            if (const std::string complaint = Take(argument, request); !complaint.empty()) {
                return Explain(complaint);
            }
        } else if (argument == "--help") {
            return Print(kHelp);
        } else if (argument == "--version") {
            return Print("systally-capture " SYSTALLY_VERSION "\n");
        } else if (argument == "--sanitize") {
            request.sanitized = true;
        } else if (argument == "--") {
            optionsHaveEnded = true;
        } else {
            return Explain("unknown option " + argument + "; systally-capture --help lists them");
        }
    }
    if (request.folder.empty()) {
        return Explain("usage: systally-capture FOLDER [--sanitize]");
    }
    return CaptureInto(request);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        return Explain(error.what());  // memory exhausted
    }
}
