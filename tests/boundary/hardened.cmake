# cmake -DREADELF=... -DOBJDUMP=... -DFILE=... -DFUNCTION=... -DFORTIFIED=... -DCET=... -P hardened.cmake:
# fails unless a program or library of Linux is built so that a fault in it is hard to make use of.
# FUNCTION: one of its own, to be looked at; empty for a library of dialogs, which makes no call whose
# length the compiler could check.

cmake_minimum_required(VERSION 3.25)

function(require pattern text what)
  if(NOT text MATCHES "${pattern}")
    message(FATAL_ERROR "${FILE} has no ${what}")
  endif()
endfunction()

execute_process(COMMAND ${READELF} -hldW --dyn-syms ${FILE} OUTPUT_VARIABLE tables
                COMMAND_ERROR_IS_FATAL ANY)
require("Type: +DYN" "${tables}" "place in memory of the system's choice")
require("GNU_RELRO" "${tables}" "tables closed to writing")
require("BIND_NOW|Flags: NOW" "${tables}" "names bound at its start")
require("GNU_STACK[^\n]+ RW " "${tables}" "stack closed to execution")
require("__stack_chk_fail" "${tables}" "guarded stack")
if(FORTIFIED AND FUNCTION)
  require("__[a-z]+_chk[@ ]" "${tables}" "checked length")
endif()
if(CET AND FUNCTION)
  execute_process(COMMAND ${OBJDUMP} -d --disassemble=${FUNCTION} ${FILE} OUTPUT_VARIABLE code
                  COMMAND_ERROR_IS_FATAL ANY)
  require("<${FUNCTION}>:\n[^\n]*endbr64" "${code}" "marked targets of jumps")
endif()
