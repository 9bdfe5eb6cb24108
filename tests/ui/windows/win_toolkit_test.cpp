// What only this toolkit has to do with: the system's code page, its windows' ends, tips and scroll
// bars.

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>

#include <gtest/gtest.h>

#include "platform/window.h"
#include "support/test_folder.h"
#include "ui/dialog_templates.h"
#include "ui/export_variables_dlg.h"
#include "ui/stub_case.h"
#include "win_desk.h"

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
  WinDesk desk(dialog);
  desk.Click(kBrowseDataset);
  desk.TypeWide(dataset.filename().wstring());
  desk.Press(Key::kEnter);
  const std::string picked = WindowText(desk.At(kFileName));
  EXPECT_EQ(picked.find('?'), std::string::npos) << picked;
  EXPECT_EQ(TestFolder::Read(picked), "text");
}

TEST_F(WinToolkit, ScrollsAListSidewaysWhereANameIsTooLong) {
  CExportedVariables exported;
  for (const size_t length : {2u, 200u}) {
    edited.wells.Items.emplace_back().Name = std::string(length, 'W');
    CExportVariablesDlg dialog(exported, edited.wells, false, config);
    const WinDesk desk(dialog);
    const HWND list = desk.At(export_id::kWells);
    RECT inside = {};
    ::GetClientRect(list, &inside);
    EXPECT_EQ(desk.Send(export_id::kWells, LB_GETHORIZONTALEXTENT) > inside.right, length == 200);
    EXPECT_EQ((::GetWindowLongPtrA(list, GWL_STYLE) & WS_HSCROLL) != 0, length == 200);
  }
}

TEST_F(WinToolkit, HasTipsThatStayForFifteenSeconds) {
  config.SimExecutable = "C:\\ix\\ix.exe";
  CCaseSettingsDlg dialog(edited, config);
  WinDesk desk(dialog);
  const HWND tips = ::FindWindowExA(nullptr, nullptr, TOOLTIPS_CLASSA, nullptr);
  EXPECT_EQ(::SendMessageA(tips, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 15000);
  for (const auto& [id, text] :
       std::map<int, std::string>{{kFileName, "Dataset, locatable by target computer."},
                                  {kDefaultSimulator, config.SimExecutable}}) {
    char shown[200] = "";
    TTTOOLINFOA tool = {};
    tool.cbSize = TTTOOLINFOA_V2_SIZE;
    tool.uFlags = TTF_IDISHWND;
    tool.hwnd = desk.Front();
    tool.uId = reinterpret_cast<UINT_PTR>(desk.At(id));
    tool.lpszText = shown;
    desk.InHost(
        [&] { ::SendMessageA(tips, TTM_GETTEXTA, sizeof shown, reinterpret_cast<LPARAM>(&tool)); });
    EXPECT_EQ(shown, text);
  }
}

TEST_F(WinToolkit, CancelsWhenTheHostsWindowGoesAndShowsNothingOverOneThatIsGone) {
  edited.settings.ConnectionMode = 1;
  CCaseSettingsDlg dialog(edited, config);
  WinDesk desk(dialog);
  edited.settings.ConnectionMode = 0;
  desk.InHost([&] { ::DestroyWindow(desk.Host()); });
  EXPECT_EQ(desk.Result(), kCancelButton);
  EXPECT_EQ(edited.settings.ConnectionMode, 1) << "restored";
  EXPECT_FALSE(platform::IsWindow(desk.Host()));
  EXPECT_EQ(DialogToolkit::Find()->Run(dialog, desk.Host()), kCancelButton);
}

TEST_F(WinToolkit, DrawsThePictureOverAWindowAndLeavesItsContextAsItWas) {
  const HWND window = MakeWindow(100, 100);
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
