#pragma once

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

/// What a list of data-server objects must offer to be walked; the walk itself exists once.
class DataServerItems {
 public:
  virtual ~DataServerItems() = default;
  virtual size_t ItemCount() const = 0;
  virtual CExtDataServerObject& ItemAt(size_t index) = 0;
  virtual void AppendItem() = 0;
  virtual void RemoveItem(size_t index) = 0;
  virtual void RemoveAllItems() = 0;
};

/// Walks a path into a list: "$Count", "Add", "Reset", "Delete", "[n]" and "[{name}]". The word
/// that leads into the list has been taken by then.
bool HandleListItems(DataServerItems& items, TagParser& parser, TagContext context);

/// A list of objects held by value in one contiguous sequence.
template <class T>
class CExcStdDataServerObjectList : public DataServerItems {
 public:
  /// Walks into the list. Unless `wordMatched`, first takes `word`, or `GetItemWord` when that is
  /// empty; no match is false.
  virtual bool Handle(TagParser& parser, bool wordMatched, TagContext context,
                      std::string_view word) {
    const std::string own = GetItemWord();
    if (!wordMatched && !parser.MatchWord(word.empty() ? std::string_view(own) : word)) {
      return false;
    }
    return HandleListItems(*this, parser, context);
  }
  virtual bool HandleItems(TagParser& parser, TagContext context) {
    return Handle(parser, true, context, {});
  }
  virtual std::string GetItemWord() const { return "Item"; }

  size_t ItemCount() const override { return Items.size(); }
  CExtDataServerObject& ItemAt(size_t index) override { return Items[index]; }
  void AppendItem() override { Items.emplace_back(); }
  void RemoveItem(size_t index) override {
    Items.erase(Items.begin() + static_cast<std::ptrdiff_t>(index));
  }
  void RemoveAllItems() override { Items.clear(); }

  std::vector<T> Items;
};

}  // namespace gantry
