#!/usr/bin/python3
"""fleet.py COUNT FOLDER: writes the reports of a fleet, one file per machine.

The machines are of six kinds, differ in serial number, memory and place, and are the same in every
run.
"""
import pathlib
import sys

# Name, machine type, model, product, BIOS, family, speed, memory in MB, network functions
KINDS = [
    ("blade", "7712", "00X", "Arlo 2 ", "1.07", 179, 2933, 11280, 4),
    ("blade", "7711", "42B", "Arlo 1 ", "1.02", 179, 2400, 8192, 2),
    ("web", "7709", "A1C", "Birch 4", "2.15", 214, 2660, 16384, 2),
    ("db", "7730", "9Z2", "Cedar 1 X", "0.98", 221, 2933, 262144, 8),
    ("node", "7731", "00R", "Dune R", "3.01", 216, 3066, 65536, 1),
    ("edge", "XXXX", "", "Workbench", "", 1, 0, 4096, 1),
]

# Class, revision, header type, vendor, device, subsystem
BASE = [
    (0, 0, 0, "060000", "13", "00", "8086", "3406", "51E5", "03BD"),
    (0, 1, 0, "060400", "13", "01", "8086", "3408", "0000", "0000"),
    (0, 29, 0, "0C0300", "00", "80", "8086", "3A34", "51E5", "03C1"),
    (0, 29, 7, "0C0320", "00", "00", "8086", "3A3A", "51E5", "03C2"),
    (0, 31, 0, "060100", "00", "80", "8086", "3A18", "51E5", "03BE"),
    (0, 31, 2, "01018F", "00", "00", "8086", "3A20", "51E5", "03BF"),
    (1, 0, 0, "010000", "08", "00", "1000", "0058", "51E5", "0363"),
    (6, 0, 0, "030000", "0A", "00", "102B", "0530", "51E5", "0369"),
]
KEYS = ["Bus_Number", "Device_Number", "Function_Number", "Class_Code", "Revision", "Header_Type",
        "Vendor_ID", "Device_ID", "Subvendor_ID", "Subdevice_ID"]


def pci(network):
    functions = BASE + [(16, port // 8, port % 8, "020000", "20", "80", "14E4", "1639", "51E5",
                         "03A9") for port in range(network)]
    yield "[PCI]"
    yield f"Total_Number_Of_Devices = {len(functions)}"
    for index, function in enumerate(functions):
        for key, value in zip(KEYS, function):
            yield f"{key}.{index} = {value}"


def report(number):
    _, kind, model, product, bios, family, speed, memory, network = KINDS[number * 7 % len(KINDS)]
    blade = product.startswith("Arlo")
    active = number % 2 + 1
    yield "[System]"
    yield f"Machine_Type = {kind}"
    yield f"Model_Number = {model}"
    yield f"Serial_Number = QS{number * 7919 % 1000003:07d}"
    yield f"Product_Name = {product}"
    yield f"BIOS_Version = {bios}"
    yield "BIOS_Build_Level = AB1234C"
    yield "BIOS_Date = 03/18/2010"
    yield "System_Manufacturer = QEV"
    yield "BIOS_Language = US"
    yield f"Number_Of_Enclosures = {2 if blade else 1}"
    yield from ["Enclosure_Type.0 = 1C", "Enclosure_Type.1 = 1D"] if blade else ["Enclosure_Type.0 = 17"]
    yield "Processor_X64 = TRUE"
    yield "Processor_Slots = 2"
    yield f"Active_Processors = {active}"
    for processor in range(active):
        yield f"Processor_Family.{processor} = {family}"
        yield f"Processor_Speed_MHz.{processor} = {speed}"
    yield f"Total_Enabled_Memory_Mb = {memory * (number % 3 + 1)}"
    yield "ROM_Diagnostics_Build_Level = XYZ10AUS"
    yield f"System_UUID = 5A0E2C91771240{number:018X}"
    yield f"Blade_Slot = {number % 14 + 1:02d}" if blade else "Blade_Slot = "
    yield "Blade_Chassis_UUID = 9F3C0D5E6A7B41C2B8D0E1F203142536" if blade else "Blade_Chassis_UUID = "
    yield ""
    yield from pci(network)


def name(number):
    return f"{KINDS[number * 7 % len(KINDS)][0]}{number:04d}"


def write(count, folder):
    """Returns the files, in the order of their machines' numbers."""
    files = []
    for number in range(1, count + 1):
        files.append(str(pathlib.Path(folder) / f"{name(number)}.ini"))
        pathlib.Path(files[-1]).write_text("\n".join(report(number)) + "\n", encoding="utf-8")
    return files


if __name__ == "__main__":
    pathlib.Path(sys.argv[2]).mkdir(parents=True, exist_ok=True)
    write(int(sys.argv[1]), sys.argv[2])
