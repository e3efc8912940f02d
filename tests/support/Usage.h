// The usage text, typed by hand.
// Shared by the tests of the function, of the program and on real firmware.
#pragma once

namespace support {

inline constexpr char kUsage[] =
    "QEV (R) SYSTALLY version 1.3.01\n"
    "Command Line Systally Utility\n"
    "systally [ /s | /i | /p | /m:machType ]\n"
    "systally [ /vid:vid | /did:did | /svid:svid | /bn:busN | /dn:devN | /add:n ]\n"
    "System Information Parameters:\n"
    "/s - Causes program to return zero if this is an Corvina server.\n"
    "/i - Dumps all known information about system hardware to\n"
    "     the screen in an \"INI\" format.\n"
    "/p - Dumps all known information about system hardware to\n"
    "     the screen in a \"Properties File\" format.\n"
    "/m:machType - Compares the machine type of the current system to the one\n"
    "     denoted by \"machType\".  Returns 1 if \"machType\" matches the machine\n"
    "     type of the current system.  Returns 0 if there is not a match.\n"
    "PCI Information Parameters:\n"
    "All of the following cause the program to return the number of matching PCI\n"
    "devices found. These parameters may be used in combination with each other.\n"
    "/vid:vid   - Searches for PCI devices with the denoted vendor ID.\n"
    "/did:did   - Searches for PCI devices with the denoted device ID.\n"
    "/svid:svid - Searches for PCI devices with the denoted sub-vendor ID.\n"
    "/sdid:sdid - Searches for PCI devices with the denoted sub-device ID.\n"
    "/bn:busN   - Causes the PCI device search to start at bus number busN.\n"
    "/dn:devN   - Causes the PCI device search to start at device number devN.\n"
    "/add:num   - Adds the integer num to the return value before exiting.\n";

}  // namespace support
