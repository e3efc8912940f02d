// Output of strings and paths to streams.
// Apart from the classes, so that a program without streams does not link their start-up code.
#include <ostream>

#include "util/CDir.h"
#include "util/CString.h"

std::ostream& operator<<(std::ostream& stream, const CString& text) {
    return stream << text.GetBuffer();
}

std::ostream& operator<<(std::ostream& stream, CDir path) {
    return stream << path.ToString();
}
