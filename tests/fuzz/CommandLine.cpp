// Any table of switches and any arguments, against the rules of the table on std::string.
// An input is: flags, the switches (mode, required, name) and the arguments as texts.
#include <cctype>
#include <vector>

#include "fuzz/Input.h"
#include "util/CLParams.h"

namespace {

struct Entry {
    std::string name;
    int mode = 0;
    bool required = false;
    bool found = false;
    std::string value;
};

/// The table as its documentation tells it.
class Model {
  public:
    std::vector<Entry> entries;
    bool caseSensitive = false;

    int Parse(const std::vector<std::string>& arguments) {
        for (size_t i = 1; i < arguments.size();) {
            if (const int result = ParseArgument(arguments, i); result != 0) {
                return result;
            }
        }
        for (const Entry& entry : entries) {
            if (entry.required && !entry.found) {
                return 1;
            }
        }
        return 0;
    }

  private:
    std::string Folded(std::string text) const {
        for (char& c : text) {
            c = caseSensitive ? c : static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
        return text;
    }
    bool BeginsWithName(const Entry& entry, const std::string& argument) const {
        return !entry.name.empty() && Folded(argument).starts_with(Folded(entry.name));
    }
    bool MatchesName(const Entry& entry, const std::string& argument) const {
        return entry.mode == CLP_SWITCH ? Folded(argument) == Folded(entry.name)
                                        : (entry.mode == CLP_VALUE || entry.mode == CLP_PATH) &&
                                              BeginsWithName(entry, argument);
    }
    bool IsSwitch(const std::string& argument) const {
        for (const Entry& entry : entries) {
            if (!entry.found && MatchesName(entry, argument)) {
                return true;
            }
        }
        return false;
    }
    int ParseArgument(const std::vector<std::string>& arguments, size_t& i) {
        for (Entry& entry : entries) {
            if (entry.found) {
                continue;
            }
            if (entry.mode < CLP_SWITCH || entry.mode > CLP_PATH) {
                return 2;
            }
            const bool positional = entry.mode == CLP_PATH && entry.name.empty();
            if (positional ? !IsSwitch(arguments[i]) : MatchesName(entry, arguments[i])) {
                entry.found = true;
                Collect(entry, arguments, i);
                return 0;
            }
        }
        return 1;
    }
    void Collect(Entry& entry, const std::vector<std::string>& arguments, size_t& i) const {
        const std::string& argument = arguments[i++];
        if (entry.mode == CLP_SWITCH) {
            return;
        }
        entry.value = argument.substr(std::min(entry.name.size(), argument.size()));
        while (i < arguments.size() && Continues(entry) && !IsSwitch(arguments[i])) {
            entry.value += arguments[i] == " " ? " " : " " + arguments[i];
            ++i;
        }
    }
    static bool Continues(const Entry& entry) {
        return entry.mode == CLP_VALUE ||
               std::count(entry.value.begin(), entry.value.end(), '"') == 1;
    }
};

Model TakeTable(fuzz::Input& input, CCLParams& table) {
    constexpr int kModes = 5;  // one below and one above the known ones
    Model model;
    const uint8_t flags = input.Byte();
    model.caseSensitive = (flags & 1) != 0;
    for (int i = 0; i < flags / 2 % 12; ++i) {
        const uint8_t choice = input.Byte();
        Entry entry;
        // Unknown modes are rare, or nothing else would be seen.
        entry.mode = choice % 64 == 0 ? choice / 64 % kModes : 1 + choice % 3;
        entry.required = choice % 16 == 1;
        entry.name = input.Text();
        table.Add(entry.name.c_str(), static_cast<CLParamModes>(entry.mode), entry.required);
        model.entries.push_back(entry);
    }
    return model;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kMostArguments = 40;
    fuzz::Input input(data, size);
    CCLParams table;
    Model model = TakeTable(input, table);
    std::vector<std::string> arguments = {"program"};
    while (!input.IsEmpty() && arguments.size() < kMostArguments) {
        arguments.push_back(input.Text());
    }
    std::vector<char*> argv;
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);

    const int result =
        table.Parse(static_cast<int>(arguments.size()), argv.data(), model.caseSensitive);
    fuzz::RequireEqual(result, model.Parse(arguments), "the result");
    long characters = 7;  // "program"
    for (size_t i = 0; i < model.entries.size(); ++i) {
        const Entry& entry = model.entries[i];
        CString value("x");
        fuzz::RequireEqual(table.GetValue(static_cast<unsigned>(i + 1), value), entry.found,
                           "whether the switch was given");
        fuzz::RequireEqual(value.GetBuffer(), entry.value, "its value");
        characters +=
            entry.found ? static_cast<long>(1 + entry.name.size() + entry.value.size()) : 0;
    }
    fuzz::RequireEqual(table.GetNumberOfCommandLineCharacters(), characters, "the length");
    return 0;
}
