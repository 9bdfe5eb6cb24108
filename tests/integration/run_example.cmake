# cmake [-DEMULATOR=...] -DFIELDRUN=... -DCASE=... -DWORK=... -DPORT=... -P run_example.cmake: runs an
# example as its user would, and fails unless it ends well and leaves its results. Settings and locks
# stand in the work folder, and sessions use the ports from PORT on; under an emulator both are its.

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/gantry)
math(EXPR last "${PORT} + 9")
math(EXPR first_port "${PORT}" OUTPUT_FORMAT HEXADECIMAL)
math(EXPR last_port "${last}" OUTPUT_FORMAT HEXADECIMAL)
foreach(port first_port last_port)
  string(REPLACE "0x" "0000" ${port} ${${port}})
endforeach()
file(WRITE ${WORK}/gantry/registry.reg "REGEDIT4\r\n\r\n"
  "[HKEY_CURRENT_USER\\Software\\Orvale\\Tessel\\ExtensionDlls100_64\\Intersect]\r\n"
  "\"StartPort\"=dword:${first_port}\r\n\"EndPort\"=dword:${last_port}\r\n")
set(ENV{XDG_CONFIG_HOME} ${WORK})
set(ENV{XDG_RUNTIME_DIR} ${WORK})

execute_process(COMMAND ${EMULATOR} ${FIELDRUN} run ${CASE} --output ${WORK}/results --quiet
                RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "fieldrun ended with ${result}")
endif()
foreach(name wells.csv inflow.csv field.csv report.html)
  if(NOT EXISTS ${WORK}/results/${name})
    message(FATAL_ERROR "${name} is missing")
  endif()
  file(SIZE ${WORK}/results/${name} size)
  if(size LESS 1000)
    message(FATAL_ERROR "${name} has only ${size} bytes")
  endif()
endforeach()
