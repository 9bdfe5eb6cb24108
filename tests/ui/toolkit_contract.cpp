// What every toolkit does for a dialog, with real windows, keys and clicks.

#include <gtest/gtest.h>

#include "support/test_folder.h"
#include "ui/add_property_dlg.h"
#include "ui/advanced_settings_dlg.h"
#include "ui/configure_dlg.h"
#include "ui/desk.h"
#include "ui/export_variables_dlg.h"
#include "ui/stub_case.h"

namespace gantry::test {
namespace {

using namespace platform;
using enum ControlKind;
using Texts = std::vector<std::string>;
using Rows = std::vector<size_t>;

enum : int { kPlain = 10, kDigits, kCheck, kDrop, kBox, kRows, kItems, kAct };

/// One of each kind.
constexpr ControlRow kControls[] = {{kGroup, kNoControl, "Group", {2, 2, 170, 30}},
                                    {kLabel, kNoControl, "Label", {7, 12, 30, 8}},
                                    {kEdit, kPlain, "", {40, 10, 60, 13}},
                                    {kEdit, kDigits, "", {104, 10, 60, 13}, kDigitsOnly},
                                    {kCheckBox, kCheck, "Check", {7, 35, 60, 10}},
                                    {kDropList, kDrop, "", {70, 35, 60, 13}},
                                    {kListBox, kBox, "", {7, 52, 60, 60}},
                                    {kListView, kRows, "", {70, 52, 100, 60}},
                                    {kTree, kItems, "", {175, 7, 90, 105}},
                                    {kButton, kAct, "Act", {7, 118, 50, 14}},
                                    {kButton, kOkButton, "OK", {60, 118, 50, 14}, kDefaultButton},
                                    {kButton, kCancelButton, "Cancel", {113, 118, 50, 14}}};
constexpr DialogTemplate kTemplate = {1, "Demo", 270, 138, kControls, true};

/// Keeps what it is told, and does what a test wants.
class Demo : public DialogHandler {
 public:
  const DialogTemplate& Template() const override { return kTemplate; }
  void OnOpen(DialogWindow& opened) override {
    window = &opened;
    if (open) open();
  }
  void OnButton(DialogWindow& /*window*/, int id) override {
    Tell("button", id);
    if (id == kAct && act) act();
    if (id == kOkButton) typed = {window->Text(kPlain), window->Text(kDigits)};
    if (id == kOkButton || id == kCancelButton) window->Close(id);
  }
  void OnSelection(DialogWindow& /*window*/, int id) override { Tell("selection", id); }
  void OnTreeCheck(DialogWindow& /*window*/, int /*id*/, const TreePlace& place) override {
    std::string text = "check " + std::to_string(place.parent);
    if (place.child) text += "." + std::to_string(*place.child);
    told.push_back(text);
  }
  void OnSizing(int edge) override { Tell("edge", edge); }
  void OnSize(DialogWindow& /*window*/, PixelSize newSize) override { size = newSize; }

  /// What came since it was asked last.
  Texts Told() { return std::exchange(told, {}); }

  DialogWindow* window = nullptr;
  std::function<void()> open, act;
  PixelSize size;
  Texts typed;

 private:
  void Tell(const char* event, int number) {
    told.push_back(std::string(event) + " " + std::to_string(number));
  }

  Texts told;
};

class Toolkit : public ::testing::Test {
 protected:
  int Work(const std::function<void(Desk&)>& work) { return AtDesk(demo, work); }
  Texts Told(Desk& desk) {
    Texts told;
    desk.InHost([&] { told = demo.Told(); });
    return told;
  }
  Rows Selected(Desk& desk, int list) {
    Rows rows;
    desk.InHost([&] { rows = demo.window->SelectedRows(list); });
    return rows;
  }

