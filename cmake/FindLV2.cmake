# SPDX-License-Identifier: GPL-3.0-or-later
# LV2::headers: the C interfaces of LV2.
find_path(LV2_INCLUDE_DIR lv2/core/lv2.h)
mark_as_advanced(LV2_INCLUDE_DIR)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LV2 REQUIRED_VARS LV2_INCLUDE_DIR)
if(LV2_FOUND AND NOT TARGET LV2::headers)
    add_library(LV2::headers INTERFACE IMPORTED GLOBAL)
    target_include_directories(LV2::headers SYSTEM INTERFACE "${LV2_INCLUDE_DIR}")
endif()
