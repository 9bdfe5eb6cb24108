// The dialogs as a user of Windows has them: real windows, real keys and clicks.

#include <cstdlib>
#include <cstring>
#include <map>

#include <gtest/gtest.h>

#include "desk.h"
#include "platform/window.h"
#include "support/test_folder.h"
#include "ui/add_property_dlg.h"
#include "ui/advanced_settings_dlg.h"
#include "ui/case_settings_dlg.h"
#include "ui/configure_dlg.h"
#include "ui/dialog_templates.h"
#include "ui/export_variables_dlg.h"
#include "ui/stopped_case.h"
#include "window_texts.h"
//
#include <commctrl.h>

bool operator==(const RECT& a, const RECT& b) { return ::EqualRect(&a, &b) != 0; }

void PrintTo(const RECT& rect, std::ostream* out) {
  *out << rect.left << "," << rect.top << "-" << rect.right << "," << rect.bottom;
}

namespace gantry {
namespace {

using platform::DialogHandler;
using platform::DialogToolkit;
using platform::kCancelButton;
using platform::kOkButton;
using test::Desk;

constexpr int kMessageText = 0xFFFF;  ///< the system's id of a message's text

/// A case without a simulator process: it runs until it is stopped.
struct HeldCase : test::StoppedCase {
  bool IsRunning() override {
    cursors.push_back(::GetCursor());
    return isRunning && testsToStop-- > 0;
  }
  int32_t CloseSimulator() override {
    testsToStop = 1;
    cursors.clear();
    return 0;
  }

  std::vector<HCURSOR> cursors;  ///< as they were at each test
  bool isRunning = false;
  int testsToStop = 1'000'000;
};

class WinDialogs : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { ::SetProcessDPIAware(); }

  /// The ids of the controls that the tab key reaches, in its order.
  static std::vector<int> TabOrder(Desk& desk) {
    std::vector<int> ids;
    const HWND first = desk.Focus();
    do {
      ids.push_back(::GetDlgCtrlID(desk.Focus()));
      desk.Press(VK_TAB);
    } while (desk.Focus() != first);
    return ids;
  }

