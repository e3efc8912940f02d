// What all outputs have in common: they take one report after the other and give text.
// Writes nothing itself; the program decides where the text goes.
#pragma once

#include <memory>
#include <string>

#include "export/Report.h"

namespace report {

class Shape {
  public:
    Shape() = default;
    Shape(const Shape&) = delete;
    Shape& operator=(const Shape&) = delete;
    virtual ~Shape() = default;

    /// Whether more than one report fits in.
    virtual bool TakesSeveral() const { return true; }

    /// Takes a report and appends to `out` what can be said already. Returns an empty text, or why
    /// this report does not fit in.
    [[nodiscard]] virtual std::string Add(const Report& report, std::string& out) = 0;

    /// Appends the rest.
    virtual void Finish(std::string& out) = 0;
};

}  // namespace report
