# SPDX-License-Identifier: GPL-3.0-or-later
# CLAP::headers: the C interface of CLAP, from a package of its own, or else from the copy that comes with
# Debian's package dpf-source.
find_path(CLAP_INCLUDE_DIR clap/clap.h)
if(NOT CLAP_INCLUDE_DIR)
    find_path(CLAP_INCLUDE_DIR clap/plugin-factory.h PATHS /usr/share/dpf/distrho/src)
endif()
mark_as_advanced(CLAP_INCLUDE_DIR)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CLAP REQUIRED_VARS CLAP_INCLUDE_DIR)
if(CLAP_FOUND AND NOT TARGET CLAP::headers)
    add_library(CLAP::headers INTERFACE IMPORTED GLOBAL)
    target_include_directories(CLAP::headers SYSTEM INTERFACE "${CLAP_INCLUDE_DIR}")
endif()