  test::TestFolder folder;
  CIXConfig config;
};

TEST_F(WinDialogs, TakeWhatIsTypedWhenEnterIsPressed) {
  CConfigureDlg dialog(config);
  Desk desk(dialog);
  desk.Type(configure_id::kSimExecutable, "C:\\ix\\ix.exe");
  desk.Type(configure_id::kStartPort, "letters");
  desk.Press(VK_RETURN);
  EXPECT_EQ(desk.Result(), kOkButton);
  EXPECT_EQ(config.SimExecutable, "C:\\ix\\ix.exe");
  EXPECT_EQ(config.StartPort, 9001);
}

TEST_F(WinDialogs, LeadTheTabKeyThroughTheControlsInReadingOrder) {
  HeldCase held;
  CConfigureDlg configure(config);
  CCaseSettingsDlg settings(held, config);
  CExportedVariables exported;
  CExportVariablesDlg variables(exported, held.wells, false, config);
  for (DialogHandler* dialog :
       std::initializer_list<DialogHandler*>{&configure, &settings, &variables}) {
    Desk desk(*dialog);
    std::vector<int> expected;
    for (const platform::ControlRow& row : dialog->Template().controls) {
      const bool isPassed = row.kind == platform::ControlKind::kGroup ||
                            row.kind == platform::ControlKind::kLabel || !desk.IsEnabled(row.id);
      if (!isPassed) expected.push_back(row.id);
    }
    EXPECT_EQ(TabOrder(desk), expected) << dialog->Template().caption;
    EXPECT_EQ(LOWORD(::SendMessageA(desk.Front(), DM_GETDEFID, 0, 0)), kOkButton);
    desk.Press(VK_ESCAPE);
    EXPECT_EQ(desk.Result(), kCancelButton);
  }
}

TEST_F(WinDialogs, AddAPropertyThroughADialogOverTheDialogAndDeleteIt) {
  CConfigureDlg dialog(config);
  Desk desk(dialog);
  const HWND configure = desk.Front();
  desk.Click(configure_id::kAdd);
  EXPECT_FALSE(::IsWindowEnabled(configure));
  desk.Type(add_property_id::kProperty, "WATER");
  desk.Press(VK_RETURN);
  EXPECT_EQ(desk.Text(kMessageText), "Property name and display name must be provided");
  desk.Press(VK_RETURN);
  EXPECT_EQ(desk.Focus(), desk.At(add_property_id::kDisplayName));
  desk.Type("Water");
  desk.Press(VK_TAB);
  desk.Press(VK_DOWN);
  desk.Click(kOkButton);
  ASSERT_EQ(desk.Front(), configure);
  ASSERT_EQ(config.UserProperties.size(), 1u);
  EXPECT_EQ(config.UserProperties[0]->DisplayName, "Water");
  EXPECT_EQ(config.UserProperties[0]->UnitFamily, 0);
  constexpr int kList = configure_id::kProperties;
  EXPECT_EQ(desk.Send(kList, LVM_GETITEMCOUNT), 1);
  EXPECT_EQ(desk.Send(kList, LVM_GETCOLUMNWIDTH, 0), test::Scaled(180));
  RECT row = {LVIR_LABEL, 0, 0, 0};
  desk.Send(kList, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
  desk.Click(desk.At(kList), {row.left + 5, (row.top + row.bottom) / 2});
  desk.Click(configure_id::kAdd);
  desk.Type("SALT");
  desk.Press(VK_TAB);
  desk.Type("Salt");
  desk.Press(VK_RETURN);
  EXPECT_EQ(desk.Send(kList, LVM_GETITEMCOUNT), 2);
  desk.Click(configure_id::kDelete);  // of the row that has stayed selected
  EXPECT_EQ(desk.Send(kList, LVM_GETITEMCOUNT), 1);
  desk.Press(VK_ESCAPE);
  ASSERT_EQ(config.UserProperties.size(), 1u) << "done already";
  EXPECT_EQ(config.UserProperties[0]->Property, "SALT");
}

TEST_F(WinDialogs, TakeTheAdvancedSettingByKeyboardAlone) {
  LinkSettings settings;
  CIXAdvancedSettings dialog(settings);
  Desk desk(dialog);
  desk.Press(VK_SPACE);
  desk.Press(VK_RETURN);
  EXPECT_EQ(desk.Result(), kOkButton);
  EXPECT_TRUE(settings.StdLogging);
}

TEST_F(WinDialogs, EditACaseAndRestoreItOnEscape) {
  HeldCase held;
  held.wells.Items.emplace_back().Name = "W";
  for (const bool isAccepted : {false, true}) {
    CCaseSettingsDlg dialog(held, config);
    Desk desk(dialog);
    EXPECT_FALSE(desk.IsEnabled(case_settings_id::kHeadNode));
    desk.Press(VK_DOWN);  // in "Computer", the first
    EXPECT_TRUE(desk.IsEnabled(case_settings_id::kHeadNode));
    EXPECT_FALSE(desk.IsEnabled(case_settings_id::kBrowseDataset));
    desk.Type(case_settings_id::kHeadNodePort, "12letters34");
    desk.Type(case_settings_id::kParallel, "600");
    desk.Click(case_settings_id::kCloseUnconnected);
    desk.Press(VK_TAB, {VK_SHIFT});
    desk.Press(VK_DOWN);  // in "Control mode", the one before
    desk.Press(VK_F4);    // opens its list
    desk.Press(VK_DOWN);
    desk.Press(VK_RETURN);
    if (isAccepted) {
      desk.Click(case_settings_id::kStartStop);
    } else {
      desk.Press(VK_ESCAPE);
    }
    EXPECT_EQ(desk.Result(), isAccepted ? kOkButton : kCancelButton);
    EXPECT_EQ(dialog.StartRequested(), isAccepted);
    EXPECT_EQ(held.settings.ConnectionMode, isAccepted ? 1 : 0);
    EXPECT_EQ(held.settings.HeadNodePort, isAccepted ? 1234 : 7777);
    EXPECT_EQ(held.settings.Parallel, isAccepted ? 512 : 1);
    EXPECT_EQ(held.settings.CloseUnconnectedWells, isAccepted);
    EXPECT_EQ(held.wells.Items[0].OpMode, isAccepted ? 2 : 0);
  }
}

TEST_F(WinDialogs, PickADatasetInTheDialogOfTheSystem) {
  HeldCase held;
  const std::string dataset = folder.Write("field one.afi", "").string();
  CCaseSettingsDlg dialog(held, config);
  Desk desk(dialog);
  const HWND settings = desk.Front();
  desk.Click(case_settings_id::kBrowseDataset);
  EXPECT_NE(desk.Front(), settings);
  desk.Type(dataset);
  desk.Press(VK_RETURN);
  ASSERT_EQ(desk.Front(), settings);
  EXPECT_EQ(desk.Text(case_settings_id::kFileName), dataset);
  EXPECT_EQ(held.settings.FileName, dataset);
  EXPECT_TRUE(desk.IsEnabled(kOkButton)) << "until the next refresh";
  desk.Click(case_settings_id::kIPRModel);
  desk.Press(VK_DOWN);
  desk.Press(VK_RETURN);
  EXPECT_FALSE(desk.IsEnabled(kOkButton));
  desk.Press(VK_RETURN);
  EXPECT_TRUE(desk.IsOpen()) << "a grey button isn't pressed by Enter";
}

TEST_F(WinDialogs, StopTheSimulatorUnderAWaitCursor) {
  HeldCase held;
  held.isRunning = true;
  CCaseSettingsDlg dialog(held, config);
  Desk desk(dialog);
  EXPECT_EQ(desk.Text(case_settings_id::kStartStop), "Stop");
  desk.Click(case_settings_id::kStartStop);
  EXPECT_EQ(desk.Text(case_settings_id::kStartStop), "Start");
  ASSERT_GE(held.cursors.size(), 2u);
  EXPECT_EQ(held.cursors[1], ::LoadCursorA(nullptr, IDC_WAIT));
  EXPECT_NE(held.cursors.back(), held.cursors[1]);
}

TEST_F(WinDialogs, TellUnderTheMouseWhatAControlIsFor) {
  config.SimExecutable = "C:\\ix\\ix.exe";
  HeldCase held;
  CCaseSettingsDlg dialog(held, config);
  Desk desk(dialog);
  const HWND tips = ::FindWindowExA(nullptr, nullptr, TOOLTIPS_CLASSA, nullptr);
  ASSERT_NE(tips, nullptr);
  EXPECT_EQ(::SendMessageA(tips, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 15000);
  for (const auto& [id, text] : std::map<int, std::string>{
           {case_settings_id::kFileName, "Dataset, locatable by target computer."},
           {case_settings_id::kDefaultSimulator, "C:\\ix\\ix.exe"}}) {
    desk.Until([&] {
      desk.Hover(id);
      return ::IsWindowVisible(tips) != 0;
    });
    char shown[200] = "";
    ::GetWindowTextA(tips, shown, sizeof shown);
    EXPECT_EQ(shown, text);
    desk.Click(case_settings_id::kHeadNodePort);
    desk.Until([&] { return ::IsWindowVisible(tips) == 0; });
  }
}

class ExportDialog : public WinDialogs {
 protected:
  void AddWells(int count) {
    for (int i = 1; i <= count; ++i) wells.Items.emplace_back().Name = "W" + std::to_string(i);
  }
  static constexpr int kTree = export_id::kVariables;

  static HTREEITEM Next(const Desk& desk, UINT which, HTREEITEM item = nullptr) {
    return reinterpret_cast<HTREEITEM>(
        desk.Send(kTree, TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(item)));
  }
  /// The `child`th variable of the `parent`th well.
  static HTREEITEM Item(const Desk& desk, int parent, int child) {
    HTREEITEM item = Next(desk, TVGN_ROOT);
    while (parent-- > 0) item = Next(desk, TVGN_NEXT, item);
    item = Next(desk, TVGN_CHILD, item);
    while (child-- > 0) item = Next(desk, TVGN_NEXT, item);
    return item;
  }
  static bool IsChecked(const Desk& desk, HTREEITEM item) {
    return desk.Send(kTree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item),
                     TVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2);
  }
  static void ClickText(Desk& desk, HTREEITEM item, int right = 5, int times = 1) {
    RECT text = {};
    std::memcpy(&text, &item, sizeof item);
    desk.Send(kTree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&text));
    desk.Click(desk.At(kTree), {text.left + right, (text.top + text.bottom) / 2}, times);
  }
  /// On the item's box, which stands left of its picture.
  static void ClickBox(Desk& desk, HTREEITEM item, int times = 1) {
    ClickText(desk, item, -16 - 3 - 8, times);
  }
  static void ClickRow(Desk& desk, int list, int row, std::initializer_list<WORD> held = {}) {
    RECT rect = {};
    desk.Send(list, LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&rect));
    desk.Click(desk.At(list), {10, (rect.top + rect.bottom) / 2}, 1, held);
  }

