// The dialogs as a host without a toolkit of its own opens them: through the module's exported
// functions, worked by a person at the display.

#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "companions/fieldrun/program/program.h"
#include "fieldrun/case/case_reader.h"
#include "integration/real_run.h"
#include "platform/registry.h"
#include "private_display.h"
#include "settings/machine_config.h"
#include "ui/boundary/person.h"
#include "wells/static_well_data.h"

namespace gantry {
namespace {

using fieldrun::DriverModel;
using test::HostWindow;
using test::kDown;
using test::kEnter;
using test::kEscape;
using test::kTab;
using test::Person;

/// What a call of the module that opens a dialog came back with.
struct Answer {
  int32_t result = -100;
  uint32_t changed = 100;
  ExtErrorBlock error{};
};

class HostOnADisplay : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string reason;
    display = test::PrivateDisplay::Start(reason);
    if (display == nullptr) GTEST_SKIP() << "no display: " << reason;
    host = std::make_unique<HostWindow>();
  }

  std::unique_ptr<test::PrivateDisplay> display;
  std::unique_ptr<HostWindow> host;
};

class DialogsOfTheModule : public HostOnADisplay {
 protected:
  void SetUp() override {
    HostOnADisplay::SetUp();
    if (IsSkipped()) return;
    run = std::make_unique<test::RealRun>();
    ASSERT_EQ(Module().ExtCreateInstance(&model, &answer.error), 0);
    deck = run->Deck("odeh/ODEH.afi", 1).string();
    Set("FileName", deck);
  }
  void TearDown() override {
    if (model != nullptr) Module().ExtDestroyInstance(model, &answer.error);
  }

  const fieldrun::ModuleApi& Module() const { return run->Module(); }

  /// Opens a dialog by its command, while `work` is done on it.
  const Answer& Open(uint32_t command, const std::function<void(const Person&)>& work) {
    answer = {};
    Person().While(
        [&] {
          answer.result =
              Module().ExtCmd(model, host->Handle(), command, &answer.changed, 0, &answer.error);
        },
        work);
    return answer;
  }

  int32_t Command(uint32_t command, void* data = nullptr, uint32_t value = 0) {
    return Module().ExtCmd(model, nullptr, command, data, value, &answer.error);
  }
  std::string Get(const std::string& path) {
    GetPropertyRequest request{};
    request.path = path.c_str();
    EXPECT_EQ(Command(EXT_GET_PROPERTY, &request), 0) << path;
    return request.value;
  }
  std::string Setting(const std::string& field) { return Get("Intersect.CaseDetails." + field); }
  void Set(const std::string& field, const std::string& value) {
    const std::string path = "Intersect.CaseDetails." + field;
    SetPropertyRequest request{};
    request.path = path.c_str();
    request.value = value.c_str();
    EXPECT_EQ(Command(EXT_SET_PROPERTY, &request), 0) << path;
  }

  /// Makes the case one that was loaded: its next start does nothing.
  void LoadWhatIsSaved() {
    const auto record = std::make_unique<CaseDataRecord>();
    ASSERT_EQ(Command(EXT_SAVE_CASE_DATA, record->block, sizeof record->block), 0);
    record->length = sizeof record->block;
    record->casePath = deck.c_str();
    record->keepDatasetPath = 1;
    ASSERT_EQ(Command(EXT_LOAD_CASE_DATA, record.get()), 0) << answer.error.text;
  }
  bool RunsAfterAStart() {
    EXPECT_EQ(Command(EXT_START_SIMULATOR), 0) << answer.error.text;
    return Get("Intersect.IsRunning") == "1";
  }

  std::unique_ptr<test::RealRun> run;
  void* model = nullptr;
  std::string deck;
  Answer answer;
};

/// How a person leaves the case settings, from the list of downtimes.
struct Ending {
  std::vector<uint32_t> keys;
  int32_t result;
  uint32_t changed;
  const char* closesUnconnected;
  const char* controlMode;
  bool runsAfterAStart;
};

