#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "toolkit/dialog_window.h"

namespace gantry {

/// The edges of a control that keep to the dialog's; bits of `CWrkResizableCtrl::Anchors`.
enum Anchor : uint32_t { kAnchorLeft = 1, kAnchorTop = 2, kAnchorRight = 4, kAnchorBottom = 8 };

/// The window edges that a user can drag, by the platform's numbers.
enum SizingEdgeCode : int {
  kNoEdge = 0,
  kEdgeLeft = 1,
  kEdgeRight = 2,
  kEdgeTop = 3,
  kEdgeTopLeft = 4,
  kEdgeTopRight = 5,
  kEdgeBottom = 6,
  kEdgeBottomLeft = 7,
  kEdgeBottomRight = 8
};

class CExtResizableDlg;

/// A window that takes the rectangle of a control wherever that goes.
class FollowerWindow {
 public:
  virtual ~FollowerWindow() = default;
  virtual void Move(const platform::PixelRect& rect) = 0;
  /// Itself, where it is a resizable dialog.
  virtual CExtResizableDlg* AsResizable() { return nullptr; }
};

struct CWrkResizableCtrl {
  uint32_t Anchors = 0;
  platform::PixelRect Rect;
  std::vector<FollowerWindow*> Followers;
};

/// Base of the dialogs that a user can resize: moves and stretches the registered controls with the
/// edge that is dragged. The two sides are not mirror images, on purpose: a control without a
/// horizontal bit moves with a drag of the left edge and stays with a drag of the right one.
class CExtResizableDlg : public platform::DialogHandler {
 public:
  using DialogHandler::DialogHandler;

  /// Before `OnOpen` of this class.
  void Register(int id, uint32_t anchors);
  /// Nothing happens unless the control is registered. The follower must outlive the dialog.
  void AddFollower(int id, FollowerWindow& follower);

  void OnOpen(platform::DialogWindow& window) override;
  void OnSizing(platform::DialogWindow& /*window*/, int edge) override { SizingEdge = edge; }
  void OnSize(platform::DialogWindow& window, platform::PixelSize size) override;

 protected:
  virtual void Disable(platform::DialogWindow& window, int id) { window.Enable(id, false); }
  virtual void EnableAgain(platform::DialogWindow& window, int id) { window.Enable(id, true); }

 private:
  void Measure(platform::DialogWindow& window, platform::PixelSize size);
  void Shift(CWrkResizableCtrl& control, int dx, int dy) const;
  void MoveFollowers(const CWrkResizableCtrl& control) const;

  std::map<int, CWrkResizableCtrl> Controls;
  bool Ready = false;                 ///< open
  bool Measured = false;              ///< the first rectangles have been taken
  int SizingEdge = kEdgeBottomRight;  ///< the last that was dragged
  platform::PixelSize PreviousSize;
};

}  // namespace gantry
