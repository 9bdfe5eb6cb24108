#include "text/data_server_object.h"

#include <optional>

namespace gantry {
namespace {

bool DeleteItem(DataServerItems& items, TagParser& parser, int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= items.ItemCount()) {
    parser.ErrorText = "Attempting to remove an object at an invalid index";
    return false;
  }
  items.RemoveItem(static_cast<size_t>(index));
  return true;
}

/// The words that change the list; none when the path goes on to an item.
std::optional<bool> HandleChange(DataServerItems& items, TagParser& parser) {
  if (parser.MatchWord("Add")) {
    items.AppendItem();
    return true;
  }
  if (!parser.Protected() && parser.MatchWord("Reset")) {
    items.RemoveAllItems();
    return true;
  }
  int32_t index = -1;
  if (parser.IntProperty(index, "Delete")) return DeleteItem(items, parser, index);
  return std::nullopt;
}

bool HandleItem(DataServerItems& items, TagParser& parser, TagContext context) {
  const int32_t index = parser.ParseIndex();
  if (index >= 0) {
    const auto position = static_cast<size_t>(index);
    return position < items.ItemCount() && items.ItemAt(position).Handle(parser, context);
  }
  const std::string key = parser.ParseKey();
  for (size_t i = 0; i < items.ItemCount(); ++i) {
    if (items.ItemAt(i).GetName() == key) return items.ItemAt(i).Handle(parser, context);
  }
  return false;
}

}  // namespace

bool HandleListItems(DataServerItems& items, TagParser& parser, TagContext context) {
  auto count = static_cast<int32_t>(items.ItemCount());
  if (parser.IntProperty(count, "$Count")) return true;
  if (parser.Mode() == TagMode::kWrite) {
    if (const std::optional<bool> changed = HandleChange(items, parser)) return *changed;
  }
  return HandleItem(items, parser, context);
}

}  // namespace gantry
