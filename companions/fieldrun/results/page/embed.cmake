# cmake -DPAGE=FOLDER -DMODULES=A;B;... -DOUTPUT=FILE -P embed.cmake: makes one page of page.html, its
# style, the vendored charts and the script's modules, as a C++ text.
#
# The modules are put one after the other into one script, in which their imports and exports mean
# nothing: each stands behind those that it imports, and no name stands in two.

function(put text mark)
  set(content "")
  foreach(file ${ARGN})
    file(READ ${PAGE}/${file} part)
    string(APPEND content "${part}")
  endforeach()
  if(mark STREQUAL "@SCRIPT@")
    string(REGEX REPLACE "(^|\n)import [^;]*;" "" content "${content}")
    string(REGEX REPLACE "(^|\n)export " "\\1" content "${content}")
  endif()
  string(REPLACE "${mark}" "${content}" ${text} "${${text}}")
  set(${text} "${${text}}" PARENT_SCOPE)
endfunction()

file(READ ${PAGE}/page.html page)
put(page "@STYLE@" vendor/uPlot.min.css page.css print.css)
file(READ ${PAGE}/vendor/LICENSE.uPlot licence)
put(page "@VENDOR@" vendor/uPlot.iife.min.js)
string(REPLACE "/*! https" "/*!\n${licence}\nhttps" page "${page}")
put(page "@SCRIPT@" ${MODULES})

# A compiler may take no longer text in one piece.
set(pieces "")
string(LENGTH "${page}" length)
set(at 0)
while(at LESS length)
  string(SUBSTRING "${page}" ${at} 12000 piece)
  string(APPEND pieces "R\"PAGE(${piece})PAGE\"\n")
  math(EXPR at "${at} + 12000")
endwhile()
file(WRITE ${OUTPUT} "#include \"fieldrun/results/report_html.h\"\n
namespace gantry::fieldrun {\n\nconst std::string_view kReportPage =\n${pieces};\n
}  // namespace gantry::fieldrun\n")
