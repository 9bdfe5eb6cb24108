#include "integration/real_run.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <regex>
#include <stdexcept>

#include "platform/dynamic_library.h"
#include "platform/registry.h"
#include "settings/machine_config.h"
#include "support/free_ports.h"

namespace gantry::test {

namespace fs = std::filesystem;

RealRun::RealRun(const std::string& version, int ports) : firstPort_(FreePorts(ports)) {
  const fs::path simulator = folder_ / version / "bin" / platform::ProgramFileName("tanksim");
  fs::create_directories(simulator.parent_path());
  std::error_code unknownHere;
  fs::create_symlink(GANTRY_TANKSIM, simulator, unknownHere);
  if (unknownHere) fs::copy_file(GANTRY_TANKSIM, simulator);
  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  key->WriteText("SimExecutable", simulator.string());
  key->WriteNumber("StartPort", static_cast<uint32_t>(firstPort_));
  key->WriteNumber("EndPort", static_cast<uint32_t>(firstPort_ + ports - 1));
  module_ = fieldrun::ModuleApi::Load(GANTRY_MODULE);
}

fs::path RealRun::Deck(const std::string& example, double endDays) {
  const fs::path source = fs::path(GANTRY_EXAMPLES) / example;
  const std::string text = TestFolder::Read(source);
  const std::regex endTime("(^|\n)end_time *=[^\n]*");
  const std::string name = "case" + std::to_string(++decks_) + "/" + source.filename().string();
  return folder_.Write(name, "end_time = " + std::to_string(endDays) + "\n" +
                                 std::regex_replace(text, endTime, "$1"));
}

std::unique_ptr<fieldrun::DriverModel> RealRun::Model(const fs::path& deck,
                                                      const std::string& simulator) {
  auto model = std::make_unique<fieldrun::DriverModel>(*module_);
  model->Set("Intersect.CaseDetails.FileName", deck.string());
  model->Set("Intersect.CaseDetails.SimExeName", simulator);
  return model;
}

std::vector<fieldrun::DriverWell> StartRunOfAllWells(fieldrun::DriverModel& model) {
  model.StartSimulator();
  std::vector<fieldrun::DriverWell> wells = model.Wells();
  std::vector<int32_t> all(wells.size());
  std::iota(all.begin(), all.end(), 0);
  model.StartRun(all, 0.0, [](const std::string&) {});
  return wells;
}

}  // namespace gantry::test
