// fieldsummary: writes the results of a run of fieldrun as summary files (SMSPEC, UNSMRY).
//
// This program links libopm-common and is under its terms, the GNU General Public License, version
// 3 or later. Nothing else of the project links it.

#include <cstdio>
#include <cstring>

#include "fieldrun/results/result_reader.h"
#include "fieldsummary/summary_files.h"

namespace {

using namespace gantry::fieldrun;

constexpr const char* kHelp =
    "Writes the results of a run as FORECAST.SMSPEC and FORECAST.UNSMRY, beside its tables.\n"
    "Usage: fieldsummary RESULTS\n";

int Convert(const std::string& folder) {
  try {
    const StoredRun run = ReadRunFile(folder);
    SummaryFiles files(run.model);
    ReplayRun(folder, run, files);
    files.Write(folder);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "fieldsummary: %s\n", error.what());
    return 1;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const bool wantsHelp =
      argc == 2 && (!std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h"));
  if (wantsHelp) {
    std::fputs(kHelp, stdout);
    return 0;
  }
  if (argc == 2) return Convert(argv[1]);
  std::fputs(kHelp, stderr);
  return 2;
}
