// SPDX-License-Identifier: MIT
// A setting whose kind of interface has no row binds to nothing.
// Error: in_exactly_once|exactly once|static assertion failed
#include "properties/feature_binding.h"

struct IVCDUnknownProperty : DShowLib::IVCDPropertyInterface {};

DShowLib::smart_com<DShowLib::IVCDRangeProperty> known(
    const DShowLib::smart_com<DShowLib::IVCDPropertyItem>& item) {
    return bindInterface<DShowLib::IVCDRangeProperty>(item, DShowLib::VCDElement_Value);
}

#ifdef MUST_NOT_COMPILE
DShowLib::smart_com<IVCDUnknownProperty> unknown(
    const DShowLib::smart_com<DShowLib::IVCDPropertyItem>& item) {
    return bindInterface<IVCDUnknownProperty>(item, DShowLib::VCDElement_Value);
}
#endif
