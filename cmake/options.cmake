# What a build can be asked for, and the flags that every target of this project takes.

option(GANTRY_TESTS "Build the tests" ON)
option(GANTRY_BENCH "Build the benchmarks" OFF)
option(GANTRY_FUZZ "Build the fuzz targets (Clang)" OFF)
option(GANTRY_PYTHON "Build the Python package, where pybind11 is there" ON)
set(GANTRY_SANITIZE "" CACHE STRING "Sanitizers for every target, as -fsanitize= takes them")

if(WIN32)
  set(GANTRY_PLATFORM windows)
else()
  set(GANTRY_PLATFORM posix)
endif()

if(WIN32)
  add_compile_definitions(_WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX)
  # The host's machine has nothing of ours but these files, under the names that it looks up.
  add_link_options(-static)
  set(CMAKE_SHARED_LIBRARY_PREFIX "")
endif()

find_program(GANTRY_CCACHE ccache)
if(GANTRY_CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${GANTRY_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${GANTRY_CCACHE})
endif()

add_library(gantry_options INTERFACE)
target_compile_options(gantry_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Wold-style-cast -Woverloaded-virtual -Wformat=2
  $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)
# C has no C++ style casts and no virtual functions to warn of.
add_library(gantry_c_options INTERFACE)
target_compile_options(gantry_c_options INTERFACE -Wall -Wextra -Wpedantic)

# All code tells libFuzzer the paths that an input takes. What it compares stays untold: that doubles
# the time of a reader of text and finds no path sooner than seeds, dictionaries and memcmp do.
if(GANTRY_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "The fuzz targets need Clang: configure with the preset fuzz.")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link -fno-sanitize-coverage=trace-cmp)
  add_link_options(-fsanitize=fuzzer-no-link)
endif()

if(GANTRY_SANITIZE)
  add_compile_options(-fsanitize=${GANTRY_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${GANTRY_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Instrumented code hides from GCC what is initialised, in the standard library's own headers
    # too; and it warns of every fence that the thread sanitizer doesn't follow. The targets'
    # own -Wall would bring the first warning back, so it goes with that.
    target_compile_options(gantry_options INTERFACE
      $<$<COMPILE_LANGUAGE:CXX>:-Wno-maybe-uninitialized>)
    if(GANTRY_SANITIZE MATCHES "thread")
      add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-tsan>)
    endif()
  endif()
endif()

# gantry_export_only(LIBRARY): lets out only what the platform's list of exports names:
# posix/LIBRARY.map or windows/LIBRARY.def beside the library's sources.
function(gantry_export_only library)
  if(WIN32)
    target_sources(${library} PRIVATE windows/${library}.def)
    return()
  endif()
  set(exports ${CMAKE_CURRENT_SOURCE_DIR}/posix/${library}.map)
  target_link_options(${library} PRIVATE -Wl,--version-script=${exports})
  set_target_properties(${library} PROPERTIES LINK_DEPENDS ${exports})
endfunction()

# gantry_described(TARGET FILE_TYPE DESCRIPTION): what Windows shows of a file: name, version, rights.
function(gantry_described target file_type description)
  set(file_name ${target}.exe)
  if(file_type STREQUAL "VFT_DLL")
    set(file_name ${target}.dll)
  endif()
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/windows/version.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
endfunction()

# gantry_program(TARGET DESCRIPTION): makes a program read and write its texts in UTF-8 on every
# platform.
function(gantry_program target description)
  if(WIN32)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/windows/program.rc)
    gantry_described(${target} VFT_APP "${description}")
  endif()
endfunction()

# gantry_library(TARGET DESCRIPTION): a library that lets out only what is listed, and that a process
# may load and unload again and again.
function(gantry_library target description)
  gantry_export_only(${target})
  if(WIN32)
    gantry_described(${target} VFT_DLL "${description}")
    target_sources(${target} PRIVATE
                   ${PROJECT_SOURCE_DIR}/src/platform/windows/library/thread_slots.cpp)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src)
    target_link_options(${target} PRIVATE -Wl,--wrap=__imp_TlsAlloc)
  endif()
endfunction()
