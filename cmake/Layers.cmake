# SPDX-License-Identifier: GPL-3.0-or-later
# The build keeps each layer to what it stands on: util may include and use nothing of app,
# log or nmea, and nmea and log nothing but util (and neither the other).

# The folders are scanned for an include of a folder they may not stand on when the build
# is configured, and again by every build, since an edit alone does not configure anew.
function(brinholt_check_layers)
    set(SOURCE_DIR ${CMAKE_SOURCE_DIR})
    include(${CMAKE_SOURCE_DIR}/cmake/CheckLayers.cmake)
endfunction()
brinholt_check_layers()
add_custom_target(brinholt_layers ALL
    COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${CMAKE_SOURCE_DIR} -P ${CMAKE_SOURCE_DIR}/cmake/CheckLayers.cmake
    COMMENT "Checking that util, nmea and log include nothing above them"
    VERBATIM)

# And each lower folder's sources, linked alone as a shared object that may leave nothing
# undefined against only the layers below it, fail to link the moment they call into a
# folder above or beside them. Not in a sanitizer build, whose runtime is resolved only in
# the final executable.
function(brinholt_layer_alone name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} SHARED ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE ${ARG_LINKS})
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
    set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/layers)
endfunction()

if(NOT BRINHOLT_SANITIZE)
    brinholt_layer_alone(brinholt_util_alone SOURCES ${BRINHOLT_UTIL_SOURCES} LINKS Qt5::Core)
    brinholt_layer_alone(brinholt_nmea_alone SOURCES ${BRINHOLT_NMEA_SOURCES}
        LINKS brinholt_util_alone Qt5::Core Qt5::Network Qt5::SerialPort)
    brinholt_layer_alone(brinholt_log_alone SOURCES ${BRINHOLT_LOG_SOURCES}
        LINKS brinholt_util_alone Qt5::Core Qt5::Gui Qt5::Charts Qt5::Sql)
endif()
