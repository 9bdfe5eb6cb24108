# cmake -DBUILD=... -DCPACK=... -DWORK=... -DCONTENT=FILE;FILE... -P package.cmake: installs a build,
# packs it, and fails unless both hold these files and no others. Leaves the archive's in
# WORK/unpacked.

cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/archive)
list(SORT CONTENT)

function(require_content folder)
  file(GLOB_RECURSE files RELATIVE ${folder} ${folder}/*)
  list(SORT files)
  set(missing ${CONTENT})
  list(REMOVE_ITEM missing ${files})
  list(REMOVE_ITEM files ${CONTENT})
  if(missing OR files)
    message(FATAL_ERROR "${folder}\nlacks ${missing}\nand holds ${files}")
  endif()
endfunction()

execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
require_content(${WORK}/installed)
foreach(name INSTALL.txt LICENSE.txt)
  if(NOT EXISTS ${WORK}/installed/${name})
    continue()
  endif()
  file(READ ${WORK}/installed/${name} text HEX)
  string(REGEX MATCH "^(..)*0d0a" ends "${text}")
  if(NOT ends)
    message(FATAL_ERROR "${name} ends its lines by a line feed alone")
  endif()
endforeach()

execute_process(COMMAND ${CPACK} --config ${BUILD}/CPackConfig.cmake -B ${WORK}/archive
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB archive ${WORK}/archive/gantry-*)
list(FILTER archive INCLUDE REGEX "\\.(zip|tar\\.gz)$")
file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${WORK})
get_filename_component(name ${archive} NAME)
string(REGEX REPLACE "\\.(zip|tar\\.gz)$" "" name ${name})
file(RENAME ${WORK}/${name} ${WORK}/unpacked)
require_content(${WORK}/unpacked)
