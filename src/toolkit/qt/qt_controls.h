#pragma once

#include <QLabel>
#include <QWidget>
#include <cmath>

#include "toolkit/dialog_template.h"

namespace gantry::platform {

/// A label that shortens a text that is too long for it in its middle.
class PathLabel : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// Dialog units in the font of a window.
class DialogUnits {
 public:
  explicit DialogUnits(const QWidget& window);
  int Across(int units) const { return static_cast<int>(std::lround(units * width_ / 4)); }
  int Down(int units) const { return static_cast<int>(std::lround(units * height_ / 8)); }
  /// What spans as much text here as so many pixels do in the font of Windows at 96 dots to the
  /// inch.
  int AcrossPixels(int pixels) const { return static_cast<int>(std::lround(pixels * width_ / 6)); }

 private:
  double width_;
  double height_;
};

/// The control of a row, in its place on the dialog.
QWidget* MakeControl(const ControlRow& row, const DialogUnits& units, QWidget* dialog);

}  // namespace gantry::platform
