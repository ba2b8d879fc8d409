# SPDX-License-Identifier: GPL-3.0-or-later
# Runs cmake/CheckLayers.cmake on the real folders, which must pass, and on copies of them
# with one include planted in a real source, which must fail and name that source.
set(check ${SOURCE_DIR}/cmake/CheckLayers.cmake)
set(failures "")

function(run_check tree result_var output_var)
    execute_process(COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${tree} -P ${check}
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    set(${result_var} ${result} PARENT_SCOPE)
    set(${output_var} "${output}" PARENT_SCOPE)
endfunction()

run_check(${SOURCE_DIR} result output)
if(NOT result EQUAL 0)
    string(APPEND failures "\nthe real folders are refused:\n${output}")
endif()

# layer, a source of it, the include planted there, and whether the check must refuse it.
set(cases
    "util|util/Util.cpp|app/BackEnd.h|refused"
    "util|util/Clock.h|nmea/NmeaSourceType.h|refused"
    "util|util/SeqLock.cpp|log/DataSource.h|refused"
    "nmea|nmea/NmeaReceiver.cpp|app/BackEnd.h|refused"
    "nmea|nmea/NmeaItem.h|log/LogHost.h|refused"
    "log|log/DataSource.cpp|app/BackEnd.h|refused"
    "log|log/Barogram.h|nmea/NmeaSourceType.h|refused"
    "nmea|nmea/NmeaSource.cpp|util/Clock.h|passed"
    "log|log/CsvExport.cpp|util/Clock.h|passed")
foreach(case ${cases})
    string(REPLACE "|" ";" fields "${case}")
    list(GET fields 0 layer)
    list(GET fields 1 source)
    list(GET fields 2 header)
    list(GET fields 3 expected)
    file(REMOVE_RECURSE ${WORK_DIR})
    foreach(folder util nmea log)
        file(COPY ${SOURCE_DIR}/${folder} DESTINATION ${WORK_DIR})
    endforeach()
    file(APPEND ${WORK_DIR}/${source} "#include \"${header}\"\n")
    run_check(${WORK_DIR} result output)
    if(expected STREQUAL "refused")
        if(result EQUAL 0)
            string(APPEND failures "\n${source} including ${header} passed")
        elseif(NOT output MATCHES "${layer}/ may include nothing of"
               OR NOT output MATCHES "${source}: #include \"${header}\"")
            string(APPEND failures "\n${source} including ${header} refused without naming it:\n${output}")
        endif()
    elseif(NOT result EQUAL 0)
        string(APPEND failures "\n${source} including ${header} refused:\n${output}")
    endif()
endforeach()
file(REMOVE_RECURSE ${WORK_DIR})

if(failures)
    message(FATAL_ERROR "The layer check is wrong:${failures}")
endif()
