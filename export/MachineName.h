// What machines are called: reports carry no host name, so their files give it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace report {

class MachineNames {
  public:
    /// `inputs` are all files of a run, "-" being standard input.
    explicit MachineNames(const std::vector<std::string>& inputs);

    /// The name of the report in that place, counted from 1, of an input: "web1" for the first one
    /// in reports/web1.ini, "all#2" for the second one in all.ini, "#2" for the second one on
    /// standard input. Files of one name have as much of their folders before it as tells them
    /// apart: "east/web1" and "west/web1".
    std::string Of(size_t input, size_t place) const;

  private:
    std::vector<std::string> m_names;  ///< of the inputs; that of standard input is empty
};

}  // namespace report
