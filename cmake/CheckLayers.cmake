# SPDX-License-Identifier: GPL-3.0-or-later
# Fails when a source of util/ includes a header of app/, log/ or nmea/.
file(GLOB sources ${SOURCE_DIR}/util/*.h ${SOURCE_DIR}/util/*.cpp)
set(offences "")
foreach(source ${sources})
    file(STRINGS ${source} lines REGEX "^[ \t]*#[ \t]*include[ \t]*[\"<](app|log|nmea)/")
    foreach(line ${lines})
        file(RELATIVE_PATH name ${SOURCE_DIR} ${source})
        string(APPEND offences "\n  ${name}: ${line}")
    endforeach()
endforeach()
if(offences)
    message(FATAL_ERROR "util/ is the lowest layer and may include nothing of app, log or nmea:${offences}")
endif()
