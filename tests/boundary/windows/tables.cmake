# cmake -DOBJDUMP=... -DFILE=... [-DEXPORTED=NAME;NAME...] -P tables.cmake: fails unless a Windows
# program or library needs nothing but what Windows brings, and exports these names and no others.

cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND ${OBJDUMP} -p ${FILE} OUTPUT_VARIABLE tables COMMAND_ERROR_IS_FATAL ANY)

set(system advapi32 comctl32 comdlg32 gdi32 iphlpapi kernel32 msvcrt mswsock ole32 oleaut32 shell32 user32
           ws2_32)
string(REGEX MATCHALL "DLL Name: [^\n]+" imports "${tables}")
if(NOT imports)
  message(FATAL_ERROR "${FILE} imports nothing: its tables were not understood")
endif()
foreach(import ${imports})
  string(REGEX REPLACE "DLL Name: (.*)\\.[dD][lL][lL]" "\\1" name "${import}")
  string(TOLOWER "${name}" name)
  if(NOT name IN_LIST system)
    message(FATAL_ERROR "${FILE} needs ${name}, which Windows doesn't bring")
  endif()
endforeach()

set(exported "")
string(REGEX MATCH "Ordinal/Name Pointer. Table\n(\t.[^\n]*\n)+" names "${tables}")
string(REGEX REPLACE "Ordinal/Name Pointer. Table\n" "" names "${names}")
string(REGEX MATCHALL "[^\n]+" names "${names}")
foreach(name ${names})
  string(REGEX REPLACE ".* " "" name "${name}")
  list(APPEND exported "${name}")
endforeach()
list(SORT exported)
list(SORT EXPORTED)
if(NOT "${exported}" STREQUAL "${EXPORTED}")
  message(FATAL_ERROR "${FILE} exports\n${exported}\nand not\n${EXPORTED}")
endif()
