// The scratch string in which CString builds the strings that it returns by value.
// Not for use outside the class: it makes those operations non-reentrant.
#pragma once

#include "util/CString.h"

extern CString g_sBuffer;
