#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "program.h"

namespace gantry::fieldrun::test {

/// Plays a session with this project's programs as it is written down, and fails the test where it
/// goes otherwise. Each line begins with what it is:
///
///   copy odeh            the example's folder, into the session's own, in which all runs
///   write FILE           the lines below that are indented by four blanks are the file
///   change FILE | A | B  puts B in the place of the first A of a file; in both, \n ends a line
///   change FILE | NAME   gives a file or folder another name
///   $ fieldrun run ...   a program with its arguments, which quotes ('') may hold together
///   ? 2                  its exit status, 0 where nothing is said
///   > odeh ...           a line that it prints, the next such line a later one, "..." is any text
///   ! fieldrun: ...      the same on its standard error, which is empty where nothing is said
///   = FILE 7             how many rows a table holds
///   = FILE 2-7 | A | B   what its rows from the second to the seventh hold in column A: bounds, as
///                        1..2.5, within which lies the number, or with "A + C" the sum; or a text
///
/// `cat` prints a file, {port} is one that nobody uses, {examples} the folder of the examples,
/// {module} the module and {fieldrun}, {runfactory}, {flowlink} or {tanksim} the path of that
/// program. Any other line is a remark.
void PlaySession(const std::filesystem::path& file);

/// The names of the *.session files of a folder.
std::vector<std::string> SessionsIn(const std::filesystem::path& folder);

}  // namespace gantry::fieldrun::test
