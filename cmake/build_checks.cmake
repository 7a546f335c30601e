# SPDX-License-Identifier: MIT
# Checks of the sources and of what was built, as tests.
