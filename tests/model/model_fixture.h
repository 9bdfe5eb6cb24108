#pragma once

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "gantry/boundary.h"
#include "model/field_peer.h"
#include "settings/gantry_app.h"
#include "support/test_folder.h"

namespace gantry::test {

/// The host's side of a model, by nothing but the exported functions: a case in a folder of its
/// own, a real simulator process, and a field that answers for it from within the test.
class ModelTest : public ::testing::Test {
 protected:
  ModelTest() {
    std::filesystem::create_directory(Case());
    folder.Write("case/hold", "");
    app.Config.SimExecutable = "/IX/2017.2/ix";
    app.Config.StartPort = app.Config.EndPort = peer.Port();
    ExtCreateInstance(&model, &err);
  }
  ~ModelTest() override {
    ExtDestroyInstance(model, &err);
    std::filesystem::remove(Case() / "hold");  // lets the simulator's process end
  }

  std::filesystem::path Case() const { return folder / "case"; }

  /// The order of a run up to the point where the host sees its wells.
  void StartSimulator() {
    NameCase();
    peer.Start();
    ASSERT_EQ(Command(EXT_START_SIMULATOR), 0) << Error();
    peer.TakeOrders();
  }
  /// A run of these wells, and its orders so far forgotten.
  void BeginRun(std::vector<int32_t> connected) {
    StartSimulator();
    ASSERT_EQ(Outcome(StartRun(std::move(connected))), "done");
    peer.TakeOrders();
  }
  /// The same up to the inflow of its first step.
  void ReadWells(std::vector<int32_t> connected) {
    BeginRun(std::move(connected));
    ASSERT_EQ(Outcome(Command(EXT_SET_TIMESTEP_DATA)), "done");
  }
  void NameCase() {
    Set("CaseDetails.SimExeName", HELD_SIMULATOR);
    Set("CaseDetails.FileName", (Case() / "FIELD.afi").string());
  }

  int32_t Command(uint32_t number, void* data = nullptr, uint32_t value = 0) {
    return ExtCmd(model, nullptr, number, data, value, &err);
  }
  std::string Error() const { return err.text; }
  /// "done", or the text of the failure ("failed" where it has none).
  std::string Outcome(int32_t result) const {
    if (result == 0) return "done";
    return Error().empty() ? "failed" : Error();
  }
  int32_t Set(const std::string& path, const std::string& value) {
    const std::string whole = "Intersect." + path;
    SetPropertyRequest request = {};
    request.path = whole.c_str();
    request.value = value.c_str();
    return Command(EXT_SET_PROPERTY, &request);
  }
  /// The value, or "none" where nothing answered.
  std::string Get(const std::string& path) {
    const std::string whole = "Intersect." + path;
    GetPropertyRequest request = {};
    request.path = whole.c_str();
    return Command(EXT_GET_PROPERTY, &request) == 0 ? request.value : "none";
  }
  int32_t Do(std::string command) { return Command(EXT_DO_COMMAND, command.data()); }

  /// A run with these wells connected, from the host's date on.
  int32_t StartRun(std::vector<int32_t> connected, double hostDate = 0.0) {
    RunStartRecord record = {};
    record.connectedWells = connected.data();
    record.connectedCount = static_cast<int32_t>(connected.size());
    record.startDate = hostDate;
    record.logCallback = [](const char* text, void*) { Told().push_back(text); };
    record.statusCallback = record.logCallback;
    Told().clear();
    return Command(EXT_START_RUN, &record);
  }
  /// What the host's callbacks were given.
  static Texts& Told() {
    static Texts texts;
    return texts;
  }

  int32_t StepBy(double days) {
    TimestepRecord record = {};
    record.stepDays = days;
    return Command(EXT_TIMESTEP, &record);
  }
  int32_t ReadInflow(int32_t well, _tGetSetData& record) {
    record.well = well;
    return Command(EXT_GET_IPR, &record);
  }
  TestFolder folder;
  FieldPeer peer;
  CGantryApp app;
  std::unique_ptr<_tGetSetData> inflow = std::make_unique<_tGetSetData>();  ///< what is read
  ExtErrorBlock err = {};
  void* model = nullptr;
};

}  // namespace gantry::test