  StaticWellDataCollection wells;
  CExportedVariables exported;
};

TEST_F(ExportDialog, ChoosesVariablesAndUnderstandsTheCheckBoxesOfTheTree) {
  AddWells(3);
  CExportVariablesDlg dialog(exported, wells, false, config);
  Desk desk(dialog);
  ClickRow(desk, export_id::kProperties, 0);
  ClickRow(desk, export_id::kProperties, 2, {VK_CONTROL});
  desk.Click(export_id::kAllWells);
  desk.Click(export_id::kAdd);
  EXPECT_EQ(desk.Send(kTree, TVM_GETCOUNT), 9);
  EXPECT_EQ(desk.Send(export_id::kWells, LB_GETSELCOUNT), 3) << "stays for the next property";
  desk.Click(export_id::kSameName);
  ClickBox(desk, Item(desk, 0, 1));
  EXPECT_TRUE(IsChecked(desk, Item(desk, 0, 1)));
  EXPECT_TRUE(IsChecked(desk, Item(desk, 2, 1))) << "its namesake";
  EXPECT_FALSE(IsChecked(desk, Item(desk, 2, 0)));
  ClickBox(desk, Item(desk, 1, 1), 2);
  for (const int parent : {0, 1, 2}) {
    EXPECT_TRUE(IsChecked(desk, Item(desk, parent, 1))) << "once off, once on";
  }
  ClickText(desk, Item(desk, 1, 1));
  desk.Press(VK_SPACE);
  EXPECT_FALSE(IsChecked(desk, Item(desk, 0, 1)));
  desk.Press(VK_SPACE);
  desk.Click(export_id::kDelete);
  EXPECT_EQ(desk.Send(kTree, TVM_GETCOUNT), 6);
  desk.Click(export_id::kSameName);
  ClickBox(desk, Item(desk, 1, 0));
  desk.Click(export_id::kDelete);
  desk.Click(kOkButton);
  ASSERT_EQ(exported.Size(), 2u) << "W2 has lost its last";
  EXPECT_EQ(exported[1].WellName, "W3");
  EXPECT_EQ(exported[1].Variables.Size(), 1u);
  EXPECT_EQ(exported[1].Variables[0].Label, "Bottom hole pressure");
}

