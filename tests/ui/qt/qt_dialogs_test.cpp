// The dialogs as a user of the display has them: real windows, real key presses and clicks.

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <QWindow>
#include <functional>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include "platform/dialog_window.h"
#include "platform/window.h"
#include "private_display.h"
#include "support/test_folder.h"
#include "ui/add_property_dlg.h"
#include "ui/advanced_settings_dlg.h"
#include "ui/case_settings_dlg.h"
#include "ui/configure_dlg.h"
#include "ui/dialog_templates.h"
#include "ui/export_variables_dlg.h"
#include "ui/stopped_case.h"

namespace gantry {
namespace {

using platform::DialogHandler;
using platform::DialogToolkit;
using platform::kCancelButton;
using platform::kOkButton;
using test::StoppedCase;

/// How long a display may take to answer, in milliseconds.
constexpr int kPatience = 100'000;

/// One open dialog, in a user's hands.
class OpenDialog {
 public:
  explicit OpenDialog(QWidget& dialog) : dialog_(dialog) {}

  template <class Widget>
  Widget* At(int id) const {
    return dialog_.findChild<Widget*>(QString::number(id));
  }
  void Type(int id, const char* text) const {
    auto* edit = At<QLineEdit>(id);
    QTest::mouseClick(edit, Qt::LeftButton);
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, QString::fromLatin1(text));
  }
  void Click(int id) const { QTest::mouseClick(At<QWidget>(id), Qt::LeftButton); }
  void ClickCheckBox(int id) const {
    QTest::mouseClick(At<QWidget>(id), Qt::LeftButton, {},
                      QPoint(8, At<QWidget>(id)->height() / 2));
  }
  /// Moves on in a drop list with the keyboard.
  void ChooseNext(int id) const {
    At<QWidget>(id)->setFocus();
    QTest::keyClick(At<QWidget>(id), Qt::Key_Down);
  }
  void Press(Qt::Key key) const {
    QWidget* const focus = dialog_.focusWidget();
    QTest::keyClick(focus != nullptr ? focus : &dialog_, key);
  }
  QWidget& Window() const { return dialog_; }

 private:
  QWidget& dialog_;
};

class QtDialogs : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    display = test::PrivateDisplay::Start(noDisplay);
    if (display == nullptr) return;
    static int count = 3;
    static char name[] = "test", option[] = "-platform", value[] = "xcb";
    static char* arguments[] = {name, option, value, nullptr};
    application = std::make_unique<QApplication>(count, arguments);
  }
  static void TearDownTestSuite() {
    application.reset();
    display.reset();
  }
  void SetUp() override {
    if (display == nullptr) GTEST_SKIP() << "no display: " << noDisplay;
    host = std::make_unique<QWidget>();
    host->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(host.get(), kPatience));
    ASSERT_NE(DialogToolkit::Find(), nullptr);
  }

  /// Runs the dialog while `user` works on it; a dialog that is left open then is cancelled.
  int Run(DialogHandler& dialog, const std::function<void(const OpenDialog&)>& user,
          void* parent = nullptr) {
    if (parent == nullptr) parent = reinterpret_cast<void*>(host->winId());
    QTimer::singleShot(0, host.get(), [&user] {
      QWidget* const window = QApplication::activeModalWidget();
      ASSERT_NE(window, nullptr);
      ASSERT_TRUE(QTest::qWaitForWindowExposed(window, kPatience));
      user(OpenDialog(*window));
      if (window == QApplication::activeModalWidget()) QTest::keyClick(window, Qt::Key_Escape);
    });
    return DialogToolkit::Find()->Run(dialog, parent);
  }

  inline static std::unique_ptr<test::PrivateDisplay> display;
  inline static std::unique_ptr<QApplication> application;
  inline static std::string noDisplay;
  test::TestFolder folder;
  CIXConfig config;
  std::unique_ptr<QWidget> host;
};

TEST_F(QtDialogs, TakeWhatIsTypedWhenEnterIsPressed) {
  CConfigureDlg dialog(config);
  const int result = Run(dialog, [](const OpenDialog& open) {
    EXPECT_EQ(open.Window().windowTitle(), QStringLiteral("Configure"));
    open.Type(configure_id::kSimExecutable, "/opt/ix");
    open.Type(configure_id::kStartPort, "letters");
    open.Press(Qt::Key_Return);
  });
  EXPECT_EQ(result, kOkButton);
  EXPECT_EQ(config.SimExecutable, "/opt/ix");
  EXPECT_EQ(config.StartPort, 9001);
}

