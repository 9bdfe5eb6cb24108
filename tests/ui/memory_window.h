#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "toolkit/dialog_window.h"

namespace gantry::test {

/// A dialog window without a display: what a control shows is kept by its id, and the test plays
/// the user. An id that the template doesn't have is a fault.
class MemoryWindow : public platform::DialogWindow {
 public:
  struct Control {
    const platform::ControlRow* row = nullptr;
    std::string text;
    std::string toolTip;
    bool isEnabled = true;
    bool isChecked = false;
    bool isCaretBehindText = false;
    int selection = -1;
    std::vector<std::string> items;
    std::vector<platform::ListColumn> columns;
    std::vector<std::vector<std::string>> rows;
    std::set<size_t> selectedRows;
    std::vector<platform::TreeItem> tree;
    platform::PixelRect rect;
  };

  explicit MemoryWindow(platform::DialogHandler& opened) : handler(opened) {
    for (const platform::ControlRow& row : handler.Template().controls) {
      if (row.id == platform::kNoControl) continue;
      Control& control = controls[row.id];
      control.row = &row;
      control.text = row.caption;
      control.toolTip = row.toolTip != nullptr ? row.toolTip : "";
      control.rect = {row.place.left, row.place.top, row.place.left + row.place.width,
                      row.place.top + row.place.height};
    }
    handler.OnOpen(*this);
    handler.OnSize(*this, size);
  }

  // The user.
  void Press(int id) {
    if (At(id).isEnabled) handler.OnButton(*this, id);
  }
  void Choose(int id, int index) {
    At(id).selection = index;
    handler.OnSelection(*this, id);
  }
  /// By text, as the user sees them.
  void MarkItems(int id, const std::vector<std::string>& texts) {
    Control& control = At(id);
    control.selectedRows.clear();
    for (size_t i = 0; i < control.items.size(); ++i) {
      if (std::ranges::count(texts, control.items[i]) != 0) control.selectedRows.insert(i);
    }
  }
  void ClickCheckBox(int id, platform::TreePlace place) {
    handler.OnTreeCheck(*this, id, place);
    platform::TreeItem& item = ItemAt(id, place);
    item.isChecked = !item.isChecked;
  }
  void Drag(int edge, platform::PixelSize newSize) {
    handler.OnSizing(edge);
    size = newSize;
    handler.OnSize(*this, size);
  }

  Control& At(int id) { return controls.at(id); }
  void Type(const std::map<int, std::string>& texts) {
    for (const auto& [id, text] : texts) SetText(id, text);
  }
  /// What controls show: a text, 0 or 1 for a check box, the index of a drop list.
  std::string Values(std::initializer_list<int> ids) const {
    std::string values;
    for (const int id : ids) values += "|" + Value(controls.at(id));
    return values.substr(1);
  }
  /// 0 or 1 for each.
  std::string Enabled(std::initializer_list<int> ids) const {
    std::string enabled;
    for (const int id : ids) enabled += controls.at(id).isEnabled ? '1' : '0';
    return enabled;
  }
  platform::TreeItem& ItemAt(int id, platform::TreePlace place) {
    platform::TreeItem& parent = At(id).tree.at(place.parent);
    return place.child ? parent.children.at(*place.child) : parent;
  }

