// INI files loaded, asked, edited and written back, against a model on a vector of lines.
// An input is a file, its size in front (2 bytes), followed by the steps taken on it.
#include "util/IniFile.h"

#include "fuzz/IniModel.h"
#include "fuzz/Input.h"
#include "fuzz/MemoryFile.h"

namespace {

using fuzz::Input;
using fuzz::RequireEqual;

void Ask(CIniFile& real, const fuzz::IniModel& model, Input& input) {
    const std::string section = input.Text();
    const std::string key = input.Text();
    const std::string def = input.Text();
    RequireEqual(real.ReadString(section.c_str(), key.c_str(), def.c_str()).GetBuffer(),
                 model.Read(section, key, def), "ReadString");
    RequireEqual(real.ReadInteger(section.c_str(), key.c_str(), -7),
                 static_cast<int>(std::strtol(model.Read(section, key, "-7").c_str(), nullptr, 10)),
                 "ReadInteger");
    CString line;
    std::string expected;
    RequireEqual(real.FindItem(section.c_str(), key.c_str(), line),
                 model.Find(section, key, expected), "FindItem");
    RequireEqual(line.GetBuffer(), expected, "the line that FindItem saw");
}

void Edit(CIniFile& real, fuzz::IniModel& model, Input& input) {
    const uint8_t choice = input.Byte();
    const bool flag = (choice & 2) != 0;
    const std::string section = input.Text();
    const std::string key = input.Text();
    const std::string value = input.Text();
    if ((choice & 1) == 0) {
        RequireEqual(
            real.WriteString(section.c_str(), key.c_str(), value.c_str(), flag, (choice & 4) != 0),
            model.Write(section, key, value, flag), "WriteString");
    } else {
        real.RemoveString(section.c_str(), key.c_str(), value.c_str(), flag, (choice & 4) != 0);
        model.Remove(section, key, value, flag);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr int kMostSteps = 60;
    static const fuzz::MemoryFile source;
    static const fuzz::MemoryFile target;
    Input input(data, size);
    fuzz::IniModel model;
    model.spaced = (input.Byte() & 1) != 0;
    const std::string file = input.Take(input.Word());
    source.Write(file);
    {
        CIniFile real(CString(source.Name().c_str()), model.spaced);
        model.Load(file);
        for (int step = 0; step < kMostSteps && !input.IsEmpty(); ++step) {
            if ((input.Byte() & 1) == 0) {
                Edit(real, model, input);
            } else {
                Ask(real, model, input);
            }
            fuzz::Require(real.WriteIniFile(CString(target.Name().c_str())), "writing back");
            RequireEqual(target.Read(), model.File(), "the lines after a step");
        }
    }
    fuzz::IniModel reloaded;
    CIniFile again(CString(target.Name().c_str()), false);
    RequireEqual(again.ReadIniFile(CString(source.Name().c_str())), reloaded.Load(source.Read()),
                 "ReadIniFile");
    return 0;
}
