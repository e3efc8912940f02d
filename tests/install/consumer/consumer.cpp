// A program of somebody else's that uses the installed library.
#include <util/CString.h>
#include <util/IniFile.h>

#include <cstdio>

int main(int argc, char** argv) {
    CIniFile ini(CString(argc > 1 ? argv[1] : ""), true);
    std::printf("%s\n", ini.ReadString("greeting", "text", "none").Upper().c_str());
    return 0;
}
