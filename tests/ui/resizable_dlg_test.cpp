#include <gtest/gtest.h>

#include "ui/ext_resizable_dlg.h"
#include "ui/memory_window.h"

namespace gantry::test {
namespace {

using namespace platform;

constexpr ControlRow kControls[] = {{ControlKind::kButton, 10, "", {100, 80, 50, 20}}};
constexpr DialogTemplate kTemplate = {1, "", 500, 300, kControls, true};

/// An open dialog.
struct OneControl : CExtResizableDlg {
  explicit OneControl(uint32_t anchors) : CExtResizableDlg(kTemplate) {
    Register(10, anchors);
    OnOpen(window);
    OnSize(window, window.size);
  }
  void OnButton(DialogWindow&, int) override {}
  /// Where the control is once an edge has been dragged.
  PixelRect Dragged(int edge, PixelSize by) {
    OnSizing(window, edge);
    window.size = {window.size.width + by.width, window.size.height + by.height};
    OnSize(window, window.size);
    return window.Rect(10);
  }

  MemoryWindow window{*this};
};

TEST(ResizableDialog, MovesAControlWithoutAnchorsWithTheLeftAndTopEdgesAlone) {
  OneControl dialog(0);
  EXPECT_EQ(dialog.Dragged(kEdgeBottomRight, {7, 9}), PixelRect(100, 80, 150, 100));
  EXPECT_EQ(dialog.Dragged(kEdgeTopLeft, {7, 9}), PixelRect(107, 89, 157, 109));
  EXPECT_EQ(dialog.Dragged(kEdgeBottomRight, {7, 9}), PixelRect(107, 89, 157, 109));
}

TEST(ResizableDialog, MovesFollowersAndTellsAFollowingDialogTheEdge) {
  struct Follower : FollowerWindow {
    void Move(const PixelRect& moved) override { rect = moved; }
    CExtResizableDlg* AsResizable() override { return &dialog; }
    PixelRect rect;
    OneControl dialog{kAnchorRight};
  } follower;
  OneControl dialog(15);
  dialog.AddFollower(11, follower);  // of no control: ignored
  dialog.Dragged(kEdgeRight, {7, 0});
  EXPECT_EQ(follower.rect, PixelRect());
  dialog.AddFollower(10, follower);
  EXPECT_EQ(dialog.Dragged(kEdgeRight, {3, 0}), PixelRect(100, 80, 160, 100));
  EXPECT_EQ(follower.rect, PixelRect(100, 80, 160, 100));
  follower.dialog.OnSize(follower.dialog.window, {530, 300});
  EXPECT_EQ(follower.dialog.window.Rect(10).left, 130) << "by the edge that it was passed";
}

}  // namespace
}  // namespace gantry::test