struct EdgeRow {
  const char* name;
  int across;  ///< -1 the left edge, 1 the right
  int down;    ///< -1 the top, 1 the bottom
};
constexpr int kWatched[] = {export_id::kVariables, export_id::kWells, export_id::kAllWells,
                            export_id::kAdd, kOkButton};
constexpr EdgeRow kEdges[] = {{"left", -1, 0},      {"top left", -1, -1},  {"top", 0, -1},
                              {"top right", 1, -1}, {"right", 1, 0},       {"bottom right", 1, 1},
                              {"bottom", 0, 1},     {"bottom left", -1, 1}};

RECT Grown(RECT rect, SIZE by) {
  return {rect.left, rect.top, rect.right + by.cx, rect.bottom + by.cy};
}
RECT Moved(RECT rect, SIZE by) {
  return {rect.left + by.cx, rect.top + by.cy, rect.right + by.cx, rect.bottom + by.cy};
}

TEST_F(ExportDialog, StretchesTheTreeWithEveryEdgeAndKeepsTheButtonsInTheCorner) {
  for (const EdgeRow& edge : kEdges) {
    CExportVariablesDlg dialog(exported, wells, false, config);
    Desk desk(dialog);
    std::map<int, RECT> before;
    for (const int id : kWatched) {
      before[id] = desk.Place(id);
    }
    const SIZE by = {edge.across != 0 ? 31 : 0, edge.down != 0 ? 17 : 0};
    desk.DragEdge(edge.across, edge.down, by);
    EXPECT_EQ(desk.Place(export_id::kVariables), Grown(before[export_id::kVariables], by))
        << edge.name;
    EXPECT_EQ(desk.Place(export_id::kWells), Grown(before[export_id::kWells], {0, by.cy}))
        << edge.name;
    EXPECT_EQ(desk.Place(export_id::kAllWells), Moved(before[export_id::kAllWells], {0, by.cy}))
        << edge.name;
    EXPECT_EQ(desk.Place(kOkButton), Moved(before[kOkButton], by)) << edge.name;
    EXPECT_EQ(desk.Place(export_id::kAdd), before[export_id::kAdd]) << edge.name;
  }
}

