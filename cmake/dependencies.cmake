# The libraries that the project builds on. On the build machine's own platform they are found as
# packages. A cross-build takes the same libraries as headers alone, through a folder of links that
# shows nothing else of the build machine's headers, and builds GoogleTest from its sources.

find_package(Threads REQUIRED)

if(NOT CMAKE_CROSSCOMPILING)
  find_package(Boost 1.74 REQUIRED)
  find_package(CLI11 REQUIRED)
  find_package(tomlplusplus REQUIRED)
  find_package(nlohmann_json REQUIRED)
  find_package(fmt REQUIRED)
  if(GANTRY_TESTS)
    find_package(GTest REQUIRED)
  endif()
  # A sanitizer's library would have to be in the interpreter before the module.
  if(GANTRY_PYTHON AND NOT GANTRY_SANITIZE)
    # Debian's own interpreter, for which script/setup installs what the package needs, comes first.
    if(EXISTS /usr/bin/python3)
      set(Python_EXECUTABLE /usr/bin/python3 CACHE FILEPATH "The interpreter of the package")
    endif()
    find_package(Python COMPONENTS Interpreter Development.Module QUIET)
    find_package(pybind11 CONFIG QUIET)
  endif()
  return()
endif()

set(header_links ${CMAKE_BINARY_DIR}/include)
file(MAKE_DIRECTORY ${header_links})
foreach(library boost CLI toml++ fmt nlohmann)
  file(CREATE_LINK /usr/include/${library} ${header_links}/${library} SYMBOLIC)
endforeach()

foreach(target Boost::headers CLI11::CLI11 tomlplusplus::tomlplusplus
               nlohmann_json::nlohmann_json fmt::fmt)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${header_links})
endforeach()
target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY=1)

if(GANTRY_TESTS)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
endif()
