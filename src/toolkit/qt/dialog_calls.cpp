#include "toolkit/qt/dialog_calls.h"

namespace gantry::platform {

SentTemplate ToSend(const DialogTemplate& shape) {
  SentTemplate sent{shape.id, shape.caption, shape.width, shape.height, {}, shape.isResizable};
  for (const ControlRow& row : shape.controls) {
    std::optional<std::string> toolTip;
    if (row.toolTip != nullptr) toolTip = row.toolTip;
    sent.controls.push_back({row.kind, row.id, row.caption, row.place, row.style, toolTip});
  }
  return sent;
}

ReceivedTemplate::ReceivedTemplate(SentTemplate sent) : sent_(std::move(sent)) {
  for (const SentControl& control : sent_.controls) {
    rows_.push_back({control.kind, control.id, control.caption.c_str(), control.place,
                     control.style, control.toolTip ? control.toolTip->c_str() : nullptr});
  }
  template_ = {sent_.id, sent_.caption.c_str(), sent_.width, sent_.height,
               rows_,    sent_.isResizable};
}

}  // namespace gantry::platform
