// The dialogs as a host without a toolkit of its own opens them: through the module's exported
// functions, worked by a person at the display.

#include <cstdio>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include "companions/fieldrun/program/program.h"
#include "fieldrun/case/case_reader.h"
#include "integration/real_run.h"
#include "platform/registry.h"
#include "platform/window.h"
#include "private_display.h"
#include "settings/machine_config.h"
#include "wells/static_well_data.h"

namespace gantry::test {
namespace {

using fieldrun::DriverModel;

constexpr const char* kCaseSettings = "Intersect Case Settings";

/// A window of this process on the display in DISPLAY, as a host has one for its dialogs.
class HostWindow {
 public:
  HostWindow() {
    if (xcb_connection_has_error(connection_) != 0) throw std::runtime_error("No display");
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, number_, screen.root, 0, 0, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual, 0, nullptr);
    xcb_map_window(connection_, number_);
    free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  }
  ~HostWindow() { xcb_disconnect(connection_); }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  uint32_t Number() const { return number_; }
  void* Handle() const { return reinterpret_cast<void*>(uintptr_t{number_}); }

 private:
  xcb_connection_t* connection_ = xcb_connect(nullptr, nullptr);
  uint32_t number_ = xcb_generate_id(connection_);
};

/// The first line that a command writes.
std::string Told(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  char line[200] = "";
  return std::fgets(line, sizeof line, pipe.get()) != nullptr ? line : "";
}

/// Someone at the display in DISPLAY turns to a dialog as soon as it is seen, and does there what
/// xdotool's commands say: the display itself makes what is pressed come in, as from a real
/// keyboard. The number of the window; none where it doesn't come.
std::string WorkAt(const std::string& title, const std::string& commands = {}) {
  const std::string window =
      Told("timeout 100 xdotool search --sync --onlyvisible --name '^" + title + "$'");
  if (!window.empty())
    Told("xdotool windowfocus " + std::to_string(std::stoul(window)) + " " + commands);
  return window;
}

/// Runs `host`, which blocks over its dialogs, while `work` is done on them in another thread.
void While(const std::function<void()>& host, const std::function<void()>& work) {
  const std::string dialogs = "'^(Intersect Case Settings|Configure|Export variables)$'";
  while (!Told("xdotool search --onlyvisible --name " + dialogs).empty()) {
    // One that is closed is still to go.
  }
  const std::jthread person(work);
  host();
}

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
  bool Open(ExtCommand command, const std::function<void()>& work) {
    bool isAccepted = false;
    While([&] { isAccepted = model->OpenDialog(command, host->Handle()); }, work);
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
  const char* keys;
  bool isStart;
  const char* closesUnconnected;
  const char* controlMode;
};

TEST_F(DialogsOfTheModule, EditACaseAndGoOnWithARunAfterStartAlone) {
  ASSERT_TRUE(RunsAfterAStart());
  model->CloseSimulator();
  model->LoadCase(model->SaveCase(), deck, true);  // whose next start does nothing
  std::ostringstream owner;
  owner << "0x" << std::hex << host->Number() << "\n";
  for (const Ending& ending : {Ending{"Escape", false, "0", "0"},
                               {"Return", false, "1", "1"},
                               {"Tab space", true, "0", "2"}}) {
    const bool isAccepted = Open(EXT_EDIT, [&] {
      const std::string dialog = WorkAt(kCaseSettings, "key --repeat 9 Tab");
      const std::string told = Told("xprop WM_TRANSIENT_FOR -id " + dialog);
      EXPECT_TRUE(told.ends_with(owner.str())) << told;
      WorkAt(kCaseSettings, std::string("key Down Tab space Tab ") + ending.keys);
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
    const auto choose = [&] {
      // All wells, all properties, and add.
      const std::string keys =
          "key Tab space Tab Tab Tab space Tab Tab space Tab Tab Tab Tab Tab Tab ";
      WorkAt("Export variables", keys + (isAccepted ? "space" : "Escape"));
    };
    EXPECT_EQ(Open(EXT_EDIT_PUBLISHED_VARIABLES, choose), isAccepted);
    EXPECT_EQ(model->PublishedVariables().size(), isAccepted ? 2u * 26u : 0u);
  }
}

TEST_F(DialogsOfTheModule, AreCancelledWhenTheDisplayGoesAndComeBackWithAnother) {
  EXPECT_FALSE(Open(EXT_EDIT, [this] {
    // The other computer, which the case takes at once, and the configuration.
    WorkAt(kCaseSettings, "key Down Tab space");
    EXPECT_NE(WorkAt("Configure"), "");
    display->End();
  }));
  EXPECT_EQ(Setting("ConnectionMode"), "0");
  StartDisplay();
  EXPECT_FALSE(Open(EXT_EDIT, [] { EXPECT_NE(WorkAt(kCaseSettings, "key Escape"), ""); }));
}

TEST_F(HostOnADisplay, HasAWindowForAsLongAsTheDisplayKnowsIt) {
  const HostWindow other;                          // keeps the display going
  const uintptr_t number = HostWindow().Number();  // of one that has gone
  EXPECT_TRUE(platform::IsWindow(host->Handle()));
  for (const uintptr_t none : {number, uintptr_t{0}, host->Number() | uintptr_t{1} << 32}) {
    EXPECT_FALSE(platform::IsWindow(reinterpret_cast<void*>(none))) << none;
  }
  display->End();
  EXPECT_FALSE(platform::IsWindow(host->Handle()));
}

TEST_F(HostOnADisplay, ConfiguresTheMachineAndIsToldOfAStart) {
  const TestFolder folder;
  auto module = fieldrun::ModuleApi::Load(GANTRY_MODULE);
  While([&] { EXPECT_EQ(module->ExtConfigure(host->Handle()), 0); },
        [] { WorkAt("Configure", "key Tab Tab 2 0 1 7 Tab Tab Tab 7 0 0 0 0 Return"); });
  void* model = nullptr;
  ExtErrorBlock error{};
  module->ExtCreateInstance(&model, &error);
  uint32_t changed = 7;
  While([&] { module->ExtCmd(model, host->Handle(), EXT_EDIT, &changed, 0, &error); },
        [] { WorkAt(kCaseSettings, "key --repeat 12 Tab key space"); });
  EXPECT_EQ(changed, 1u);
  module->ExtDestroyInstance(model, &error);
  module.reset();  // which writes the configuration
  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  EXPECT_EQ(key->ReadText("MPIExecutable"), "2017");
  EXPECT_EQ(key->ReadNumber("StartPort"), 9001u);
}

TEST_F(HostOnADisplay, KeepsTheControlThatIsChosenForACaseWithoutASimulator) {
  const TestFolder folder;
  const std::string path = fieldrun::test::ChangedExample(
      folder, "five_spot", "[[well]]",
      "[[well]]\nname = \"W\"\nkind = \"water_injector\"\nwater_rate = 1\n\n[[well]]");
  const std::string original = TestFolder::Read(path);
  for (const bool isChanged : {false, true}) {
    fieldrun::test::Outcome outcome;
    While(
        [&] {
          outcome = fieldrun::test::RunFieldrun(folder, {"edit", path});
        },
        [&] {
          const std::string keys = isChanged ? "Up Return" : "Return";
          WorkAt(kCaseSettings, "key --repeat 9 Tab key " + keys);
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
