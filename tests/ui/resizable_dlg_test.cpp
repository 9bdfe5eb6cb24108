#include <gtest/gtest.h>

#include "ui/ext_resizable_dlg.h"
#include "ui/memory_window.h"

namespace gantry::test {
namespace {

using namespace platform;
using enum ControlKind;

constexpr ControlRow kControls[] = {{kButton, 10, "", {100, 80, 50, 20}}};
constexpr DialogTemplate kTemplate = {1, "", 500, 300, kControls, true};

class OneControl : public CExtResizableDlg {
 public:
  explicit OneControl(uint32_t anchors) : CExtResizableDlg(kTemplate), anchors_(anchors) {}
  void OnOpen(DialogWindow& window) override {
    Register(10, anchors_);
    CExtResizableDlg::OnOpen(window);
  }
  void OnButton(DialogWindow&, int) override {}

 private:
  uint32_t anchors_;
};

/// Where the control is once an edge has been dragged.
PixelRect Dragged(OneControl& dialog, MemoryWindow& window, int edge, PixelSize by) {
  dialog.OnSizing(window, edge);
  window.size = {window.size.width + by.width, window.size.height + by.height};
  dialog.OnSize(window, window.size);
  return window.Rect(10);
}

void Open(OneControl& dialog, MemoryWindow& window) {
  dialog.OnOpen(window);
  dialog.OnSize(window, window.size);
}

TEST(ResizableDialog, MovesAControlWithoutAnchorsWithTheLeftAndTopEdgesAlone) {
  OneControl dialog(0);
  MemoryWindow window(dialog);
  Open(dialog, window);
  const PixelRect moved = {107, 89, 157, 109};
  EXPECT_EQ(Dragged(dialog, window, kEdgeBottomRight, {7, 9}), PixelRect(100, 80, 150, 100));
  EXPECT_EQ(Dragged(dialog, window, kEdgeTopLeft, {7, 9}), moved);
  EXPECT_EQ(Dragged(dialog, window, kEdgeBottomRight, {7, 9}), moved);
}

TEST(ResizableDialog, MovesFollowersAndTellsAFollowingDialogTheEdge) {
  struct Follower : FollowerWindow {
    void Move(const PixelRect& moved) override { rect = moved; }
    CExtResizableDlg* AsResizable() override { return &dialog; }
    PixelRect rect;
    OneControl dialog{kAnchorRight};
  } follower;
  OneControl dialog(15);
  dialog.AddFollower(10, follower);  // not registered yet: ignored
  MemoryWindow window(dialog), other(follower.dialog);
  Open(dialog, window);
  Open(follower.dialog, other);
  Dragged(dialog, window, kEdgeRight, {7, 0});
  EXPECT_EQ(follower.rect, PixelRect());
  dialog.AddFollower(10, follower);
  EXPECT_EQ(Dragged(dialog, window, kEdgeRight, {3, 0}), follower.rect);
  follower.dialog.OnSize(other, {530, 300});
  EXPECT_EQ(other.Rect(10).left, 130) << "by the edge that the leading dialog passed on";
}

}  // namespace
}  // namespace gantry::test
