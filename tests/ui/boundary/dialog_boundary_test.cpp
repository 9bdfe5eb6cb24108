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
#include "platform/window.h"
#include "private_display.h"
#include "settings/machine_config.h"
#include "ui/boundary/person.h"
#include "wells/static_well_data.h"

namespace gantry::test {
namespace {

using fieldrun::DriverModel;
using enum Key;

constexpr const char* kCaseSettings = "Intersect Case Settings";

class HostOnADisplay : public ::testing::Test {
 protected:
  void SetUp() override {
    StartDisplay();
    if (display == nullptr) GTEST_SKIP() << "no display: " << reason;
  }
  void StartDisplay() {
    display = PrivateDisplay::Start(reason);
    if (display != nullptr) host = std::make_unique<HostWindow>();
  }

  std::string reason;
  std::unique_ptr<PrivateDisplay> display;
  std::unique_ptr<HostWindow> host;
};

class DialogsOfTheModule : public HostOnADisplay {
 protected:
  /// Opens a dialog by its command, while `work` is done on it; whether it was accepted.
  bool Open(ExtCommand command, const std::function<void(const Person&)>& work) {
    bool isAccepted = false;
    Person().While([&] { isAccepted = model->OpenDialog(command, host->Handle()); }, work);
    return isAccepted;
  }
  std::string Setting(const std::string& field) {
    return model->Get("Intersect.CaseDetails." + field);
  }
  bool RunsAfterAStart() {
    model->StartSimulator();
    return model->Get("Intersect.IsRunning") == "1";
  }

