# SPDX-License-Identifier: MIT
# Other people's libraries that the benchmarks compare with, as far as they are there.

find_package(PkgConfig QUIET)
if(NOT PKG_CONFIG_FOUND)
    return()
endif()
pkg_check_modules(GOBJECT QUIET IMPORTED_TARGET gobject-2.0)

# Not by its own description: that fails where LLVM's unwinder stands in for the one
# that it names.
find_path(GSTREAMER_FOLDER gst/base/gstbasetransform.h PATH_SUFFIXES gstreamer-1.0)
find_library(GSTREAMER_BASE_LIBRARY gstbase-1.0)
find_library(GSTREAMER_LIBRARY gstreamer-1.0)
if(TARGET PkgConfig::GOBJECT AND GSTREAMER_FOLDER AND GSTREAMER_BASE_LIBRARY AND GSTREAMER_LIBRARY)
    add_library(rgb2bayer_libraries INTERFACE)
    target_include_directories(rgb2bayer_libraries SYSTEM INTERFACE ${GSTREAMER_FOLDER})
    target_link_libraries(rgb2bayer_libraries INTERFACE ${GSTREAMER_BASE_LIBRARY} ${GSTREAMER_LIBRARY}
                                                        PkgConfig::GOBJECT)
endif()

pkg_check_modules(ARAVIS QUIET IMPORTED_TARGET aravis-0.8)
if(TARGET PkgConfig::ARAVIS)
    add_library(aravis_libraries INTERFACE)
    target_link_libraries(aravis_libraries INTERFACE PkgConfig::ARAVIS)
endif()
