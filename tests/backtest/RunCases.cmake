# Runs the cases of Cases.cmake. Paths in the arguments are relative to SOURCE (so
# messages naming them are the same on every machine); @OUT@ stands for the folder
# of the files a case writes, @PLUGIN@ for a strategy plugin built with the tests.
cmake_minimum_required(VERSION 3.20)
foreach(var BACKTEST SOURCE OUT)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "RunCases.cmake needs -D${var}=...")
  endif()
endforeach()
file(REMOVE_RECURSE ${OUT})
file(MAKE_DIRECTORY ${OUT})
set(failures "")

# Compares `actual` with golden/`name`, or with UPDATE copies it there.
function(compare_golden case actual name)
  set(golden ${SOURCE}/golden/${name})
  if(UPDATE)
    file(COPY_FILE ${actual} ${golden})
    return()
  endif()
  execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${actual} ${golden}
                  RESULT_VARIABLE differs)
  if(differs)
    file(READ ${actual} text)
    message("[${case}] ${name} differs from the golden file; it was:\n${text}")
    set(failures "${failures} ${case}" PARENT_SCOPE)
  endif()
endfunction()

# backtest_case(NAME STATUS [OUTPUTS file...] ARGS arg...): runs the program, expects
# exit status STATUS and compares stdout and stderr with golden/NAME.stdout and
# golden/NAME.stderr, and each file of OUTPUTS (written under @OUT@) with golden/FILE.
function(backtest_case name status)
  cmake_parse_arguments(PARSE_ARGV 2 CASE "" "" "OUTPUTS;ARGS")
  list(TRANSFORM CASE_ARGS REPLACE "@OUT@" "${OUT}")
  list(TRANSFORM CASE_ARGS REPLACE "@PLUGIN@" "${PLUGIN}")
  execute_process(COMMAND ${BACKTEST} ${CASE_ARGS}
                  WORKING_DIRECTORY ${SOURCE}
                  RESULT_VARIABLE rc
                  OUTPUT_FILE ${OUT}/${name}.stdout
                  ERROR_FILE ${OUT}/${name}.stderr)
  if(NOT rc STREQUAL "${status}")
    file(READ ${OUT}/${name}.stderr err)
    message("[${name}] exit status ${rc}, expected ${status}; standard error:\n${err}")
    set(failures "${failures} ${name}")
  endif()
  compare_golden(${name} ${OUT}/${name}.stdout ${name}.stdout)
  compare_golden(${name} ${OUT}/${name}.stderr ${name}.stderr)
  foreach(output ${CASE_OUTPUTS})
    compare_golden(${name} ${OUT}/${output} ${output})
  endforeach()
  set(failures "${failures}" PARENT_SCOPE)
endfunction()

include(${SOURCE}/Cases.cmake)

if(failures)
  message(FATAL_ERROR "failed cases:${failures}")
endif()
