// What machines are called.
#include "export/MachineName.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string_view>

#include "export/Utf8.h"

namespace report {

namespace {

namespace fs = std::filesystem;

using Paths = std::set<fs::path>;
using Names = std::map<fs::path, std::string>;

// Others may be a part of the host's name: web1.example.org.
constexpr std::string_view kSuffixes[] = {".ini", ".properties", ".report", ".txt"};

std::string WithoutSuffix(const std::string& name) {
    for (const std::string_view suffix : kSuffixes) {
        if (name.size() > suffix.size() && name.ends_with(suffix)) {
            return name.substr(0, name.size() - suffix.size());
        }
    }
    return name;
}

/// Two spellings of one path are one.
fs::path Plain(const std::string& input) {
    return fs::path(input).lexically_normal();
}

/// The folder that all of the paths begin with.
fs::path CommonFolder(const Paths& paths) {
    fs::path common = paths.begin()->parent_path();
    for (const fs::path& path : paths) {
        const auto end =
            std::mismatch(common.begin(), common.end(), path.begin(), path.end()).first;
        fs::path shared;
        std::for_each(common.begin(), end, [&](const fs::path& part) { shared /= part; });
        common = shared;
    }
    return common;
}

/// Tells files apart whose names alone do not: by their folders, and by their suffixes where these
/// are all that differs.
void AddNames(const Paths& paths, Names& names) {
    const fs::path common = CommonFolder(paths);
    const size_t shared = common.empty() ? 0 : common.string().size() + (common == "/" ? 0 : 1);
    std::set<std::string> different;
    for (const fs::path& path : paths) {
        different.insert(names[path] = WithoutSuffix(path.string().substr(shared)));
    }
    if (different.size() < paths.size()) {
        for (const fs::path& path : paths) {
            names[path] = path.string().substr(shared);
        }
    }
}

}  // namespace

MachineNames::MachineNames(const std::vector<std::string>& inputs) {
    std::map<std::string, Paths> byName;
    for (const std::string& input : inputs) {
        byName[WithoutSuffix(Plain(input).filename().string())].insert(Plain(input));
    }
    Names names;
    for (const auto& [name, paths] : byName) {
        AddNames(paths, names);
    }
    for (const std::string& input : inputs) {
        m_names.push_back(input == "-" ? "" : ToUtf8(names[Plain(input)]));
    }
}

std::string MachineNames::Of(size_t input, size_t place) const {
    const std::string& name = m_names[input];
    return place == 1 && !name.empty() ? name : name + "#" + std::to_string(place);
}

}  // namespace report
