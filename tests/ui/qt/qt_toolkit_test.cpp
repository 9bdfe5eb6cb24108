// What only this toolkit has to do with: drawing on the display, fonts, and files of no extension.

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QScreen>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include <gtest/gtest.h>

#include "platform/window.h"
#include "support/test_folder.h"
#include "toolkit/qt/packet.h"
#include "ui/add_property_dlg.h"
#include "ui/advanced_settings_dlg.h"
#include "ui/configure_dlg.h"
#include "ui/desk.h"
#include "ui/dialog_templates.h"
#include "ui/export_variables_dlg.h"
#include "ui/stub_case.h"

namespace gantry::test {
namespace {

using namespace platform;

TEST(QtToolkit, DrawsThePictureOnAWindowThatIsThereAndNothingOnceItIsGone) {
  auto window = std::make_unique<QWidget>(nullptr, Qt::WindowStaysOnTopHint);
  window->resize(400, 400);  // more than a request of the display takes
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get(), 100'000));
  auto* const handle = reinterpret_cast<void*>(window->winId());
  DialogToolkit::Find()->Draw(kSimulatorPicture, handle, handle);
  const QImage seen = window->screen()->grabWindow(window->winId()).toImage();
  EXPECT_EQ(seen.pixel(200, 360) & 0xFFFFFFu, 0x1E78C8u) << "water at the foot of the picture";
  window.reset();
  QTest::qWait(0);
  EXPECT_FALSE(IsWindow(handle));
  DialogToolkit::Find()->Draw(kSimulatorPicture, handle, handle);
}

/// What a control takes for itself beside its text.
int TrimOf(const QWidget& control) {
  if (qobject_cast<const QCheckBox*>(&control) != nullptr) return 24;
  return qobject_cast<const QGroupBox*>(&control) != nullptr ? 16 : 0;
}

bool HasRoom(const QWidget& control) {
  if (qobject_cast<const QComboBox*>(&control) != nullptr) {
    return control.width() >= control.minimumSizeHint().width();
  }
  const QString text = control.property("text").toString() + control.property("title").toString();
  return control.width() >= control.fontMetrics().horizontalAdvance(text) + TrimOf(control);
}

TEST(QtToolkit, GivesEveryTextAndColumnTheRoomThatTheirFontNeeds) {
  const TestFolder folder;
  CIXConfig config;
  StubCase edited;
  CExportedVariables exported;
  const QFont usual = QApplication::font();
  int widths[3] = {};
  for (const int factor : {1, 2}) {
    QFont font = usual;
    font.setPointSize(usual.pointSize() * factor);
    QApplication::setFont(font);
    CConfigureDlg configure(config);
    CAddProperty add(config);
    CIXAdvancedSettings advanced(edited.settings);
    CCaseSettingsDlg settings(edited, config);
    CExportVariablesDlg variables(exported, edited.wells, true, config);
    const auto look = [&] {
      const QWidget& front = *QApplication::activeModalWidget();
      for (const auto* control : front.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        EXPECT_TRUE(HasRoom(*control)) << control->objectName().toStdString() << ", " << factor;
      }
      const auto* const list =
          front.findChild<QTreeWidget*>(QString::number(configure_id::kProperties));
      if (list == nullptr) return;
      widths[factor] = list->columnWidth(0);
      EXPECT_LT(list->header()->length(), list->width()) << "all columns are seen";
    };
    for (DialogHandler* dialog : std::initializer_list<DialogHandler*>{&configure, &add, &advanced,
                                                                       &settings, &variables}) {
      AtDesk(*dialog, [&](Desk& desk) { desk.InHost(look); });
    }
  }
  QApplication::setFont(usual);
  EXPECT_NEAR(widths[2], 2 * widths[1], widths[1] / 10);
}

TEST(QtToolkit, AddsTheExtensionToANameOnlyWhereThereIsNoFileWithoutIt) {
  const TestFolder folder;
  for (const char* name : {"ix", "ix.exe", "tool.exe"}) folder.Write(name, "");
  CIXConfig config;
  config.SimExecutable = (folder / "old").string();
  CConfigureDlg dialog(config);
  AtDesk(dialog, [&](Desk& desk) {
    for (const int button : {configure_id::kBrowseSimulator, configure_id::kBrowseMpi}) {
      desk.Click(button);
      desk.Type(button == configure_id::kBrowseMpi ? (folder / "tool").wstring() : L"ix");
      desk.Press("enter");
    }
    desk.Click(kOkButton);
  });
  EXPECT_EQ(config.SimExecutable, (folder / "ix").string());
  EXPECT_EQ(config.MPIExecutable, (folder / "tool.exe").string());
}

TEST(Packet, GivesATextThatMayBeMissing) {
  const std::optional<std::string> text = "a.afi";
  EXPECT_EQ(Packet(Packet().Put(text).Bytes()).Take<std::optional<std::string>>(), text);
}

/// Turns to a topic of a help file as soon as it is open.
struct HelpAsker : CConfigureDlg {
  using CConfigureDlg::CConfigureDlg;
  void OnOpen(platform::DialogWindow& window) override { isShown = window.ShowHelp(help, 13930); }

  std::string help;
  bool isShown = false;
};

TEST(QtToolkit, TurnsToATopicInTheViewerThatCan) {
  const test::TestFolder folder;
  const auto viewer = folder.Write("xchm",
                                   "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$0.part\"\n"
                                   "mv \"$0.part\" \"$0.called\"\n");
  std::filesystem::permissions(viewer, std::filesystem::perms::owner_all);
  const std::string help = folder.Write("Tessel.chm", "").string();
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", QByteArray::fromStdString(folder.Path().string()) + ":" + path);
  CIXConfig config;
  HelpAsker dialog(config);
  dialog.help = help;
  test::AtDesk(dialog, [](test::Desk& desk) { desk.Click(platform::kCancelButton); });
  qputenv("PATH", path);
  EXPECT_TRUE(dialog.isShown);
  const auto called = folder / "xchm.called";
  ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(called); }, 100'000));
  EXPECT_EQ(folder.Read(called), "-c\n13930\n" + help + "\n");
}

}  // namespace
}  // namespace gantry::test
