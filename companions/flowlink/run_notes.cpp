#include "flowlink/run_notes.h"

#include <cstdio>
#include <fstream>

namespace gantry::flowlink {

void RunNotes::Add(const std::string& text) {
  std::fprintf(stderr, "flowlink: %s\n", text.c_str());
  std::ofstream(file_, std::ios::app) << text << "\n";
}

}  // namespace gantry::flowlink
