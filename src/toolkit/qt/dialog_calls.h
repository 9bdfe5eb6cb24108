#pragma once

#include <concepts>
#include <tuple>
#include <type_traits>

#include "toolkit/dialog_window.h"

// What goes over the link between a dialog's handler, in the host's process, and its window, in
// that of the dialogs. Open dialogs are known by their depth: 0 for the first, 1 for one over it.

namespace gantry::platform {

template <class Value, class Record>
concept Is = std::same_as<std::remove_const_t<Value>, Record>;

auto FieldsOf(Is<ListColumn> auto& column) { return std::tie(column.title, column.width); }
auto FieldsOf(Is<TreeItem> auto& item) {
  return std::tie(item.text, item.picture, item.isChecked, item.isExpanded, item.data,
                  item.children);
}
auto FieldsOf(Is<TreePlace> auto& place) { return std::tie(place.parent, place.child); }
auto FieldsOf(Is<FileRequest> auto& request) {
  return std::tie(request.defaultExtension, request.filters, request.folder);
}
auto FieldsOf(Is<ControlRow> auto& row) {
  return std::tie(row.kind, row.id, row.caption, row.place, row.style, row.toolTip);
}
/// Its rows go behind it.
auto FieldsOf(Is<DialogTemplate> auto& shape) {
  return std::tie(shape.id, shape.caption, shape.width, shape.height, shape.isResizable);
}

/// The calls of a handler, which its window makes; each goes behind the dialog's depth.
enum class HandlerCall { kOpen, kButton, kSelection, kTreeCheck, kSizing, kSize };

/// What the handler's side asks for.
enum class Request { kRun, kRunOver, kWindowCall };

/// The calls of a window.
enum class WindowCall : size_t {
#define CALL(Result, Name, Parameters, Arguments) k##Name,
#include "toolkit/window_calls.inc"
};

}  // namespace gantry::platform
