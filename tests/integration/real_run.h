#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "fieldrun/driver/driver_model.h"
#include "support/test_folder.h"

namespace gantry::test {

/// A run with nothing put in place of anything: the module as built, loaded through its exported
/// functions, and the reference simulator, started by the module in a process of its own. Settings,
/// locks, decks and ports are the test's own.
class RealRun {
 public:
  /// `version` names the folder in which the module finds the simulator, by which it chooses its
  /// connector. The module has `ports` ports for its sessions.
  explicit RealRun(const std::string& version = "2017.2", int ports = 1);

  int FirstPort() const { return firstPort_; }

  /// A deck of the examples that ends after `endDays`, in a folder of its own.
  std::filesystem::path Deck(const std::string& example, double endDays);

  /// A model with that deck. `simulator` takes the place of the machine's own, when given.
  std::unique_ptr<fieldrun::DriverModel> Model(const std::filesystem::path& deck,
                                               const std::string& simulator = "");

 private:
  TestFolder folder_;
  int firstPort_;
  int decks_ = 0;
  std::unique_ptr<fieldrun::ModuleApi> module_;
};

/// All wells of a started model, connected, with the run started at the deck's own date.
std::vector<fieldrun::DriverWell> StartRunOfAllWells(fieldrun::DriverModel& model);

}  // namespace gantry::test