TEST_F(QtDialogs, AddAPropertyThroughADialogOverTheDialogAndDeleteIt) {
  CConfigureDlg dialog(config);
  Run(dialog, [this](const OpenDialog& open) {
    QTimer::singleShot(0, host.get(), [] {
      const OpenDialog add(*QApplication::activeModalWidget());
      add.Type(add_property_id::kProperty, "WATER");
      QTimer::singleShot(0, &add.Window(), [] {
        auto* message = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(message, nullptr);
        EXPECT_EQ(message->text(),
                  QStringLiteral("Property name and display name must be provided"));
        QTest::keyClick(message, Qt::Key_Return);
      });
      add.Click(kOkButton);
      EXPECT_EQ(add.Window().focusWidget(), add.At<QWidget>(add_property_id::kDisplayName));
      add.Type(add_property_id::kDisplayName, "Water");
      add.ChooseNext(add_property_id::kUnit);
      add.Click(kOkButton);
    });
    open.Click(configure_id::kAdd);
    ASSERT_EQ(config.UserProperties.size(), 1u);
    EXPECT_EQ(config.UserProperties[0]->UnitFamily, 0);
    auto* list = open.At<QTreeWidget>(configure_id::kProperties);
    ASSERT_EQ(list->topLevelItemCount(), 1);
    EXPECT_EQ(list->topLevelItem(0)->text(1), QStringLiteral("Water"));
    EXPECT_EQ(list->columnWidth(0), 180);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(list->topLevelItem(0)).center());
    QTimer::singleShot(0, host.get(), [] {
      const OpenDialog add(*QApplication::activeModalWidget());
      add.Type(add_property_id::kProperty, "GAS");
      add.Type(add_property_id::kDisplayName, "Gas");
      add.Click(kOkButton);
    });
    open.Click(configure_id::kAdd);
    EXPECT_EQ(list->topLevelItemCount(), 2);
    open.Click(configure_id::kDelete);  // of the row that has stayed selected
  });
  ASSERT_EQ(config.UserProperties.size(), 1u);
  EXPECT_EQ(config.UserProperties[0]->DisplayName, "Gas");
}

TEST_F(QtDialogs, PickAFileByItsNameWithItsExtensionOrWithout) {
  folder.Write("ix", "");
  const std::string dataset = folder.Write("case.afi", "").string();
  StoppedCase edited;
  CCaseSettingsDlg dialog(edited, config);
  Run(dialog, [&](const OpenDialog& open) {
    for (const auto& [button, name] : {std::pair{case_settings_id::kBrowseSimulator, "ix"},
                                       {case_settings_id::kBrowseDataset, "case"}}) {
      QTimer::singleShot(0, host.get(), [this, typed = QString::fromLatin1(name)] {
        auto* picker = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(picker, nullptr);
        picker->setDirectory(QString::fromStdString(folder.Path().string()));
        auto* edit = picker->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        QTest::keyClicks(edit, typed);
        QTest::keyClick(edit, Qt::Key_Return);
        if (picker->isVisible()) QTest::keyClick(picker, Qt::Key_Escape);
      });
      open.Click(button);
    }
    EXPECT_EQ(edited.settings.SimExeName, (folder / "ix").string());
    EXPECT_EQ(edited.settings.FileName, dataset);
  });
}

TEST_F(QtDialogs, TakeTheAdvancedSettingByKeyboardAlone) {
  LinkSettings settings;
  CIXAdvancedSettings dialog(settings);
  EXPECT_EQ(Run(dialog,
                [](const OpenDialog& open) {
                  open.At<QWidget>(advanced_id::kStdLogging)->setFocus();
                  open.Press(Qt::Key_Space);
                  open.Press(Qt::Key_Return);
                }),
            kOkButton);
  EXPECT_TRUE(settings.StdLogging);
}

TEST_F(QtDialogs, EditACaseAndRestoreItOnEscape) {
  StoppedCase edited;
  edited.settings.FileName = "/cases/a.afi";
  edited.wells.Items.emplace_back().Name = "W";
  for (const bool isAccepted : {false, true}) {
    CCaseSettingsDlg dialog(edited, config);
    const int result = Run(dialog, [&](const OpenDialog& open) {
      EXPECT_FALSE(open.At<QWidget>(case_settings_id::kHeadNode)->isEnabled());
      open.ChooseNext(case_settings_id::kComputer);
      EXPECT_TRUE(open.At<QWidget>(case_settings_id::kHeadNode)->isEnabled());
      EXPECT_FALSE(open.At<QWidget>(case_settings_id::kBrowseDataset)->isEnabled());
      open.Type(case_settings_id::kHeadNodePort, "12letters34");
      open.Type(case_settings_id::kParallel, "600");
      open.ChooseNext(case_settings_id::kControlMode);
      open.ClickCheckBox(case_settings_id::kCloseUnconnected);
      EXPECT_EQ(open.At<QWidget>(case_settings_id::kStartStop)->toolTipDuration(), 15000);
      if (isAccepted) open.Click(case_settings_id::kStartStop);
    });
    EXPECT_EQ(result, isAccepted ? kOkButton : kCancelButton);
    EXPECT_EQ(dialog.StartRequested(), isAccepted);
    EXPECT_EQ(edited.settings.ConnectionMode, isAccepted ? 1 : 0);
    EXPECT_EQ(edited.settings.HeadNodePort, isAccepted ? 1234 : 7777);
    EXPECT_EQ(edited.settings.Parallel, isAccepted ? 512 : 1);
    EXPECT_EQ(edited.settings.CloseUnconnectedWells, isAccepted);
    EXPECT_EQ(edited.wells.Items[0].OpMode, isAccepted ? 1 : 0);
  }
}

