#pragma once

#include <algorithm>
#include <functional>
#include <initializer_list>

namespace gantry {

/// One button of a dialog, and what it does.
struct ButtonAction {
  int id;
  std::function<void()> act;
};

/// Does what the button of that id does; nothing for one that isn't among them.
inline void Press(int id, std::initializer_list<ButtonAction> buttons) {
  const auto* const button = std::ranges::find(buttons, id, &ButtonAction::id);
  if (button != buttons.end()) button->act();
}

}  // namespace gantry
