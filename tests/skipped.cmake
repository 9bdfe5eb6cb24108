# What can't hold on a platform is skipped by name and with the reason, never in silence: CTest lists
# each such test as skipped, and shows the reason with its output.

# gantry_skip(NAME REASON): stands for a test or a suite that isn't run here.
function(gantry_skip name reason)
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo "Skipped: ${reason}")
  set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "Skipped: ")
endfunction()

# gantry_skip_under_wine(SUITE TEST REASON): leaves one test out of a suite's program. Stands before
# the suite.
function(gantry_skip_under_wine suite test reason)
  if(WIN32)
    gantry_skip(${suite}:${test} "${reason}")
    set_property(GLOBAL APPEND PROPERTY skipped_of_${suite} ${test})
  endif()
endfunction()

# gantry_skipped_filter(VARIABLE SUITE): the filter by which the suite's program leaves those out.
function(gantry_skipped_filter variable suite)
  get_property(tests GLOBAL PROPERTY skipped_of_${suite})
  list(JOIN tests ":" filter)
  set(${variable} "-${filter}" PARENT_SCOPE)
endfunction()
