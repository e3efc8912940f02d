// The files beside this one that stand in every page; CMake makes texts of them.
#pragma once

namespace report {

extern const char kPageStyle[];      // page.css
extern const char kMachineStyle[];   // machine.css
extern const char kFleetStyle[];     // fleet.css
extern const char kFleetControls[];  // fleet-controls.html
extern const char kFleetScript[];    // fleet.js

}  // namespace report