TEST_F(ExportDialog, TakesTenThousandWells) {
  AddWells(10000);
  CExportVariablesDlg dialog(exported, wells, false, config);
  Desk desk(dialog);
  desk.Click(export_id::kAllWells);
  ClickRow(desk, export_id::kProperties, 0);
  desk.Click(export_id::kAdd);
  EXPECT_EQ(desk.Send(kTree, TVM_GETCOUNT), 20000);
  desk.Click(export_id::kInvertWells);
  EXPECT_EQ(desk.Send(export_id::kWells, LB_GETSELCOUNT), 0);
  ClickRow(desk, export_id::kWells, 1);
  desk.Click(export_id::kInvertWells);
  EXPECT_EQ(desk.Send(export_id::kWells, LB_GETSELCOUNT), 9999);
  ClickBox(desk, Item(desk, 0, 0));
  desk.Click(export_id::kDelete);
  desk.Click(kOkButton);
  EXPECT_EQ(exported.Size(), 9999u);
}

TEST_F(ExportDialog, CollapsesAllAndExpandsAllAroundTheChosenVariable) {
  AddWells(2);
  CExportVariablesDlg dialog(exported, wells, false, config);
  Desk desk(dialog);
  desk.Click(export_id::kAllWells);
  desk.Click(export_id::kAllProperties);
  desk.Click(export_id::kAdd);
  const auto isOpen = [&desk](HTREEITEM item) {
    const auto handle = reinterpret_cast<WPARAM>(item);
    return (desk.Send(kTree, TVM_GETITEMSTATE, handle, TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
  };
  ClickText(desk, Item(desk, 0, 1));
  ClickBox(desk, Item(desk, 0, 2));
  desk.Click(export_id::kCollapseAll);
  EXPECT_FALSE(isOpen(Next(desk, TVGN_ROOT)));
  EXPECT_EQ(Next(desk, TVGN_CARET), Next(desk, TVGN_ROOT)) << "the well of what was chosen";
  desk.Click(export_id::kExpandAll);
  EXPECT_TRUE(isOpen(Next(desk, TVGN_ROOT)));
  EXPECT_TRUE(IsChecked(desk, Item(desk, 0, 2)));
}

TEST_F(WinDialogs, CutNothingOff) {
  HeldCase held;
  CExportedVariables exported;
  CConfigureDlg configure(config);
  CAddProperty add(config);
  CIXAdvancedSettings advanced(held.settings);
  CCaseSettingsDlg settings(held, config);
  CExportVariablesDlg variables(exported, held.wells, true, config);
  if (const char* dots = std::getenv("DOTS")) {
    ASSERT_EQ(std::to_string(::GetDpiForSystem()), dots);
  }
  for (DialogHandler* dialog :
       std::initializer_list<DialogHandler*>{&configure, &add, &advanced, &settings, &variables}) {
    const Desk desk(*dialog);
    EXPECT_EQ(test::CutOffTexts(desk.Front()), std::vector<std::string>{})
        << dialog->Template().caption;
    EXPECT_EQ(test::OverlappingControls(desk.Front()), std::vector<std::string>{})
        << dialog->Template().caption;
  }
}

TEST_F(WinDialogs, ShowNothingOverAWindowThatIsGone) {
  const HWND gone = test::MakeWindow(10, 10);
  ::DestroyWindow(gone);
  CConfigureDlg dialog(config);
  EXPECT_FALSE(platform::IsWindow(gone));
  EXPECT_EQ(DialogToolkit::Find()->Run(dialog, gone), kCancelButton);
}

TEST_F(WinDialogs, CancelWhenTheHostsWindowGoes) {
  HeldCase held;
  CCaseSettingsDlg dialog(held, config);
  Desk desk(dialog);
  desk.Press(VK_DOWN);
  EXPECT_EQ(held.settings.ConnectionMode, 1);
  desk.InHost([&] { ::DestroyWindow(desk.Host()); });
  EXPECT_EQ(desk.Result(), kCancelButton);
  EXPECT_EQ(held.settings.ConnectionMode, 0);
}

TEST_F(WinDialogs, DrawThePictureOverAWindowAndLeaveItsContextAsItWas) {
  const HWND window = test::MakeWindow(100, 100);
  const HDC context = ::GetDC(window);
  const int mode = ::GetStretchBltMode(context);
  DialogToolkit::Find()->Draw(platform::kSimulatorPicture, window, context);
  EXPECT_EQ(::GetPixel(context, 50, 90), RGB(0x1E, 0x78, 0xC8)) << "water at its foot";
  EXPECT_EQ(::GetStretchBltMode(context), mode);
  ::ReleaseDC(window, context);
  ::DestroyWindow(window);
}

}  // namespace
}  // namespace gantry
