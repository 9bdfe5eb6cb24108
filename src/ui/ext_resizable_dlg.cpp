#include "ui/ext_resizable_dlg.h"

namespace gantry {
namespace {

/// What a drag of one edge does to one axis.
enum class Side { kNone, kNear, kFar };

struct EdgeSides {
  Side horizontal;
  Side vertical;
};

/// The code of an edge counts left and right by 1 and 2, and top and bottom by 3 and 6.
EdgeSides SidesOf(int edge) {
  if (edge < kNoEdge || edge > kEdgeBottomRight) edge = kNoEdge;
  return {static_cast<Side>(edge % 3), static_cast<Side>(edge / 3)};
}

/// Moves the two edges of a control along one axis; `holdsNear` and `followsFar` are its anchors.
void ShiftAxis(Side side, bool holdsNear, bool followsFar, int change, int& near, int& far) {
  const bool isMoved =
      (side == Side::kNear && !holdsNear) || (side == Side::kFar && followsFar && !holdsNear);
  const bool isGrown = side != Side::kNone && followsFar && holdsNear;
  if (isMoved) near += change;
  if (isMoved || isGrown) far += change;
}

}  // namespace

void CExtResizableDlg::Register(int id, uint32_t anchors) { Controls[id].Anchors = anchors; }

void CExtResizableDlg::AddFollower(int id, FollowerWindow& follower) {
  const auto found = Controls.find(id);
  if (found != Controls.end()) found->second.Followers.push_back(&follower);
}

void CExtResizableDlg::OnOpen(platform::DialogWindow& /*window*/) { Ready = true; }

void CExtResizableDlg::OnSize(platform::DialogWindow& window, platform::PixelSize size) {
  if (!Ready) return;
  if (!Measured) return Measure(window, size);
  const int dx = size.width - PreviousSize.width;
  const int dy = size.height - PreviousSize.height;
  for (auto& [id, control] : Controls) {
    Shift(control, dx, dy);
    window.Move(id, control.Rect);
    MoveFollowers(control);
  }
  PreviousSize = size;
  window.Redraw();
}

void CExtResizableDlg::Measure(platform::DialogWindow& window, platform::PixelSize size) {
  for (auto& [id, control] : Controls) control.Rect = window.Rect(id);
  PreviousSize = size;
  Measured = true;
}

void CExtResizableDlg::Shift(CWrkResizableCtrl& control, int dx, int dy) const {
  const EdgeSides sides = SidesOf(SizingEdge);
  const uint32_t anchors = control.Anchors;
  ShiftAxis(sides.horizontal, anchors & kAnchorLeft, anchors & kAnchorRight, dx, control.Rect.left,
            control.Rect.right);
  ShiftAxis(sides.vertical, anchors & kAnchorTop, anchors & kAnchorBottom, dy, control.Rect.top,
            control.Rect.bottom);
}

void CExtResizableDlg::MoveFollowers(const CWrkResizableCtrl& control) const {
  for (FollowerWindow* follower : control.Followers) {
    if (CExtResizableDlg* dialog = follower->AsResizable()) dialog->SizingEdge = SizingEdge;
    follower->Move(control.Rect);
  }
}

}  // namespace gantry
