# What is built so that a fault is hard to make use of: calls through tables that nothing may write to,
# guarded stacks, checked lengths, marked targets of jumps. A test reads it off the built files.

include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported()
check_cxx_compiler_flag(-fcf-protection GANTRY_HAS_CET)

# Whatever is linked with hardened objects, the tests too, needs the library that they call.
if(WIN32)
  add_link_options(-Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va -fstack-protector-strong)
endif()

# gantry_harden(): for every target of this directory and of those below it.
function(gantry_harden)
  set(flags -fstack-protector-strong)
  if(GANTRY_HAS_CET)
    list(APPEND flags -fcf-protection)
  endif()
  # Lengths are only known where the compiler optimises; the sanitizers watch the same calls.
  if(NOT GANTRY_SANITIZE)
    list(APPEND flags $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
                      $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  endif()
  list(APPEND flags $<$<NOT:$<CONFIG:Debug>>:-DNDEBUG>)
  foreach(flag ${flags})
    add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:${flag}>)
  endforeach()
  if(NOT WIN32)
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
  endif()
endfunction()
