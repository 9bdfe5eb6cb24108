// The variables that the user publishes to the host.

#include "model/ext_model.h"
#include "model/model_fixture.h"

namespace gantry::test {
namespace {

class Published : public ModelTest {
 protected:
  Published() {
    peer.wells = {{.name = "P1"}, {.name = "P2"}};
    peer.components = {"C1", "C2", "C3"};
    peer.variables = {{"OIL_PRODUCTION_RATE", 123.456789}};
  }

  /// Publishes a variable of a well, as the export dialog does.
  void Publish(const std::string& well, const std::string& label, uint32_t kind, bool writeable) {
    CExportedVariables& variables = static_cast<CExtModel*>(model)->ExportedVariables();
    CExportedVariableWellParent* parent = variables.FindWellParent(well);
    if (parent == nullptr) {
      parent = &variables.Add(std::make_unique<CExportedVariableWellParent>());
      parent->WellName = well;
    }
    auto& variable = parent->Variables.Add(std::make_unique<CExportedVariable>());
    variable.Key = "OIL_PRODUCTION_RATE";
    variable.SimulatorItem = writeable ? "OIL_PRODUCTION_RATE" : "";
    variable.Label = label;
    variable.Code = 30801;
    variable.Kind = kind;
  }

  Texts FullNames() {
    Texts names;
    PublishedVariableRow row = {};
    row.handle = -1;
    while (Command(EXT_ENUM_PUBLISHED_VARIABLES, &row) == 0) {
      names.push_back(row.fullName);
      EXPECT_EQ(names.back(), std::string(row.wellName) + ":" + row.shortName);
    }
    return names;
  }

  int32_t Evaluate(int32_t handle, std::string& value, bool write = false) {
    std::vector<char> space(sizeof(EvalPublishedRequest) + value.size());
    auto& request = *new (space.data()) EvalPublishedRequest;
    request.handle = handle;
    request.isWrite = write ? 1 : 0;
    char* const text = space.data() + offsetof(EvalPublishedRequest, value);
    value.copy(text, value.size());
    const int32_t result = Command(EXT_EVAL_PUBLISHED_VARIABLES, &request);
    value = text;
    return result;
  }
};

TEST_F(Published, TakeAHandleForEachElement) {
  StartSimulator();
  Publish("P1", "Oil rate", 1, true);
  Publish("P1", "Fraction", 0, false);
  Publish("P2", "Layer", 2, true);
  EXPECT_EQ(FullNames(), (Texts{"P1:Oil rate", "P1:Fraction[C1]", "P1:Fraction[C2]",
                                "P1:Fraction[C3]", "P2:Layer[0]", "P2:Layer[1]"}));
  PublishedVariableRow row = {};
  for (const int32_t last : {5, std::numeric_limits<int32_t>::max(), -100}) {
    row.handle = last;
    EXPECT_EQ(Command(EXT_ENUM_PUBLISHED_VARIABLES, &row), -1);
    EXPECT_EQ(row.handle, last);
  }
  row.handle = 0;
  ASSERT_EQ(Command(EXT_ENUM_PUBLISHED_VARIABLES, &row), 0);
  EXPECT_EQ(std::make_pair(row.isWriteable, row.code), std::make_pair(uint8_t{0}, 30801u));
}

TEST_F(Published, AreReadAndWrittenWhileTheSimulatorRuns) {
  Publish("P1", "Oil rate", 1, true);
  Publish("P1", "Cuml", 1, false);
  Publish("GONE", "Oil rate", 1, true);
  std::string value = "as it was";
  EXPECT_EQ(Evaluate(7, value), 0);
  EXPECT_EQ(value, "as it was");

  StartSimulator();
  EXPECT_EQ(FullNames().size(), 2u) << "a well that has gone takes its variables with it";
  EXPECT_EQ(Evaluate(0, value), 0) << Error();
  EXPECT_EQ(value, "123.457");
  value = "55." + std::string(80, '0') + "e1";
  EXPECT_EQ(Evaluate(0, value, true), 0) << Error();
  EXPECT_EQ(peer.TakeOrders(), Texts{"SET SETWCONSTRAINTS WELLNAME{P1} ITEMS{OIL_PRODUCTION_RATE} "
                                     "VALUES{550} SETTERS{USER}"});
  EXPECT_EQ(Outcome(Evaluate(1, value, true)), "Attempting to set a read-only variable (Cuml)");
  EXPECT_EQ(Outcome(Evaluate(2, value)), "Unexpected handle passed to EvalPublishedVariables");
  peer.CutAt("QWELLS");
  EXPECT_TRUE(Outcome(Evaluate(0, value)).starts_with("Error retrieving Oil rate: Could not "));
  EXPECT_TRUE(Outcome(Evaluate(0, value, true)).starts_with("Error writing to Oil rate: error: "));
}

TEST_F(Published, LeaveAConnectedWellAlone) {
  Publish("P1", "Oil rate", 1, true);
  StartSimulator();
  std::string value = "1";
  Set("StaticWell[{P1}].Connected", "1");
  EXPECT_EQ(Evaluate(0, value, true), 0) << "no callback has been given yet, and none is called";
  ASSERT_EQ(StartRun({0}), 0);
  EXPECT_EQ(Evaluate(0, value, true), 0);
  const std::string notice = "Could not set property on P1 as this well is connected";
  EXPECT_EQ(Told(), (Texts{notice, notice}));
  EXPECT_EQ(peer.TakeOrders(), Texts{});
}

TEST_F(Published, LoseTheirComponentsWithAChangeOfFluid) {
  Publish("P1", "Fraction", 0, false);
  Publish("P1", "Oil rate", 1, true);
  StartSimulator();
  EXPECT_EQ(FullNames(), Texts{"P1:Oil rate"}) << "the first fluid counts as a change";
  Publish("P1", "Fraction", 0, false);
  Command(EXT_CLOSE_SIMULATOR);
  EXPECT_EQ(StartRun({0}), 0) << Error();
  EXPECT_EQ(FullNames().size(), 4u);
  Command(EXT_CLOSE_SIMULATOR);
  peer.ChangeWells([this](auto&) { peer.components = {"C1", "CO2"}; });
  EXPECT_EQ(Outcome(StartRun({0})),
            "The simulator composition has changed, so the simulator must be reloaded");
}

TEST_F(Published, AreDeletedByTheHostsOddRule) {
  Publish("P1", "A", 2, true);
  Publish("P2", "B", 1, true);
  Publish("P3", "C", 1, true);
  EXPECT_EQ(Outcome(Command(EXT_DEL_PUBLISHED_VARIABLE, nullptr, 3)),
            "Bad handle passed to DelPublishedVariable()");
  EXPECT_EQ(Command(EXT_DEL_PUBLISHED_VARIABLE, nullptr, 1), 0);
  EXPECT_EQ(FullNames(), Texts{"P3:C"}) << "handle 1 is P1's second element, place 1 is P2";
  EXPECT_EQ(Command(EXT_DEL_PUBLISHED_VARIABLE, nullptr, static_cast<uint32_t>(-2)), 1);
  EXPECT_EQ(Command(EXT_DEL_PUBLISHED_VARIABLE, nullptr, static_cast<uint32_t>(-1)), 0);
  EXPECT_EQ(FullNames(), Texts{});
  EXPECT_EQ(Command(EXT_DEL_PUBLISHED_VARIABLE, nullptr, 0), 1);
}

}  // namespace
}  // namespace gantry::test
