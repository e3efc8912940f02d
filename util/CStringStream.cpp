// CString: output to a stream.
// Apart from the rest, so that a program without streams does not link their start-up code.
#include <ostream>

#include "util/CString.h"

std::ostream& operator<<(std::ostream& stream, const CString& text) {
    return stream << text.GetBuffer();
}