TEST_F(QtDialogs, ChooseVariablesAndUnderstandTheCheckBoxesOfTheTree) {
  StaticWellDataCollection wells;
  for (const char* name : {"A", "B", "C"}) wells.Items.emplace_back().Name = name;
  CExportedVariables exported;
  CExportVariablesDlg dialog(exported, wells, false, config);
  Run(dialog, [](const OpenDialog& open) {
    auto* list = open.At<QListView>(export_id::kProperties);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualRect(list->model()->index(0, 0)).center());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      list->visualRect(list->model()->index(2, 0)).center());
    open.Click(export_id::kAllWells);
    open.Click(export_id::kAdd);
    open.ClickCheckBox(export_id::kSameName);
    auto* tree = open.At<QTreeView>(export_id::kVariables);
    const QModelIndex first = tree->model()->index(0, 0);
    ASSERT_EQ(tree->model()->rowCount(), 3);
    ASSERT_TRUE(tree->isExpanded(first));
    const QModelIndex child = tree->model()->index(1, 0, first);
    tree->setCurrentIndex(child);
    QTest::keyClick(tree, Qt::Key_Space);
    open.Click(export_id::kDelete);
    EXPECT_EQ(tree->model()->rowCount(tree->model()->index(2, 0)), 1) << "all of its name";
    open.Click(kOkButton);
  });
  ASSERT_EQ(exported.Size(), 3u);
  EXPECT_EQ(exported[2].Variables.Size(), 1u);
  EXPECT_EQ(exported[2].Variables[0].Label, "Bottom hole pressure");
}

/// Gives a window another place and size, as a window manager does when an edge is dragged.
void Configure(WId window, const QRect& place) {
  xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
  const uint32_t values[] = {static_cast<uint32_t>(place.x()), static_cast<uint32_t>(place.y()),
                             static_cast<uint32_t>(place.width()),
                             static_cast<uint32_t>(place.height())};
  xcb_configure_window(connection, static_cast<xcb_window_t>(window),
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT,
                       values);
  free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
  xcb_disconnect(connection);
}

TEST_F(QtDialogs, StretchTheTreeWithEveryEdgeAndKeepTheButtonsInTheCorner) {
  StaticWellDataCollection wells;
  CExportedVariables exported;
  CExportVariablesDlg dialog(exported, wells, false, config);
  Run(dialog, [](const OpenDialog& open) {
    QWidget& window = open.Window();
    const auto* tree = open.At<QWidget>(export_id::kVariables);
    const auto* list = open.At<QWidget>(export_id::kWells);
    const auto* ok = open.At<QWidget>(kOkButton);
    const auto* add = open.At<QWidget>(export_id::kAdd);
    const QRect addPlace = add->geometry();
    for (const QMargins& drag : {QMargins(30, 0, 0, 0), QMargins(0, 20, 0, 0),
                                 QMargins(0, 0, 30, 0), QMargins(0, 0, 0, 20)}) {
      const QRect before = window.windowHandle()->geometry();
      const QSize treeBefore = tree->size();
      const int listBefore = list->height();
      const QPoint corner(window.width() - ok->x(), window.height() - ok->y());
      const QRect after = before.marginsAdded(drag);
      Configure(window.winId(), after);
      ASSERT_TRUE(QTest::qWaitFor([&] { return window.size() == after.size(); }, kPatience))
          << window.width() << "x" << window.height() << " for " << after.width() << "x"
          << after.height();
      const QSize grown = after.size() - before.size();
      EXPECT_EQ(tree->size(), treeBefore + grown);
      EXPECT_EQ(list->height(), listBefore + grown.height());
      EXPECT_EQ(QPoint(window.width() - ok->x(), window.height() - ok->y()), corner);
      EXPECT_EQ(add->geometry(), addPlace);
    }
  });
}

