// The library's files against the standard library, on the same files in the same run.
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/Pair.h"
#include "util/IniFile.h"
#include "util/MyFileIO.h"

namespace {

namespace fs = std::filesystem;

/// Keeps a result alive that nothing else looks at.
volatile size_t g_sink;

void WriteText(const fs::path& file, size_t size) {
    std::ofstream stream(file);
    const std::string line(79, 'x');
    for (size_t written = 0; written < size; written += line.size() + 1) {
        stream << line << '\n';
    }
    stream << std::string(1 << 20, 'y') << '\n';
}

void WriteIni(const fs::path& file, int lines) {
    std::ofstream stream(file);
    for (int i = 0; i < lines; ++i) {
        if (i % 100 == 0) {
            stream << "[section" << i / 100 << "]\n";
        } else {
            stream << "key" << i << " = value " << i << '\n';
        }
    }
}

void ReadByLines(const fs::path& file) {
    CMyFileIO text(CString(file.c_str()));
    text.Open();
    size_t bytes = 0;
    for (CString line; text.ReadString(line);) {
        bytes += line.GetLength();
    }
    g_sink = bytes;
}

void GetLines(const fs::path& file) {
    std::ifstream text(file);
    size_t bytes = 0;
    for (std::string line; std::getline(text, line);) {
        bytes += line.size();
    }
    g_sink = bytes;
}

void LoadAndWrite(const fs::path& file, int times) {
    for (int i = 0; i < times; ++i) {
        CIniFile ini(CString(file.c_str()), true);
        ini.WriteString("section0", "new", i, false, true);
    }
}

/// One pass over lines in memory that looks at each as a lookup must.
bool Passes(const std::vector<std::string>& lines, const std::string& key) {
    for (const std::string& line : lines) {
        const size_t equals = line.find('=');
        if (equals == std::string::npos) {
            continue;
        }
        std::string name = line.substr(0, equals);
        name.erase(name.find_last_not_of(" \t\n") + 1);
        for (char& c : name) {
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
        if (name == key) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> LinesOf(const fs::path& file) {
    std::vector<std::string> lines;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

void ReadByBytes(const fs::path& file) {
    FILE* stream = std::fopen(file.c_str(), "rb");
    size_t sum = 0;
    for (int byte = std::getc(stream); byte != EOF; byte = std::getc(stream)) {
        sum += static_cast<size_t>(byte);
    }
    std::fclose(stream);
    g_sink = sum;
}

void ReadVersion(const fs::path& file) {
    FileInfo info;
    g_sink = CMyFileIO::GetFileInfo(CString(file.c_str()), info) ? 1 : 0;
}

}  // namespace

int main() {
    const fs::path folder = fs::temp_directory_path() / "systally-bench";
    fs::create_directories(folder);
    bench::PrintHeading();
    bool met = true;

    const fs::path text = folder / "text";
    WriteText(text, 10 << 20);
    met = bench::Pair(
              "10 MB and one line of 1 MB by lines, against std::getline", 3,
              [&] { ReadByLines(text); }, [&] { GetLines(text); }) &&
          met;

    const fs::path large = folder / "large.ini";
    const fs::path small = folder / "small.ini";
    WriteIni(large, 100'000);
    WriteIni(small, 10'000);
    met = bench::Pair(
              "INI file of 100,000 lines loaded, written, against 10 of 10,000", 1.3,
              [&] { LoadAndWrite(large, 1); }, [&] { LoadAndWrite(small, 10); }) &&
          met;

    const std::vector<std::string> lines = LinesOf(large);
    CIniFile ini(CString(large.c_str()), true);
    met = bench::Pair(
              "last entry of 100,000 lines, against a pass over the lines", 1,
              [&] { g_sink = ini.ReadString("section999", "key99999").GetLength(); },
              [&] { g_sink = Passes(lines, "key99999") ? 1 : 0; }) &&
          met;

    const fs::path binary = folder / "binary";
    { std::ofstream(binary) << std::string(64 << 20, 'V'); }
    met = bench::Pair(
              "version strings searched in 64 MB, against getc", 5, [&] { ReadVersion(binary); },
              [&] { ReadByBytes(binary); }) &&
          met;

    fs::remove_all(folder);
    return met ? 0 : 1;
}
