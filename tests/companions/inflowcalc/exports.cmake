# cmake -DNM=... -DLIBRARY=... -P exports.cmake: fails unless the library exports the ten operations
# and nothing else.

set(expected AddIPRWell CreateIPRModel DestroyIPRModel EndIPRAddWell LoadIPR SaveIPR
    SetIPRCallbacks SetupIPR StartIPRAddWell TransformIPR)
execute_process(COMMAND ${NM} -D --defined-only --format=just-symbols ${LIBRARY}
                OUTPUT_VARIABLE symbols OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ";" symbols "${symbols}")
list(SORT symbols)
if(NOT symbols STREQUAL expected)
  message(FATAL_ERROR "exported: ${symbols}\nexpected: ${expected}")
endif()
