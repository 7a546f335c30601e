// SPDX-License-Identifier: MIT
// The library's value types are copied when made, and never changed afterwards.
// Error: deleted
#include "capture/library/items.h"

#ifdef MUST_NOT_COMPILE
void assign(DShowLib::VideoFormatItem& left, const DShowLib::VideoFormatItem& right) {
    left = right;
}
#endif
