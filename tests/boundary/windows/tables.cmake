# cmake -DOBJDUMP=... -DFILE=... -DFUNCTION=... -DFORTIFIED=... -DSOURCES=... -DVERSION=...
# [-DEXPORTED=NAME;NAME...] -P tables.cmake: fails unless a Windows program or library needs nothing
# but what Windows brings, exports these names and no others, describes itself, tells nothing of where
# it was built, and is built so that a fault in it is hard to make use of. FUNCTION: one of its own, to
# be looked at.

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

foreach(mark HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT)
  if(NOT tables MATCHES "${mark}")
    message(FATAL_ERROR "${FILE} lacks the mark ${mark}")
  endif()
endforeach()

execute_process(COMMAND ${OBJDUMP} -d --disassemble=${FUNCTION} ${FILE} OUTPUT_VARIABLE code
                COMMAND_ERROR_IS_FATAL ANY)
if(NOT code MATCHES "<${FUNCTION}>:\n[^\n]*endbr64")
  message(FATAL_ERROR "${FILE} has no marked targets of jumps")
endif()
execute_process(COMMAND ${OBJDUMP} -t ${FILE} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
if(NOT symbols MATCHES " __stack_chk_fail\n")
  message(FATAL_ERROR "${FILE} has no guarded stack")
endif()
if(FORTIFIED AND NOT symbols MATCHES " __(mem|str)[a-z]+_chk\n")
  message(FATAL_ERROR "${FILE} has no checked length")
endif()

# An assertion that is alive names its source.
file(STRINGS ${FILE} paths REGEX "${SOURCES}|/[^ ]+[.][ch]pp$" LIMIT_COUNT 1)
if(paths)
  message(FATAL_ERROR "${FILE} tells where it was built, or holds live assertions: ${paths}")
endif()
file(STRINGS ${FILE} description ENCODING UTF-16LE REGEX "^(Gantry|${VERSION}|Apache|.*Gantry authors.*)")
foreach(text "Gantry " "${VERSION}" "Apache License")
  if(NOT description MATCHES "${text}")
    message(FATAL_ERROR "${FILE} doesn't say '${text}' of itself but ${description}")
  endif()
endforeach()
