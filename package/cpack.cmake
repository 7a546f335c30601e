# SPDX-License-Identifier: MIT
# What scripts/package.sh does not tell cpack itself.
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME velmora)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Velmora camera adapter")
set(CPACK_PACKAGE_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION_SUMMARY}")
set(CPACK_TOPLEVEL_TAG win64)
set(CPACK_SYSTEM_NAME win64)
