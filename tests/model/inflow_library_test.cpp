// What the inflow library is told, what it may do to a table, and what it may ask of the model.

#include "model/ext_model.h"
#include "model/model_fixture.h"
#include "model/programs/inflow_probe.h"
#include "platform/dynamic_library.h"

namespace gantry::test {
namespace {

class InflowLibrary : public ModelTest {
 protected:
  InflowLibrary() {
    library = platform::DynamicLibrary::Open(INFLOW_PROBE);
    probe = reinterpret_cast<InflowProbe* (*)()>(library->Symbol("TheInflowProbe"))();
    peer.wells = {{.name = "P1"},
                  {.name = "G1", .type = "GAS_INJECTOR"},
                  {.name = "W1", .type = "WATER_INJECTOR"}};
    // A model of its own: the fixture's was made before the probe was reset.
    ExtDestroyInstance(model, &err);
    *probe = InflowProbe{};
    ExtCreateInstance(&model, &err);
  }
  ~InflowLibrary() override {
    ExtDestroyInstance(model, &err);
    model = nullptr;
    *probe = InflowProbe{};
  }

  void ReadAll() {
    ReadWells({0, 1, 2});
    probe->calls.clear();
  }

  std::unique_ptr<platform::DynamicLibrary> library;
  InflowProbe* probe = nullptr;
  char reason[IPR_TEXT_SIZE] = {};
};

TEST_F(InflowLibrary, IsToldTheWellsOfEachStartAndTheModelsEnd) {
  StartSimulator();
  EXPECT_EQ(probe->calls, (Texts{"wells:", "0 P1 producer second", "1 G1 injector",
                                 "2 W1 injector second", "end"}));
  probe->calls.clear();
  ExtDestroyInstance(model, &err);
  model = nullptr;
  EXPECT_EQ(peer.TakeOrders(), Texts{"SHUTDOWN"});
  EXPECT_EQ(probe->calls, Texts{"destroy"});
}

TEST_F(InflowLibrary, MayRewriteATable) {
  ReadAll();
  probe->pointsAfter = 3;
  ASSERT_EQ(ReadInflow(0, *inflow), 0);
  EXPECT_EQ(inflow->pointCount, 3);
  EXPECT_EQ(inflow->oilRate[0], 1600.0);
  EXPECT_EQ(probe->calls.front().substr(0, 29), "transform P1 105368 3.4e+35 0");
  StepBy(1.0);
  Command(EXT_SET_TIMESTEP_DATA);
  probe->pointsAfter = 4000;
  ASSERT_EQ(ReadInflow(0, *inflow), 0);
  const auto& seen = static_cast<CExtModel*>(model)->Sources().Items[0].HostIPR;
  EXPECT_EQ(seen.size(), 10u) << "whatever number it leaves";
  EXPECT_EQ(probe->calls.back().find("3.4e+35"), std::string::npos) << "a step has been made";
  probe->calls.clear();
  Set("CaseDetails.IPRModel", "0");
  ASSERT_EQ(ReadInflow(0, *inflow), 0);
  EXPECT_EQ(probe->calls, Texts{}) << "it isn't asked for block pressure";
}

TEST_F(InflowLibrary, MayReadAnotherWellOrStartTheSimulatorAnewInTheMidstOfATransformation) {
  ReadAll();
  Set("Well[0].CurOilRate", "111");
  Set("Well[1].CurOilRate", "222");
  probe->readsInside = 1;
  ASSERT_EQ(ReadInflow(0, *inflow), 0);
  EXPECT_EQ(probe->stateOilAfterRead, 111.0);
  peer.ChangeWells([](std::vector<SimulatedWell>& wells) { std::swap(wells[0], wells[2]); });
  probe->restartsInside = true;
  EXPECT_EQ(ReadInflow(0, *inflow), 0);
  EXPECT_EQ(inflow->pointCount, 10);
}

TEST_F(InflowLibrary, DrivesTheSimulatorThroughItsCallbacks) {
  ReadAll();
  Set("StaticWell[0].OpMode", "3");
  EXPECT_EQ(probe->elapsedDays(model), 0.0);
  ASSERT_EQ(probe->restart(model, reason), 0) << reason;
  EXPECT_EQ(Get("StaticWell[2].Connected"), "1") << "every well counts as connected";
  EXPECT_EQ(Get("StaticWell[0].OpMode"), "3");
  peer.TakeOrders();
  const double rates[] = {300.0, 0.5, 0.0};
  for (int well = 0; well < 3; ++well) probe->imposeRate(model, well, rates[well], reason);
  EXPECT_EQ(probe->advance(model, 5.0, reason), 0) << reason;
  const Texts orders = peer.TakeOrders();
  EXPECT_EQ(orders[0],
            "SET SETWSTATUS WCLOSURE{USER} SETITEM{STATUS} WELNAMES{P1, G1, W1} "
            "VALUES{OPEN, OPEN, SURFACE_SHUTIN}");
  EXPECT_EQ(orders[3], "CONTINUE_UNTIL TIME{5}");
  EXPECT_EQ(probe->elapsedDays(model), 5.0);
  EXPECT_EQ(probe->readInflow(model, 0, inflow.get(), reason), 0);
  EXPECT_EQ(inflow->well, 0);
  EXPECT_EQ(inflow->pointCount, 10);
  EXPECT_EQ(probe->readCurrent(model, 0, inflow.get(), reason), 0);
  EXPECT_GT(inflow->pressure[0], 0.0);
  EXPECT_EQ(Get("StaticWell[0].OpMode"), "3");
}

TEST_F(InflowLibrary, IsGivenTheReasonOfAFailureAtTheStartOfItsText) {
  ReadAll();
  const auto why = [this](int32_t result) { return std::string(result == 1 ? reason : "done"); };
  EXPECT_EQ(why(probe->readInflow(model, 3, inflow.get(), reason)),
            "The requested well number 4 does not exist (function call GetIPR).");
  EXPECT_EQ(why(probe->readInflow(model, INT32_MAX, inflow.get(), reason)),
            "The requested well number 2147483648 does not exist (function call GetIPR).");
  EXPECT_EQ(why(probe->imposeRate(model, -1, 1.0, reason)),
            "The requested well No. 0 does not exist (function call SetOpPt).");
  EXPECT_EQ(why(probe->readCurrent(model, 3, inflow.get(), reason)),
            "The requested well number 4 does not exist");
  Command(EXT_CLOSE_SIMULATOR);
  EXPECT_EQ(why(probe->advance(model, 1.0, reason)), "The simulation process is not running.");
  Set("CaseDetails.SimExeName", "/no/such/simulator");
  EXPECT_EQ(why(probe->restart(model, reason)),
            "Could not start the simulator process: <Could not start IX process>");
}

TEST_F(InflowLibrary, StepsACompositionalModelWithoutTheHostsInflow) {
  peer.components = {"C1", "C2"};
  ReadAll();
  peer.TakeOrders();
  probe->imposeRate(model, 0, 300.0, reason);
  ASSERT_EQ(Command(EXT_APPLY_OPERATING_POINTS), 0)
      << "as the host asks: no inflow was handed out, so the well is dead";
  EXPECT_NE(peer.TakeOrders()[0].find("VALUES{ALL_COMPLETIONS_SHUTIN"), std::string::npos);
  probe->imposeRate(model, 0, 300.0, reason);
  StepBy(1.0);
  peer.TakeOrders();
  ASSERT_EQ(probe->advance(model, 1.0, reason), 0) << reason;
  EXPECT_NE(peer.TakeOrders()[0].find("VALUES{OPEN"), std::string::npos);
}

TEST_F(InflowLibrary, SharesThePlaceInTheStoreFile) {
  std::string store = (folder / "case.store").string();
  const auto block = std::make_unique<CaseDataRecord>();
  auto& parent = static_cast<CExtModel*>(model)->ExportedVariables().Add(
      std::make_unique<CExportedVariableWellParent>());
  parent.WellName = "P1";
  EXPECT_EQ(Command(EXT_SET_STORE_FILE, store.data(), 1), 0)
      << "a file that isn't there yet is no failure";
  ASSERT_EQ(Command(EXT_SAVE_CASE_DATA, block->block, EXT_CASE_DATA_CAPACITY), 0);
  const std::string bytes = TestFolder::Read(store);
  EXPECT_EQ(bytes.find("probe's state"), 12u);
  static_cast<CExtModel*>(model)->ExportedVariables().RemoveAll();
  probe->calls.clear();
  Command(EXT_SET_STORE_FILE, store.data());
  EXPECT_EQ(probe->calls, Texts{});
  Command(EXT_SET_STORE_FILE, store.data(), 1);
  EXPECT_EQ(probe->calls, Texts{"loaded probe's state"});
  ASSERT_EQ(static_cast<CExtModel*>(model)->ExportedVariables().Size(), 1u);

  probe->leavesStateAlone = true;  // as where there is no library, or another one
  Command(EXT_SET_STORE_FILE, store.data(), 1);
  ASSERT_EQ(Command(EXT_SAVE_CASE_DATA, block->block, EXT_CASE_DATA_CAPACITY), 0);
  EXPECT_EQ(TestFolder::Read(store + ".backup"), bytes);
  Command(EXT_SAVE_CASE_DATA, block->block, EXT_CASE_DATA_CAPACITY);
  Command(EXT_SET_STORE_FILE, store.data(), 1);
  EXPECT_FALSE(std::filesystem::exists(store + ".backup2")) << "only what wasn't understood";
}

}  // namespace
}  // namespace gantry::test