  TestFolder folder;
  Demo demo;
};

TEST_F(Toolkit, TakesWhatIsTypedBehindTheCaretAndOnlyDigitsWhereAsked) {
  const int result = Work([this](Desk& desk) {
    EXPECT_EQ(desk.Title(), "Demo");
    desk.InHost([this] {
      demo.window->SetText(kPlain, "C:\\ix & ");
      demo.window->PutCaretBehindText(kPlain);
    });
    desk.Type("more");
    desk.Press(Key::kTab);
    desk.Type("12letters34");
    desk.Press(Key::kEnter);
  });
  EXPECT_EQ(result, kOkButton);
  EXPECT_EQ(demo.typed, (Texts{"C:\\ix & more", "1234"}));
}

TEST_F(Toolkit, LeadsTheTabKeyThroughWhatIsEnabledAndGivesUpWithEscape) {
  demo.open = [this] { demo.window->Enable(kDrop, false); };
  const int result = Work([this](Desk& desk) {
    for (const int id : std::initializer_list<int>{kPlain, kDigits, kCheck, kBox, kRows, kItems,
                                                   kAct, kOkButton, kCancelButton, kPlain}) {
      EXPECT_EQ(desk.Focus(), id);
      desk.Press(Key::kTab);
    }
    desk.Click(kDrop);
    EXPECT_EQ(Told(desk), Texts{});
    desk.InHost([this] { demo.window->Focus(kCheck); });
    desk.Press(Key::kSpace);
    EXPECT_EQ(Told(desk), Texts{"button 12"});
    desk.InHost([this] {
      for (const bool isChecked : {true, false}) {
        EXPECT_EQ(demo.window->IsChecked(kCheck), isChecked);
        demo.window->SetChecked(kCheck, false);
      }
      demo.window->Enable(kOkButton, false);
    });
    desk.Press(Key::kEnter);
    EXPECT_EQ(Told(desk), Texts{}) << "a grey button isn't pressed by Enter";
    desk.Press(Key::kEscape);
  });
  EXPECT_EQ(result, kCancelButton);
}

TEST_F(Toolkit, TellsOfTheUsersChoiceInADropListAlone) {
  demo.open = [this] {
    demo.window->SetItems(kDrop, {"One", "Two"});
    EXPECT_EQ(demo.window->Selection(kDrop), -1);
    demo.window->Select(kDrop, 0);
  };
  Work([this](Desk& desk) {
    desk.InHost([this] {
      demo.window->Focus(kDrop);
      demo.window->Select(kDrop, 2);
      EXPECT_EQ(demo.window->Selection(kDrop), -1) << "there is none";
      demo.window->Select(kDrop, 0);
    });
    EXPECT_EQ(Told(desk), Texts{});
    desk.Press(Key::kDown);
    EXPECT_EQ(Told(desk), Texts{"selection 13"});
    desk.InHost([this] { EXPECT_EQ(demo.window->Selection(kDrop), 1); });
  });
}

TEST_F(Toolkit, SelectsRowsOfAListAndInvertsThem) {
  demo.open = [this] { demo.window->SetItems(kBox, {"a", "b", "c", "d", "e"}); };
  Work([this](Desk& desk) {
    desk.ClickRow(kBox, 1);
    desk.ClickRow(kBox, 2, true);
    EXPECT_EQ(Selected(desk, kBox), (Rows{1, 2}));
    desk.InHost([this] { demo.window->InvertSelection(kBox); });
    EXPECT_EQ(Selected(desk, kBox), (Rows{0, 3, 4}));
    desk.InHost([this] { demo.window->SelectAll(kBox); });
    EXPECT_EQ(Selected(desk, kBox).size(), 5u);
    desk.InHost([this] { demo.window->InvertSelection(kBox); });
    EXPECT_EQ(Selected(desk, kBox), Rows{});
    desk.InHost([this] {
      demo.window->SetItems(kBox, {});
      demo.window->InvertSelection(kBox);
    });
    EXPECT_EQ(Selected(desk, kBox), Rows{});
  });
}

TEST_F(Toolkit, KeepsTheRowThatIsSelectedWhateverItsText) {
  demo.open = [this] {
    demo.window->SetColumns(kRows, {{"Name", 60}, {"Unit", 60}});
    demo.window->AddRows(kRows, {{"a", "1"}, {"a", "2"}, {"b", "3"}}, kVariablePicture);
  };
  Work([this](Desk& desk) {
    desk.ClickRow(kRows, 1);
    desk.InHost([this] { demo.window->AddRows(kRows, {{"a", "4"}}, kVariablePicture); });
    EXPECT_EQ(Selected(desk, kRows), Rows{1});
    desk.InHost([this] { demo.window->RemoveRows(kRows, {0}); });
    EXPECT_EQ(Selected(desk, kRows), Rows{0});
    desk.InHost([this] { demo.window->RemoveRows(kRows, {0}); });
    EXPECT_EQ(Selected(desk, kRows), Rows{}) << "nobody chose another";
    desk.ClickRow(kRows, 1);
    EXPECT_EQ(Selected(desk, kRows), Rows{1}) << "two are left";
  });
}

/// Wells "W0" and so on with variables "a", "b", "c"; the data are numbers from 1 on.
std::vector<TreeItem> Wells(size_t count, bool isExpanded) {
  std::vector<TreeItem> items;
  for (size_t i = 0; i < count; ++i) {
    items.push_back({.text = "W" + std::to_string(i), .isExpanded = isExpanded, .data = 4 * i + 1});
    for (const char* text : {"a", "b", "c"}) {
      items[i].children.push_back(
          {.text = text, .data = items[i].data + items[i].children.size() + 1});
    }
  }
  return items;
}

TEST_F(Toolkit, TellsOfEveryToggleOfATreesBoxesOnce) {
  demo.open = [this] { demo.window->SetTree(kItems, Wells(100, true)); };
  Work([this](Desk& desk) {
    desk.ClickBox(kItems, {0, 1});
    EXPECT_TRUE(desk.ShowsCheck(kItems, {0, 1}));
    EXPECT_EQ(Told(desk), Texts{"check 0.1"});
    desk.ClickBox(kItems, {1, 0}, 2);
    EXPECT_FALSE(desk.ShowsCheck(kItems, {1, 0}));
    EXPECT_EQ(Told(desk), (Texts{"check 1.0", "check 1.0"}));
    desk.ClickItem(kItems, {1});
    EXPECT_EQ(Told(desk), Texts{}) << "the text is no box";
    desk.InHost([this] { demo.window->SetTreeChecked(kItems, {{1}, {1, 2}, {99, 2}}, true); });
    EXPECT_TRUE(desk.ShowsCheck(kItems, {1, 2}));
    desk.Press(Key::kSpace);
    EXPECT_EQ(Told(desk), Texts{"check 1"}) << "not of what a program checks";
    EXPECT_FALSE(desk.ShowsCheck(kItems, {1}));
    EXPECT_TRUE(desk.ShowsCheck(kItems, {99, 2})) << "out of sight until now";
    EXPECT_FALSE(desk.ShowsCheck(kItems, {99, 1}));
  });
}

TEST_F(Toolkit, LeavesBranchesAsTheUserHasThemWhenATreeIsSetAgain) {
  demo.open = [this] { demo.window->SetTree(kItems, Wells(3, true)); };
  Work([this](Desk& desk) {
    const auto open = [&desk] {
      std::string wells;
      for (const size_t well : {0u, 1u, 2u}) wells += desk.IsOpen(kItems, well) ? "+" : "-";
      return wells;
    };
    EXPECT_EQ(open(), "+++");
    desk.ClickItem(kItems, {1, 1});
    desk.InHost([this] { demo.window->ExpandTree(kItems, false); });
    EXPECT_EQ(open(), "---");
    std::vector<TreeItem> items = Wells(4, false);
    items.erase(items.begin());
    items[2].isExpanded = true;
    items[1].children[0].isChecked = true;
    desk.InHost([&] { demo.window->SetTree(kItems, items); });
    EXPECT_EQ(open(), "--+") << "closed, even over what was chosen, and only the new one open";
    desk.InHost([this] { demo.window->ExpandTree(kItems, true); });
    EXPECT_EQ(open(), "+++");
    EXPECT_TRUE(desk.ShowsCheck(kItems, {1, 0}));
    items.erase(items.begin());
    desk.InHost([&] { demo.window->SetTree(kItems, items); });
    EXPECT_TRUE(desk.IsOpen(kItems, 0));
  });
}

/// The number of an edge or a corner, by the side that it is on.
int EdgeCode(int across, int down) {
  const int column = across < 0 ? 1 : across > 0 ? 2 : 0;
  return column + (down < 0 ? 3 : down > 0 ? 6 : 0);
}

TEST_F(Toolkit, TellsWhichEdgeIsDraggedAndTakesMaximisingForNone) {
  for (const int place : {-4, -3, -2, -1, 1, 2, 3, 4}) {
    const int down = (place + 4) / 3 - 1, across = (place + 4) % 3 - 1;
    const std::string edge = "edge " + std::to_string(EdgeCode(across, down));
    Work([&](Desk& desk) {
      for (const bool isAfterMaximising : {false, true}) {
        const PixelSize before = demo.size;
        Told(desk);
        desk.DragEdge(across, down, {31, 17});
        const Texts told = Told(desk);
        ASSERT_FALSE(told.empty()) << edge;
        EXPECT_EQ(told.back(), edge);
        const PixelSize dragged = demo.size;
        EXPECT_EQ(dragged.width, before.width + (across != 0 ? 31 : 0));
        EXPECT_EQ(dragged.height, before.height + (down != 0 ? 17 : 0));
        for (const bool isMaximized : {true, false, true, false}) {
          if (isAfterMaximising) break;
          desk.Maximize(isMaximized);
          EXPECT_EQ(demo.size == dragged, !isMaximized);
        }
        EXPECT_EQ(Told(desk), Texts{}) << edge;
      }
    });
  }
}

TEST_F(Toolkit, MovesItsControlsAndShowsTheWaitCursorForAsLongAsItIsAskedTo) {
  std::vector<bool> shown;
  demo.act = [&] {
    const PixelRect place = {11, 12, 113, 34};
    demo.window->Move(kCheck, place);
    EXPECT_EQ(demo.window->Rect(kCheck), place);
    demo.window->Redraw();
    EXPECT_EQ(demo.window->ClientSize(), demo.size);
    for (const bool isWaiting : {true, false}) {
      demo.window->SetWaitCursor(isWaiting);
      demo.window->Pause(1);
      shown.push_back(ShowsWaitCursor());
    }
    EXPECT_FALSE(demo.window->ShowHelp((folder / "missing.chm").string(), 1));
  };
  Work([](Desk& desk) { desk.Click(kAct); });
  EXPECT_EQ(shown, (std::vector<bool>{true, false}));
}

TEST_F(Toolkit, ShowsMessagesAndOtherDialogsOverTheDialog) {
  Demo other;
  int result = 0;
  demo.act = [&] {
    demo.window->ShowMessage("A message");
    result = demo.window->RunDialog(other);
    demo.window->Focus(kDigits);
  };
  Work([&](Desk& desk) {
    desk.Click(kAct);
    EXPECT_EQ(desk.Message(), "A message");
    desk.Press(Key::kEnter);
    desk.Type("inner");
    desk.Press(Key::kEnter);
    EXPECT_EQ(desk.Focus(), kDigits);
  });
  EXPECT_EQ(result, kOkButton);
  EXPECT_EQ(other.typed[0], "inner");
}

TEST_F(Toolkit, PicksAFileInTheFolderByItsNameOrNone) {
  folder.Write("field one.afi", "");
  std::vector<std::optional<std::string>> picked;
  demo.act = [&] {
    picked.push_back(demo.window->AskForFile(
        {"afi", "Datasets (*.afi)|*.afi|All files (*.*)|*.*||", folder.Path().string()}));
  };
  Work([](Desk& desk) {
    desk.Click(kAct);
    desk.Type("field one.afi");
    desk.Press(Key::kEnter);
    desk.Click(kAct);
    desk.Press(Key::kEscape);
  });
  ASSERT_EQ(picked.size(), 2u);
  EXPECT_EQ(picked[0], (folder / "field one.afi").string());
  EXPECT_EQ(picked[1], std::nullopt);
}

/// The module's own dialogs: every text has room in its control, and all of a dialog on a display
/// of 1024 x 768 at 144 dots to the inch beside the taskbar.
TEST_F(Toolkit, CutsNothingOffTheModulesDialogs) {
  constexpr PixelSize kSmallScreen = {1024 * 96 / 144, (768 - 60) * 96 / 144};
  CIXConfig config;
  StubCase edited;
  CExportedVariables exported;
  CConfigureDlg configure(config);
  CAddProperty add(config);
  CIXAdvancedSettings advanced(edited.settings);
  CCaseSettingsDlg settings(edited, config);
  CExportVariablesDlg variables(exported, edited.wells, true, config);
  DialogHandler* const dialogs[] = {&configure, &add, &advanced, &settings, &variables};
  for (DialogHandler* dialog : dialogs) {
    AtDesk(*dialog, [&](Desk& desk) {
      EXPECT_EQ(desk.CutOffTexts(), Texts{}) << desk.Title();
      if (dialog != &variables) return;
      EXPECT_LE(desk.Size().width, kSmallScreen.width);
      EXPECT_LE(desk.Size().height, kSmallScreen.height);
    });
  }
}

}  // namespace
}  // namespace gantry::test
