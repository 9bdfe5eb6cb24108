// What only this toolkit has to do with: windows of other clients of the display, and fonts.

#include <QApplication>
#include <QHeaderView>
#include <QTreeWidget>
#include <QWindow>
#include <memory>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include "platform/window.h"
#include "support/test_folder.h"
#include "ui/configure_dlg.h"
#include "ui/desk.h"
#include "ui/dialog_templates.h"

namespace gantry {
namespace {

using platform::DialogToolkit;

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

TEST(QtToolkit, DrawsThePictureOnAWindowThatIsThereAndNothingOnceItIsGone) {
  ForeignWindow other;
  other.Raise();
  DialogToolkit::Find()->Draw(platform::kSimulatorPicture, other.Handle(), other.Handle());
  EXPECT_EQ(other.Pixel(50, 90), 0x1E78C8u) << "water at the foot of the picture";
  other.End();
  EXPECT_FALSE(platform::IsWindow(other.Handle()));
  DialogToolkit::Find()->Draw(platform::kSimulatorPicture, other.Handle(), other.Handle());
}

TEST(QtToolkit, GivesColumnsTheRoomThatTheirFontNeeds) {
  const test::TestFolder folder;
  CIXConfig config;
  const QFont usual = QApplication::font();
  std::vector<int> widths;
  for (const int factor : {1, 2}) {
    QFont font = usual;
    font.setPointSize(usual.pointSize() * factor);
    QApplication::setFont(font);
    CConfigureDlg dialog(config);
    test::AtDesk(dialog, [&](test::Desk& desk) {
      desk.InHost([&] {
        const auto* list = QApplication::activeModalWidget()->findChild<QTreeWidget*>(
            QString::number(configure_id::kProperties));
        widths.push_back(list->columnWidth(0));
        EXPECT_LT(list->header()->length(), list->width()) << "all columns are seen";
      });
    });
  }
  QApplication::setFont(usual);
  EXPECT_NEAR(widths[1], 2 * widths[0], widths[0] / 10);
}

TEST(QtToolkit, AddsTheExtensionToANameOnlyWhereThereIsNoFileWithoutIt) {
  const test::TestFolder folder;
  folder.Write("ix", "");
  folder.Write("tool.exe", "");
  CIXConfig config;
  config.SimExecutable = (folder / "old").string();
  CConfigureDlg dialog(config);
  test::AtDesk(dialog, [&](test::Desk& desk) {
    for (const int button : {configure_id::kBrowseSimulator, configure_id::kBrowseMpi}) {
      desk.Click(button);
      desk.Type(button == configure_id::kBrowseMpi ? (folder / "tool").string() : "ix");
      desk.Press(test::Key::kEnter);
    }
    desk.Click(platform::kOkButton);
  });
  EXPECT_EQ(config.SimExecutable, (folder / "ix").string());
  EXPECT_EQ(config.MPIExecutable, (folder / "tool.exe").string());
}

}  // namespace
}  // namespace gantry