TEST_F(QtDialogs, TakeTenThousandWells) {
  StaticWellDataCollection wells;
  for (int i = 0; i < 10000; ++i) wells.Items.emplace_back().Name = "W" + std::to_string(i);
  CExportedVariables exported;
  CExportVariablesDlg dialog(exported, wells, false, config);
  Run(dialog, [&](const OpenDialog& open) {
    open.Click(export_id::kAllWells);
    open.Click(export_id::kAllProperties);
    open.Click(export_id::kAdd);
    auto* tree = open.At<QTreeView>(export_id::kVariables);
    EXPECT_EQ(tree->model()->rowCount(), 10000);
    open.Click(export_id::kCollapseAll);
    EXPECT_FALSE(tree->isExpanded(tree->model()->index(9999, 0)));
    open.Click(export_id::kExpandAll);
    EXPECT_TRUE(tree->isExpanded(tree->model()->index(9999, 0)));
    open.Click(export_id::kInvertWells);
    open.Click(kOkButton);
  });
  EXPECT_EQ(exported.Size(), 10000u);
}

/// Every text has room in its control, whatever the dialog.
TEST_F(QtDialogs, CutNothingOff) {
  StoppedCase edited;
  CExportedVariables exported;
  CConfigureDlg configure(config);
  CAddProperty add(config);
  CIXAdvancedSettings advanced(edited.settings);
  CCaseSettingsDlg settings(edited, config);
  CExportVariablesDlg variables(exported, edited.wells, true, config);
  for (DialogHandler* dialog :
       std::initializer_list<DialogHandler*>{&configure, &add, &advanced, &settings, &variables}) {
    Run(*dialog, [](const OpenDialog& open) {
      for (const QWidget* control : open.Window().findChildren<QWidget*>()) {
        if (control->parentWidget() != &open.Window()) continue;
        EXPECT_TRUE(open.Window().rect().contains(control->geometry()));
        const QString text = control->property("text").toString();
        const int mark = qobject_cast<const QCheckBox*>(control) != nullptr ? 24 : 0;
        EXPECT_GE(control->width(), control->fontMetrics().horizontalAdvance(text) + mark)
            << text.toStdString();
        if (qobject_cast<const QComboBox*>(control) != nullptr) {
          EXPECT_GE(control->width(), control->minimumSizeHint().width());
        }
      }
    });
  }
}

/// A window that another client of the display has made.
class ForeignWindow {
 public:
  ForeignWindow() {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, id_, screen->root, 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    xcb_map_window(connection_, id_);
    Wait();
  }
  ~ForeignWindow() {
    if (connection_ != nullptr) End();
  }
  ForeignWindow(const ForeignWindow&) = delete;
  ForeignWindow& operator=(const ForeignWindow&) = delete;

  WId Id() const { return id_; }
  void* Handle() const { return reinterpret_cast<void*>(uintptr_t{id_}); }

  /// Above all others: only what is seen of a window can be drawn on.
  void Raise() {
    const uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_, id_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    Wait();
  }
  uint32_t Pixel(int16_t x, int16_t y) {
    xcb_get_image_reply_t* const image = xcb_get_image_reply(
        connection_,
        xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, id_, x, y, 1, 1, UINT32_MAX),
        nullptr);
    if (image == nullptr) return UINT32_MAX;
    const uint32_t pixel = *reinterpret_cast<uint32_t*>(xcb_get_image_data(image)) & 0xFFFFFF;
    free(image);
    return pixel;
  }
  void End() {
    xcb_destroy_window(connection_, id_);
    Wait();
    xcb_disconnect(connection_);
    connection_ = nullptr;
  }

 private:
  /// Until the display has done all that it was asked.
  void Wait() {
    free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  }

  xcb_connection_t* connection_ = xcb_connect(nullptr, nullptr);
  xcb_window_t id_ = xcb_generate_id(connection_);
};

TEST_F(QtDialogs, ShowOverAWindowOfAnotherClientOfTheDisplay) {
  ForeignWindow other;
  CConfigureDlg dialog(config);
  const int result = Run(
      dialog,
      [&other](const OpenDialog& open) {
        EXPECT_EQ(open.Window().windowHandle()->transientParent()->winId(), other.Id());
      },
      other.Handle());
  EXPECT_EQ(result, kCancelButton);
}

TEST_F(QtDialogs, DrawThePictureOnAWindowThatIsThereAndNothingOnceItIsGone) {
  ForeignWindow other;
  other.Raise();
  DialogToolkit::Find()->Draw(platform::kSimulatorPicture, other.Handle(), other.Handle());
  EXPECT_EQ(other.Pixel(50, 90), 0x1E78C8u) << "water at the foot of the picture";
  other.End();
  EXPECT_FALSE(platform::IsWindow(other.Handle()));
  DialogToolkit::Find()->Draw(platform::kSimulatorPicture, other.Handle(), other.Handle());
}

}  // namespace
}  // namespace gantry
