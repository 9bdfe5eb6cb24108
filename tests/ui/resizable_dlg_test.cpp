#include <gtest/gtest.h>

#include "ui/ext_resizable_dlg.h"
#include "ui/memory_window.h"

namespace gantry::test {
namespace {

using namespace platform;
using enum ControlKind;

constexpr ControlRow kControls[] = {{kButton, 10, "", {100, 80, 50, 20}},
                                    {kButton, 11, "", {10, 10, 5, 5}}};
constexpr DialogTemplate kTemplate = {1, "", 500, 300, kControls, true};

/// One registered control, and one that isn't.
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

struct Drag {
  uint32_t anchors;
  int edge;
  int left, top, right, bottom;  ///< how far each edge goes when the window grows by 7 and 9
};

TEST(ResizableDialog, KeepsControlsToTheirAnchors) {
  for (const Drag& drag :
       {Drag{15, kEdgeTopLeft, 0, 0, 7, 9}, Drag{15, kEdgeBottomRight, 0, 0, 7, 9},
        Drag{9, kEdgeBottomRight, 0, 9, 0, 9}, Drag{9, kEdgeTopLeft, 0, 9, 0, 9},
        Drag{12, kEdgeBottomRight, 7, 9, 7, 9}, Drag{12, kEdgeTopLeft, 7, 9, 7, 9},
        Drag{11, kEdgeTopRight, 0, 0, 0, 9}, Drag{11, kEdgeBottomLeft, 0, 0, 0, 9},
        Drag{6, kEdgeBottomRight, 7, 0, 7, 0}, Drag{6, kEdgeTopLeft, 7, 0, 7, 0},
        Drag{0, kEdgeTopLeft, 7, 9, 7, 9}, Drag{0, kEdgeBottomRight, 0, 0, 0, 0},
        Drag{12, kEdgeRight, 7, 0, 7, 0}, Drag{12, kEdgeBottom, 0, 9, 0, 9},
        Drag{0, kEdgeLeft, 7, 0, 7, 0}, Drag{0, kEdgeTop, 0, 9, 0, 9},
        Drag{15, kNoEdge, 0, 0, 0, 0}, Drag{15, 9, 0, 0, 0, 0}, Drag{15, -1, 0, 0, 0, 0}}) {
    OneControl dialog(drag.anchors);
    MemoryWindow window(dialog);
    window.Open();
    window.Open();
    window.Drag(drag.edge, {507, 309});
    EXPECT_EQ(window.Rect(10),
              (PixelRect{100 + drag.left, 80 + drag.top, 150 + drag.right, 100 + drag.bottom}))
        << drag.anchors << " by " << drag.edge;
    EXPECT_EQ(window.Rect(11), (PixelRect{10, 10, 15, 15}));
  }
}

TEST(ResizableDialog, UsesTheLastDraggedEdgeForAChangeWithoutADragAndTheCornerBeforeAny) {
  OneControl dialog(kAnchorRight | kAnchorBottom);
  MemoryWindow window(dialog);
  window.Open();
  dialog.OnSize(window, {550, 370});
  EXPECT_EQ(window.Rect(10), (PixelRect{150, 150, 200, 170}));
  dialog.OnSize(window, {500, 300});
  window.Drag(kEdgeRight, {520, 300});
  dialog.OnSize(window, {600, 400});
  EXPECT_EQ(window.Rect(10), (PixelRect{200, 80, 250, 100}));
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
