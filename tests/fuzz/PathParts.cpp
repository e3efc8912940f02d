// Paths taken apart and joined, against the same rules on std::string.
// The text before the first newline is the path, the rest a second one.
#include "fuzz/Input.h"
#include "util/CDir.h"

namespace {

struct Parts {
    std::string drive;
    std::string dir;
    std::string name;
    std::string ext;
};

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t\n");
    return first == std::string::npos
               ? ""
               : text.substr(first, text.find_last_not_of(" \t\n") - first + 1);
}

/// Cuts the first `length` characters off and returns them.
std::string Cut(std::string& text, size_t length) {
    const std::string head = text.substr(0, length);
    text.erase(0, length);
    return head;
}

Parts Split(const std::string& path) {
    std::string rest = Trimmed(path);
    size_t end = rest.find(':');
    if (end == std::string::npos && rest.starts_with("\\\\")) {
        end = rest.find('\\', 4);
    }
    Parts parts;
    // npos + 1 is 0: without an end there is no drive; the same below.
    parts.drive = Cut(rest, end + 1);
    parts.dir = Cut(rest, rest.rfind('/') + 1);
    const size_t dot = rest.rfind('.');
    const bool hasExtension = dot != std::string::npos && dot + 4 >= rest.size();
    parts.name = Cut(rest, hasExtension ? dot : rest.size());
    parts.ext = rest;
    return parts;
}

/// Where the last component begins to be separated: the last "/", or else the first ":".
size_t Separator(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash != std::string::npos ? slash : path.find(':');
}

std::string PathBefore(const std::string& path) {
    const size_t separator = Separator(path);
    return separator == std::string::npos ? "" : path.substr(0, separator);
}

std::string Joined(std::string path, const std::string& part) {
    if (path.empty() || part.empty()) {
        return path + part;
    }
    if (path.back() == '/' && part.front() == '/') {
        path.pop_back();
    } else if (path.back() != '/' && part.front() != '/') {
        path += '/';
    }
    return path + part;
}

long Depth(const std::string& dir) {
    const auto slashes = std::count(dir.begin(), dir.end(), '/');
    return slashes == 0 ? 0 : slashes + 1;
}

std::string Text(const CString& text) {
    return text.GetBuffer();
}

void CheckParts(const CDir& path, const std::string& text) {
    const Parts expected = Split(text);
    CString drive("x");
    CString dir("x");
    CString name("x");
    CString ext("x");
    fuzz::Require(path.SplitPath(drive, dir, name, ext), "splitting succeeds");
    fuzz::RequireEqual(Text(drive), expected.drive, "SplitPath, drive");
    fuzz::RequireEqual(Text(dir), expected.dir, "SplitPath, directory");
    fuzz::RequireEqual(Text(name), expected.name, "SplitPath, name");
    fuzz::RequireEqual(Text(ext), expected.ext, "SplitPath, extension");
    fuzz::RequireEqual(Text(path.GetDrive()), expected.drive, "GetDrive");
    fuzz::RequireEqual(Text(path.GetDirectory()), expected.dir, "GetDirectory");
    fuzz::RequireEqual(Text(path.GetFileName()), expected.name, "GetFileName");
    fuzz::RequireEqual(Text(path.GetExtension()), expected.ext, "GetExtension");
    fuzz::RequireEqual(Text(path.GetPath()), PathBefore(text), "GetPath");
    fuzz::RequireEqual(Text(path.GetName()), text.substr(Separator(text) + 1), "GetName");
    fuzz::RequireEqual(static_cast<long>(path.GetDepth()), Depth(expected.dir), "GetDepth");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string whole = fuzz::Input(data, size).Rest();
    const std::string bytes = whole.substr(0, whole.find('\0'));
    const size_t end = bytes.find('\n');
    const std::string first = bytes.substr(0, end);
    const std::string second = end == std::string::npos ? "" : bytes.substr(end + 1);

    CDir path(CString(first.c_str()));
    CheckParts(path, first);
    CheckParts(CDir(CString(bytes.c_str())), bytes);
    fuzz::RequireEqual(Text(path.AddPath(CString(second.c_str()))), Joined(first, second),
                       "AddPath");
    const Parts parts = Split(first);
    fuzz::RequireEqual(Text(path.MakePath(parts.drive.c_str(), parts.dir.c_str(),
                                          parts.name.c_str(), second.c_str())),
                       Joined(parts.dir, parts.name) + second, "MakePath");
    return 0;
}
