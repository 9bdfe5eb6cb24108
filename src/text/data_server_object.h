#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/tag_parser.h"

namespace gantry {

class CExtConnectorBase;

/// What a handler may use besides its own fields: the running simulator's connector, or null.
using TagContext = CExtConnectorBase*;

/// Base of every object that a text path can reach. Items of a list are addressed by `GetName`.
class CExtDataServerObject {
 public:
  CExtDataServerObject() = default;
  CExtDataServerObject(const CExtDataServerObject&) = default;
  CExtDataServerObject& operator=(const CExtDataServerObject&) = default;
  virtual ~CExtDataServerObject() = default;

  virtual void ObjectChanged() {}
  virtual bool IsEditable() const { return true; }
  virtual bool IsHidden() const { return false; }
  virtual std::string GetItemWord() const { return {}; }
  /// True when the rest of the path was handled.
  virtual bool Handle(TagParser& parser, TagContext context) = 0;
  virtual const std::string& GetName() const = 0;
};

/// A list of objects held by value in one contiguous sequence.
template <class T>
class CExcStdDataServerObjectList {
 public:
  virtual ~CExcStdDataServerObjectList() = default;

  /// Walks into the list: "$Count", "Add", "Reset", "Delete", "[n]" and "[{name}]". Unless
  /// `wordMatched`, first takes `word`, or `GetItemWord` when that is empty; no match is false.
  virtual bool Handle(TagParser& parser, bool wordMatched, TagContext context,
                      std::string_view word) {
    const std::string own = GetItemWord();
    if (!wordMatched && !parser.MatchWord(word.empty() ? std::string_view(own) : word)) {
      return false;
    }
    auto count = static_cast<int32_t>(Items.size());
    if (parser.IntProperty(count, "$Count")) return true;
    if (parser.Mode() == TagMode::kWrite) {
      if (const std::optional<bool> changed = HandleChange(parser)) return *changed;
    }
    const int32_t index = parser.ParseIndex();
    T* const item = index >= 0 ? At(index) : Named(parser.ParseKey());
    return item != nullptr && item->Handle(parser, context);
  }
  virtual bool HandleItems(TagParser& parser, TagContext context) {
    return Handle(parser, true, context, {});
  }
  virtual std::string GetItemWord() const { return "Item"; }

  /// The item at a handle of the host, null when there is none.
  T* At(int32_t handle) {
    const bool isThere = handle >= 0 && static_cast<size_t>(handle) < Items.size();
    return isThere ? &Items[static_cast<size_t>(handle)] : nullptr;
  }
  /// The first of that name, exactly and with case; null when there is none. Linear: a pass over
  /// many items makes its own `NameIndex`.
  T* Named(std::string_view name) {
    const auto found = std::ranges::find(Items, name, &T::GetName);
    return found == Items.end() ? nullptr : &*found;
  }

  std::vector<T> Items;

 private:
  /// The words that change the list; none when the path goes on to an item.
  std::optional<bool> HandleChange(TagParser& parser) {
    if (parser.MatchWord("Add")) {
      Items.emplace_back();
      return true;
    }
    if (!parser.Protected() && parser.MatchWord("Reset")) {
      Items.clear();
      return true;
    }
    int32_t index = -1;
    if (!parser.IntProperty(index, "Delete")) return std::nullopt;
    const bool isThere = At(index) != nullptr;
    if (isThere) Items.erase(Items.begin() + index);
    if (!isThere) parser.ErrorText = "Attempting to remove an object at an invalid index";
    return isThere;
  }
};

}  // namespace gantry
