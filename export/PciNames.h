// The names of PCI vendors, devices and classes, from the list that lspci uses.
// Without that list every name is empty, and callers show the numbers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "export/Report.h"

namespace report {

class PciNames {
  public:
    /// Reads the list in `path`; an empty path means the one of the package hwdata or pci.ids.
    /// A list that cannot be read has no names.
    explicit PciNames(const std::string& path = "");

    bool IsEmpty() const { return m_vendors.empty(); }

    /// Why the list in `path` gives no names, with the path; empty when it does, or holds nothing.
    const std::string& Failure() const { return m_failure; }

    // Each is empty when the list does not know the name.
    std::string Vendor(uint32_t vendor) const;
    std::string Device(uint32_t vendor, uint32_t device) const;
    /// The product that the subsystem's numbers stand for.
    std::string Subsystem(const PciFunction& function) const;
    /// The sub-class's name, or that of the base class when the sub-class has none.
    std::string Class(uint32_t classCode) const;
    std::string BaseClass(uint32_t classCode) const;

  private:
    using Names = std::unordered_map<uint64_t, std::string_view>;

    void Parse();
    void ParseVendorLine(std::string_view line);
    void ParseClassLine(std::string_view line);
    static std::string Find(const Names& names, uint64_t key);

    std::string m_list;
    std::string m_failure;
    Names m_vendors;
    Names m_devices;
    Names m_subsystems;
    Names m_baseClasses;
    Names m_classes;
    uint64_t m_current[2] = {};  ///< the numbers that the next indented lines belong to
};

}  // namespace report