  RealRun run;
  const std::string deck = run.Deck("odeh/ODEH.afi", 1).string();
  std::unique_ptr<DriverModel> model = run.Model(deck);
};

/// How a person leaves the case settings, from the list of downtimes.
struct Ending {
  std::vector<Key> keys;
  bool isStart;
  const char* closesUnconnected;
  const char* controlMode;
};

TEST_F(DialogsOfTheModule, EditACaseAndGoOnWithARunAfterStartAlone) {
  ASSERT_TRUE(RunsAfterAStart());
  model->CloseSimulator();
  model->LoadCase(model->SaveCase(), deck, true);  // whose next start does nothing
  for (const Ending& ending : {Ending{{kEscape}, false, "0", "0"},
                               {{kEnter}, false, "1", "1"},
                               {{kTab, kSpace}, true, "0", "2"}}) {
    const bool isAccepted = Open(EXT_EDIT, [&](const Person& person) {
      const uint32_t dialog = person.TurnTo(kCaseSettings);
      EXPECT_EQ(person.OwnerOf(dialog), host->Number());
      person.Press(kTab, 9);
      for (const Key key : {kDown, kTab, kSpace, kTab}) person.Press(key);
      for (const Key key : ending.keys) person.Press(key);
    });
    EXPECT_EQ(isAccepted, ending.isStart);
    EXPECT_EQ(Setting("CloseUnconnectedWells"), ending.closesUnconnected);
    EXPECT_EQ(model->Get("Intersect.StaticWell[{PROD}].OpMode"), ending.controlMode);
    EXPECT_EQ(RunsAfterAStart(), ending.isStart);
  }
}

TEST_F(DialogsOfTheModule, PublishWhatIsChosenOnlyWhenItIsAccepted) {
  ASSERT_TRUE(RunsAfterAStart());
  for (const bool isAccepted : {false, true}) {
    const auto choose = [&](const Person& person) {
      person.TurnTo("Export variables");
      for (const int tabs : {1, 3, 2}) {  // all wells, all properties, add
        person.Press(kTab, tabs);
        person.Press(kSpace);
      }
      person.Press(kTab, 6);
      person.Press(isAccepted ? kSpace : kEscape);
    };
    EXPECT_EQ(Open(EXT_EDIT_PUBLISHED_VARIABLES, choose), isAccepted);
    EXPECT_EQ(model->PublishedVariables().size(), isAccepted ? 2u * 26u : 0u);
  }
}

TEST_F(DialogsOfTheModule, AreCancelledWhenTheDisplayGoesAndComeBackWithAnother) {
  EXPECT_FALSE(Open(EXT_EDIT, [this](const Person& person) {
    person.TurnTo(kCaseSettings);
    person.Press(kDown);  // the other computer, which the case takes at once
    person.Press(kTab);
    person.Press(kSpace);
    EXPECT_NE(person.TurnTo("Configure"), 0u);
    display->End();
  }));
  EXPECT_EQ(Setting("ConnectionMode"), "0");
  StartDisplay();
  EXPECT_FALSE(Open(EXT_EDIT, [](const Person& person) {
    EXPECT_NE(person.TurnTo(kCaseSettings), 0u);
    person.Press(kEscape);
  }));
}

TEST_F(HostOnADisplay, HasAWindowForAsLongAsTheDisplayKnowsIt) {
  const auto isWindow = [](uintptr_t number) {
    return platform::IsWindow(reinterpret_cast<void*>(number));
  };
  const uintptr_t number = HostWindow().Number();  // of one that has gone
  const Person other;                              // the display lives as long as it has a client
  EXPECT_TRUE(platform::IsWindow(host->Handle()));
  for (const uintptr_t none : {number, uintptr_t{0}, host->Number() | uintptr_t{1} << 32}) {
    EXPECT_FALSE(isWindow(none)) << none;
  }
  display->End();
  EXPECT_FALSE(platform::IsWindow(host->Handle()));
}

TEST_F(HostOnADisplay, ConfiguresTheMachineAndIsToldOfAStart) {
  const TestFolder folder;
  auto module = fieldrun::ModuleApi::Load(GANTRY_MODULE);
  Person().While([&] { EXPECT_EQ(module->ExtConfigure(host->Handle()), 0); },
                 [](const Person& person) {
                   person.TurnTo("Configure");
                   person.Press(kTab, 2);
                   person.Type("2017");
                   person.Press(kTab, 3);
                   person.Type("70000");
                   person.Press(kEnter);
                 });
  void* model = nullptr;
  ExtErrorBlock error{};
  module->ExtCreateInstance(&model, &error);
  uint32_t changed = 7;
  Person().While([&] { module->ExtCmd(model, host->Handle(), EXT_EDIT, &changed, 0, &error); },
                 [](const Person& person) {
                   person.TurnTo(kCaseSettings);
                   person.Press(kTab, 12);
                   person.Press(kSpace);
                 });
  EXPECT_EQ(changed, 1u);
  module->ExtDestroyInstance(model, &error);
  module.reset();  // which writes the configuration
  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  EXPECT_EQ(key->ReadText("MPIExecutable"), "2017");
  EXPECT_EQ(key->ReadNumber("StartPort"), 9001u);
}

TEST_F(HostOnADisplay, KeepsTheControlThatIsChosenForACaseWithoutASimulator) {
  const TestFolder folder;
  const std::string path = fieldrun::test::ChangedExample(folder, "five_spot", "[case]", "[case]");
  const std::string original = TestFolder::Read(path);
  for (const bool isChanged : {false, true}) {
    fieldrun::test::Outcome outcome;
    Person().While(
        [&] {
          outcome = fieldrun::test::RunFieldrun(folder, {"edit", path});
        },
        [&](const Person& person) {
          person.TurnTo(kCaseSettings);
          person.Press(kTab, 9);
          if (isChanged) person.Press(kUp);
          person.Press(kEnter);
        });
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, isChanged ? "control = \"liquid\"\n" : "");
    EXPECT_EQ(TestFolder::Read(path) == original, !isChanged);
  }
  for (const fieldrun::WellSpec& well : fieldrun::ReadCase(path).wells) {
    EXPECT_EQ(well.control, well.Kind() == fieldrun::WellKind::kProducer ? kControlLiquid : 0);
  }
}

}  // namespace
}  // namespace gantry::test
