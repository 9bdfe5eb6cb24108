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

TEST(ResizableDialog, MovesAControlWithoutAnchorsWithTheLeftAndTopEdgesAlone) {
  OneControl dialog(0);
  MemoryWindow window(dialog);
  window.Open();
  for (const int edge : {kEdgeBottomRight, kEdgeTopLeft, kEdgeBottomRight}) {
    window.Drag(edge, {window.size.width + 7, window.size.height + 9});
    const bool isFirst = window.size.width == 507;
    EXPECT_EQ(window.Rect(10),
              isFirst ? PixelRect(100, 80, 150, 100) : PixelRect(107, 89, 157, 109));
  }
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
  MemoryWindow window(dialog);
  window.Open();
  window.Drag(kEdgeRight, {507, 300});
  EXPECT_EQ(follower.rect, PixelRect());
  dialog.AddFollower(10, follower);
  window.Drag(kEdgeRight, {510, 300});
  EXPECT_EQ(follower.rect, (PixelRect{100, 80, 160, 100}));
  MemoryWindow other(follower.dialog);
  other.Open();
  follower.dialog.OnSize(other, {530, 300});
  EXPECT_EQ(other.Rect(10).left, 130) << "by the edge that the leading dialog passed on";
}

}  // namespace
}  // namespace gantry::test
