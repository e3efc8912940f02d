// A table of command-line switches: register them, parse argv once, ask what was given.
// Knows nothing of what the switches mean, and never prints.
#pragma once

#include <cstdint>

#include "util/CDir.h"
#include "util/CString.h"

/// How an argument matches an entry of the table.
enum CLParamModes : int32_t {
    CLP_SWITCH = 1,  ///< the argument equals the name
    CLP_VALUE = 2,   ///< the argument begins with the name; the rest is the value
    CLP_PATH = 3     ///< the same for a path; with an empty name, an argument that is no switch
};

/// The table owns its entries. Entries are tried in the order of their registration; the first
/// that matches takes the argument, and an entry matches once at most.
class CCLParams {
  public:
    /// One registered switch.
    struct CLParamDef {
        CLParamDef* pPrev = nullptr;  ///< in the first entry the last one, so that Add is O(1)
        CLParamDef* pNext = nullptr;  ///< null in the last entry
        CString sName;
        CString sValue;
        bool bFound = false;
        bool bRequired = false;
        CLParamModes eMode = static_cast<CLParamModes>(0);
    };

    CCLParams();
    CCLParams(const CCLParams&) = delete;
    CCLParams& operator=(const CCLParams&) = delete;
    ~CCLParams();

    /// Registers a switch; false when memory for it cannot be had.
    bool Add(CString name, CLParamModes mode, bool required);

    /// Matches argv[1] to argv[argc - 1] against the table and stores the values found.
    /// Returns 0 on success; 1 when an argument matched nothing or a required switch is missing;
    /// 2 when the table holds an entry of unknown mode. To be called once.
    int Parse(int argc, char** argv, bool caseSensitive);

    /// Whether the switch was given. The name is compared with regard to case.
    bool GetValue(CString name);
    /// The same; `value` receives its value, empty when there is no such entry.
    bool GetValue(CString name, CString& value);
    /// The same by registration index, which counts from 1.
    bool GetValue(unsigned index, CString& value);
    // The same as a path, which stays as it is when the switch was not given.
    bool GetValue(CString name, CDir& value);
    bool GetValue(unsigned index, CDir& value);
    /// About how long the command line is that Parse found: the program's name without directory
    /// and extension, and for each switch a blank, its text and its value.
    int GetNumberOfCommandLineCharacters() const;

    /// Whether the argument would match an entry that has not been found yet.
    bool IsSwitch(CString arg, bool caseSensitive);

    /// Collects the value that starts in argv[i] behind `name` and takes in every following
    /// argument that is no switch, each preceded by a blank. Returns the new i.
    int GetParam(int& i, int argc, char** argv, CString name, CString& value);
    /// Collects the path that starts in argv[i] behind `name`; only one that holds a single
    /// double quote goes on over the next arguments, up to the second quote. Returns the new i.
    int GetPathParam(int& i, int argc, char** argv, CString name, CString& value);

    /// Appends an empty entry and returns it; null when memory for it cannot be had.
    CLParamDef* MakeNewNode();
    void DeleteNodes();

  private:
    CLParamDef* Append(CLParamDef* node);
    int ParseArgument(int& i, int argc, char** argv);
    bool MatchesArgument(const CLParamDef& node, const char* arg);
    void TakeValue(CLParamDef& node, int& i, int argc, char** argv);
    const CLParamDef* FindNode(const CString& name) const;
    const CLParamDef* FindNode(unsigned index) const;
    bool AllRequiredFound() const;
    int32_t CountFoundCharacters() const;

    CLParamDef* m_pHead = nullptr;
    bool m_bCaseSensitive = false;
    int32_t m_nCmdLineChars = 0;
};
