# SPDX-License-Identifier: GPL-3.0-or-later
# The build keeps the floor a floor: util may include and use nothing of app, log or nmea.

# Every build scans util's sources for an include from a folder above it.
add_custom_target(brinholt_layers ALL
    COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${CMAKE_SOURCE_DIR} -P ${CMAKE_SOURCE_DIR}/cmake/CheckLayers.cmake
    COMMENT "Checking that util includes nothing above it"
    VERBATIM)

# And util's sources, linked alone as a shared object that may leave nothing undefined,
# fail to link the moment they call into a folder above. Not in a sanitizer build, whose
# runtime is resolved only in the final executable.
if(NOT BRINHOLT_SANITIZE)
    add_library(brinholt_util_alone SHARED ${BRINHOLT_UTIL_SOURCES})
    target_include_directories(brinholt_util_alone PRIVATE ${CMAKE_SOURCE_DIR})
    target_link_libraries(brinholt_util_alone PRIVATE Qt5::Core)
    target_link_options(brinholt_util_alone PRIVATE -Wl,--no-undefined)
    set_target_properties(brinholt_util_alone PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/layers)
endif()
