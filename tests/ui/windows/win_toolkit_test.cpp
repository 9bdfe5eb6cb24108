// What only this toolkit has to do with: the system's code page, its windows' ends, tips and scroll
// bars.

#include <filesystem>
#include <fstream>
#include <memory>

#include <gtest/gtest.h>

#include "platform/windows/win32.h"
#include "support/test_folder.h"
#include "ui/desk.h"
#include "ui/dialog_templates.h"
#include "ui/export_variables_dlg.h"
#include "ui/stub_case.h"
//
#include <commctrl.h>

namespace gantry::test {
namespace {

using namespace case_settings_id;
using namespace platform;

class WinToolkit : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { ::SetProcessDPIAware(); }

  TestFolder folder;
  CIXConfig config;
  StubCase edited;
};

TEST_F(WinToolkit, PicksAFileOutsideTheCodePageByItsShortName) {
  const std::filesystem::path dataset = folder.Path() / L"\u0424\u041E\u041D\u0414.afi";
  std::ofstream(dataset) << "text";
  edited.settings.FileName = (folder / "other.afi").string();
  CCaseSettingsDlg dialog(edited, config);
  AtDesk(dialog, [&](Desk& desk) {
    desk.Click(kBrowseDataset);
    desk.Type(dataset.filename().wstring());
    desk.Press("enter");
    char picked[MAX_PATH] = "";
    desk.InHost([&] { ::GetDlgItemTextA(::GetActiveWindow(), kFileName, picked, sizeof picked); });
    EXPECT_EQ(std::string(picked).find('?'), std::string::npos) << picked;
    EXPECT_EQ(TestFolder::Read(picked), "text");
  });
}

TEST_F(WinToolkit, ScrollsAListSidewaysWhereANameIsTooLong) {
  CExportedVariables exported;
  for (const size_t length : {2u, 200u}) {
    edited.wells.Items.emplace_back().Name = std::string(length, 'W');
    CExportVariablesDlg dialog(exported, edited.wells, false, config);
    AtDesk(dialog, [&](Desk& desk) {
      desk.InHost([&] {
        const HWND list = ::GetDlgItem(::GetActiveWindow(), export_id::kWells);
        RECT inside = {};
        ::GetClientRect(list, &inside);
        const LRESULT extent = ::SendMessageA(list, LB_GETHORIZONTALEXTENT, 0, 0);
        EXPECT_EQ(extent > inside.right, length == 200);
        EXPECT_EQ((::GetWindowLongPtrA(list, GWL_STYLE) & WS_HSCROLL) != 0, length == 200);
      });
    });
  }
}

TEST_F(WinToolkit, HasTipsThatStayForFifteenSeconds) {
  config.SimExecutable = "C:\\ix\\ix.exe";
  CCaseSettingsDlg dialog(edited, config);
  const auto tipOf = [](int id) {
    const HWND tips = ::FindWindowExA(nullptr, nullptr, TOOLTIPS_CLASSA, nullptr);
    EXPECT_EQ(::SendMessageA(tips, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 15000);
    char shown[200] = "";
    TTTOOLINFOA tool = {};
    tool.cbSize = TTTOOLINFOA_V2_SIZE;
    tool.uFlags = TTF_IDISHWND;
    tool.hwnd = ::GetActiveWindow();
    tool.uId = reinterpret_cast<UINT_PTR>(::GetDlgItem(tool.hwnd, id));
    tool.lpszText = shown;
    ::SendMessageA(tips, TTM_GETTEXTA, sizeof shown, reinterpret_cast<LPARAM>(&tool));
    return std::string(shown);
  };
  AtDesk(dialog, [&](Desk& desk) {
    desk.InHost([&] {
      EXPECT_EQ(tipOf(kFileName), "Dataset, locatable by target computer.");
      EXPECT_EQ(tipOf(kDefaultSimulator), config.SimExecutable);
    });
  });
}

TEST_F(WinToolkit, CancelsWhenTheHostsWindowGoesAndShowsNothingOverOneThatIsGone) {
  edited.settings.ConnectionMode = 1;
  CCaseSettingsDlg dialog(edited, config);
  HWND host = nullptr;
  const int result = AtDesk(dialog, [&](Desk& desk) {
    edited.settings.ConnectionMode = 0;
    desk.InHost([&] {
      host = ::GetWindow(::GetActiveWindow(), GW_OWNER);
      ::DestroyWindow(host);
    });
  });
  EXPECT_EQ(result, kCancelButton);
  EXPECT_EQ(edited.settings.ConnectionMode, 1) << "restored";
  EXPECT_EQ(DialogToolkit::Find()->Run(dialog, host), kCancelButton);
}

TEST_F(WinToolkit, DrawsThePictureOverAWindowAndLeavesItsContextAsItWas) {
  const HWND window = ::CreateWindowExA(0, "Static", "", WS_POPUP | WS_VISIBLE, 300, 200, 100, 100,
                                        nullptr, nullptr, nullptr, nullptr);
  const HDC context = ::GetDC(window);
  const int mode = ::GetStretchBltMode(context);
  DialogToolkit::Find()->Draw(kSimulatorPicture, window, context);
  EXPECT_EQ(::GetPixel(context, 50, 90), RGB(0x1E, 0x78, 0xC8)) << "water at its foot";
  EXPECT_EQ(::GetStretchBltMode(context), mode);
  ::ReleaseDC(window, context);
  ::DestroyWindow(window);
}

}  // namespace
}  // namespace gantry::test
