// The model state file, with the state of the inflow library in it. What was not understood
// changes nothing; what was read is written and read again as the same.
// Reads: src/case/state_file.cpp src/settings/case_archive.cpp
// Reads: companions/inflowcalc/state_block.cpp

#include "case/state_file.h"
#include "gantry/inflow.h"
#include "settings/case_archive.h"
#include "target.h"
#include "wells/exported_variables.h"

using namespace gantry;
using namespace gantry::fuzz;

namespace {

/// What a model keeps in its file.
class State {
 public:
  ~State() { DestroyIPRModel(inflow_); }

  bool Read(const std::string& file) {
    return ReadStateFile(
        file, [&](intptr_t handle) { LoadIPR(inflow_, handle); }, variables_);
  }
  std::string Written(const std::string& file) {
    WriteStateFile(
        file, [&](intptr_t handle) { SaveIPR(inflow_, handle); }, variables_);
    return ReadFile(file);
  }
  bool IsEmpty() const { return variables_.Size() == 0; }

 private:
  void* inflow_ = CreateIPRModel(nullptr);
  CExportedVariables variables_;
};

}  // namespace

FUZZ_TARGET(state_file) {
  const std::string file = WriteFile("state", input);
  State read;
  const bool isUnderstood = read.Read(file);
  Require(ReadFile(file) == input);
  const std::string written = read.Written(file + ".2");
  State again;
  Require(again.Read(file + ".2"));
  Require(again.IsEmpty() == read.IsEmpty());
  Require(again.Written(file + ".2").size() == written.size());
  if (isUnderstood) return;
  Require(KeepStateFile(file) && ReadFile(file + ".backup") == input);
  std::filesystem::remove(file + ".backup");
}
