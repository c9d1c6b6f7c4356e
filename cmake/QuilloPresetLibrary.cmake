# SPDX-License-Identifier: GPL-3.0-or-later
# The preset library, read once for all that lists presets: `quillo_library` is the list of their names, in
# the order of presets/library.txt; for each NAME, `quillo_preset_task_NAME`, `quillo_preset_sentence_NAME`
# and `quillo_preset_document_NAME`, the bytes of its file.
set(quillo_library_index "${PROJECT_SOURCE_DIR}/presets/library.txt")
file(STRINGS "${quillo_library_index}" lines REGEX "^[^#]")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${quillo_library_index}")
set(quillo_library)
foreach(line IN LISTS lines)
    if(NOT line MATCHES "^(.+) \\| ([a-z0-9-]+) \\| (.+)$")
        message(FATAL_ERROR "presets/library.txt: not a task, a name and a sentence: ${line}")
    endif()
    set(name "${CMAKE_MATCH_2}")
    list(APPEND quillo_library "${name}")
    set(quillo_preset_task_${name} "${CMAKE_MATCH_1}")
    set(quillo_preset_sentence_${name} "${CMAKE_MATCH_3}")
    set(file "${PROJECT_SOURCE_DIR}/presets/${name}.json")
    file(READ "${file}" quillo_preset_document_${name})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
endforeach()