TEST_F(DialogsOfTheModule, EditACaseAndGoOnWithARunAfterStartAlone) {
  ASSERT_TRUE(RunsAfterAStart());
  const std::string controlMode = "Intersect.StaticWell[{PROD}].OpMode";
  Command(EXT_CLOSE_SIMULATOR);
  LoadWhatIsSaved();
  for (const Ending& ending : {Ending{{kEscape}, -1, 0, "0", "0", false},
                               {{kEnter}, -1, 0, "1", "1", false},
                               {{kTab, ' '}, 0, 1, "0", "2", true}}) {
    Open(EXT_EDIT, [&](const Person& person) {
      const uint32_t dialog = person.TurnTo("Intersect Case Settings");
      EXPECT_EQ(person.OwnerOf(dialog), host->Number());
      person.Press(kTab, 9);
      person.Press(kDown);
      person.Press(kTab);
      person.Press(' ');
      person.Press(kTab);
      for (const uint32_t key : ending.keys) person.Press(key);
    });
    EXPECT_EQ(answer.result, ending.result) << answer.error.text;
    EXPECT_EQ(answer.changed, ending.changed);
    EXPECT_EQ(Setting("CloseUnconnectedWells"), ending.closesUnconnected);
    EXPECT_EQ(Get(controlMode), ending.controlMode);
    EXPECT_EQ(RunsAfterAStart(), ending.runsAfterAStart);
  }
}

TEST_F(DialogsOfTheModule, PublishWhatIsChosenOnlyWhenItIsAccepted) {
  ASSERT_TRUE(RunsAfterAStart());
  for (const bool isAccepted : {false, true}) {
    Open(EXT_EDIT_PUBLISHED_VARIABLES, [&](const Person& person) {
      person.TurnTo("Export variables");
      for (const int tabs : {1, 3, 2}) {  // all wells, all properties, add
        person.Press(kTab, tabs);
        person.Press(' ');
      }
      person.Press(kTab, 6);
      person.Press(isAccepted ? uint32_t{' '} : kEscape);
    });
    EXPECT_EQ(answer.result, isAccepted ? 0 : 1);
    PublishedVariableRow row{};
    row.handle = -1;
    int count = 0;
    while (Command(EXT_ENUM_PUBLISHED_VARIABLES, &row) == 0) ++count;
    EXPECT_EQ(count, isAccepted ? 2 * 26 : 0);
  }
}

TEST_F(DialogsOfTheModule, AreCancelledWhenTheDisplayGoesAndComeBackWithAnother) {
  Open(EXT_EDIT, [this](const Person& person) {
    person.TurnTo("Intersect Case Settings");
    person.Press(kDown);  // the other computer, which the case takes at once
    person.Press(kTab);
    person.Press(' ');
    EXPECT_NE(person.TurnTo("Configure"), 0u);
    display->End();
  });
  EXPECT_EQ(answer.result, -1);
  EXPECT_EQ(answer.changed, 0u);
  EXPECT_EQ(Setting("ConnectionMode"), "0");

  std::string reason;
  display = test::PrivateDisplay::Start(reason);
  ASSERT_NE(display, nullptr) << reason;
  host = std::make_unique<HostWindow>();
  Open(EXT_EDIT, [](const Person& person) {
    EXPECT_NE(person.TurnTo("Intersect Case Settings"), 0u);
    person.Press(kTab);
    person.Press(kEscape);
  });
  EXPECT_EQ(answer.result, -1);
}

TEST_F(HostOnADisplay, ConfiguresTheMachine) {
  const test::TestFolder folder;
  auto module = fieldrun::ModuleApi::Load(GANTRY_MODULE);
  Person().While([&] { EXPECT_EQ(module->ExtConfigure(host->Handle()), 0); },
                 [](const Person& person) {
                   person.TurnTo("Configure");
                   person.Press(kTab, 2);
                   person.Type("/opt/MPI exec");
                   person.Press(kTab, 3);
                   person.Type("70000");
                   person.Press(kEnter);
                 });
  module.reset();  // which writes the configuration
  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  EXPECT_EQ(key->ReadText("MPIExecutable"), "/opt/MPI exec");
  EXPECT_EQ(key->ReadNumber("StartPort"), 9001u);
}

TEST_F(HostOnADisplay, KeepsTheControlThatIsChosenForACaseWithoutASimulator) {
  const test::TestFolder folder;
  const std::string path = fieldrun::test::ChangedExample(folder, "five_spot", "[case]", "[case]");
  const std::string original = test::TestFolder::Read(path);
  for (const bool isChanged : {false, true}) {
    fieldrun::test::Outcome outcome;
    Person().While(
        [&] {
          outcome = fieldrun::test::RunFieldrun(folder, {"edit", path});
        },
        [&](const Person& person) {
          person.TurnTo("Intersect Case Settings");
          person.Press(kTab, 9);
          if (isChanged) person.Press(test::kUp);
          person.Press(kEnter);
        });
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, isChanged ? "control = \"liquid\"\n" : "");
    EXPECT_EQ(test::TestFolder::Read(path) == original, !isChanged);
  }
  for (const fieldrun::WellSpec& well : fieldrun::ReadCase(path).wells) {
    EXPECT_EQ(well.control, well.Kind() == fieldrun::WellKind::kProducer ? kControlLiquid : 0);
  }
}

}  // namespace
}  // namespace gantry