  // The window.
  void Close(int closedWith) override { result = closedWith; }
  void* Handle() override { return this; }
  platform::PixelSize ClientSize() override { return size; }
  void Redraw() override { ++redraws; }
  void Enable(int id, bool isEnabled) override { At(id).isEnabled = isEnabled; }
  void SetToolTip(int id, const std::string& text) override { At(id).toolTip = text; }
  platform::PixelRect Rect(int id) override { return At(id).rect; }
  void Move(int id, const platform::PixelRect& rect) override { At(id).rect = rect; }
  void Focus(int id) override { focus = id; }
  std::string Text(int id) override { return At(id).text; }
  void SetText(int id, const std::string& text) override {
    At(id).text = text;
    At(id).isCaretBehindText = false;
  }
  void PutCaretBehindText(int id) override { At(id).isCaretBehindText = true; }
  bool IsChecked(int id) override { return At(id).isChecked; }
  void SetChecked(int id, bool isChecked) override { At(id).isChecked = isChecked; }
  void SetItems(int id, const std::vector<std::string>& items) override { At(id).items = items; }
  int Selection(int id) override { return At(id).selection; }
  void Select(int id, int index) override {
    const bool isItem = index >= 0 && index < static_cast<int>(At(id).items.size());
    At(id).selection = isItem ? index : -1;
  }
  void SetColumns(int id, const std::vector<platform::ListColumn>& columns) override {
    At(id).columns = columns;
  }
  void AddRows(int id, const std::vector<std::vector<std::string>>& rows, int) override {
    for (const auto& row : rows) At(id).rows.push_back(row);
  }
  void RemoveRows(int id, const std::vector<size_t>& rows) override {
    std::vector<std::vector<std::string>> kept;
    for (size_t i = 0; i < At(id).rows.size(); ++i) {
      if (std::ranges::count(rows, i) == 0) kept.push_back(At(id).rows[i]);
    }
    At(id).rows = kept;
    At(id).selectedRows.clear();
  }
  std::vector<size_t> SelectedRows(int id) override {
    return {At(id).selectedRows.begin(), At(id).selectedRows.end()};
  }
  void SelectAll(int id) override {
    for (size_t i = 0; i < At(id).items.size(); ++i) At(id).selectedRows.insert(i);
  }
  void InvertSelection(int id) override {
    std::set<size_t>& selected = At(id).selectedRows;
    for (size_t i = 0; i < At(id).items.size(); ++i) {
      if (selected.erase(i) == 0) selected.insert(i);
    }
  }
  void SetTree(int id, std::vector<platform::TreeItem> items) override {
    std::set<uintptr_t> open;
    for (const auto& item : At(id).tree) {
      if (item.isExpanded) open.insert(item.data);
    }
    At(id).tree = std::move(items);
    for (auto& item : At(id).tree) item.isExpanded = item.isExpanded || open.contains(item.data);
    ++treesSet;
  }
  void SetTreeChecked(int id, const std::vector<platform::TreePlace>& places,
                      bool isChecked) override {
    for (const auto& place : places) ItemAt(id, place).isChecked = isChecked;
    boxesSet += places.size();
  }
  void ExpandTree(int id, bool isExpanded) override {
    for (auto& item : At(id).tree) item.isExpanded = isExpanded;
  }
  void ShowMessage(const std::string& text) override { messages.push_back(text); }
  std::optional<std::string> AskForFile(const platform::FileRequest& request) override {
    fileRequest = request;
    return pickedFile;
  }
  int RunDialog(platform::DialogHandler& nested) override {
    MemoryWindow window(nested);
    if (inNested) inNested(window);
    return window.result.value_or(platform::kCancelButton);
  }
  bool ShowHelp(const std::string&, uint32_t topic) override {
    helpTopic = topic;
    return hasHelp;
  }
  void SetWaitCursor(bool waiting) override { isWaiting = waiting; }
  void Pause(int milliseconds) override {
    pauses.push_back(milliseconds);
    wasWaitingInPauses = wasWaitingInPauses && isWaiting;
  }

  static std::string Value(const Control& control) {
    if (control.row->kind == platform::ControlKind::kCheckBox) return control.isChecked ? "1" : "0";
    const bool isList = control.row->kind == platform::ControlKind::kDropList;
    return isList ? std::to_string(control.selection) : control.text;
  }

  platform::DialogHandler& handler;
  std::map<int, Control> controls;
  platform::PixelSize size{500, 300};
  std::optional<int> result;
  int focus = 0;
  std::vector<std::string> messages;
  std::optional<platform::FileRequest> fileRequest;
  std::optional<std::string> pickedFile;
  std::function<void(MemoryWindow&)> inNested;  ///< plays the user in a dialog over this one
  uint32_t helpTopic = 0;
  bool hasHelp = true;
  int redraws = 0;
  int treesSet = 0;
  size_t boxesSet = 0;
  bool isWaiting = false;
  std::vector<int> pauses;
  bool wasWaitingInPauses = true;
};

}  // namespace gantry::test
