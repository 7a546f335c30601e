// SPDX-License-Identifier: MIT
// Goes before Wine's <winnt.h>, which defines a function that clang knows as its own, and
// has unsigned characters where Microsoft's names an import.
#pragma once

#define _InterlockedCompareExchange128 unusedInterlockedCompareExchange128
#define _IMAGE_IMPORT_BY_NAME unusedImportByName
#define IMAGE_IMPORT_BY_NAME unusedImportByNameType
#define PIMAGE_IMPORT_BY_NAME unusedImportByNamePointer
#include_next <winnt.h>
#undef _InterlockedCompareExchange128
#undef _IMAGE_IMPORT_BY_NAME
#undef IMAGE_IMPORT_BY_NAME
#undef PIMAGE_IMPORT_BY_NAME

typedef struct _IMAGE_IMPORT_BY_NAME {
    WORD Hint;
    CHAR Name[1];
} IMAGE_IMPORT_BY_NAME, *PIMAGE_IMPORT_BY_NAME;
