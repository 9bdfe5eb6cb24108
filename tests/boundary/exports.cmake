# The module exports the boundary and nothing else. LIBRARY: the module; NM: the tool that lists it.

execute_process(COMMAND ${NM} -D --defined-only --format=posix ${LIBRARY}
                OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" lines "${listing}")
set(exported "")
foreach(line ${lines})
  string(REGEX REPLACE " .*" "" symbol "${line}")
  list(APPEND exported ${symbol})
endforeach()
list(SORT exported)

set(expected
  ExtCmd ExtConfigure ExtConnectToApp ExtCopyConfigure ExtCreateInstance ExtCreateUnit
  ExtDestroyInstance ExtEquipXml ExtHelp ExtIdentify ExtStartApp ExtStopApp
  GlpfnBrindleShowDataServerString
  _ZN14PVTEOSLUMPRULE7versionEv
  _ZN20PVTEOSLUMPRULEFOLDER7versionEv
  _ZN24PVTEOSLUMPRULE_COMPONENT7versionEv
  _ZN33PVTEOSLUMPRULE_COMPONENT_ADDITION7versionEv)
if(NOT exported STREQUAL expected)
  message(FATAL_ERROR "the module exports\n${exported}\nand not\n${expected}")
endif()
