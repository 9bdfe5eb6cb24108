#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "toolkit/tree_items.h"

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
    std::vector<std::vector<std::string>> rows = {};  ///< of a list, an item as a row of one text
    std::set<size_t> selectedRows = {};
    std::vector<platform::TreeItem> tree = {};
    platform::PixelRect rect;
  };

  /// `told` hears of what leaves no trace in a control.
  explicit MemoryWindow(
      platform::DialogHandler& shown, std::function<void(const std::string&)> told = [](auto&) {})
      : handler(shown), tell(std::move(told)) {
    for (const platform::ControlRow& row : handler.Template().controls) {
      if (row.id == platform::kNoControl) continue;
      const auto& [left, top, width, height] = row.place;
      controls[row.id] = {.row = &row,
                          .text = row.caption,
                          .toolTip = row.toolTip != nullptr ? row.toolTip : "",
                          .rect = {left, top, left + width, top + height}};
    }
  }
  Control& At(int id) { return controls.at(id); }

  void Close(int closedWith) override { result = closedWith; }
  void* Handle() override { return this; }
  platform::PixelSize ClientSize() override { return size; }
  void Redraw() override { tell("painted anew"); }
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
  void SetItems(int id, const std::vector<std::string>& items) override {
    At(id).rows.clear();
    for (const std::string& item : items) At(id).rows.push_back({item});
  }
  int Selection(int id) override { return At(id).selection; }
  void Select(int id, int index) override {
    At(id).selection = index < static_cast<int>(At(id).rows.size()) ? index : -1;
  }
  void SetColumns(int, const std::vector<platform::ListColumn>& columns) override {
    for (const auto& [title, width] : columns)
      tell("column " + title + " " + std::to_string(width));
  }
  void AddRows(int id, const std::vector<std::vector<std::string>>& rows, int) override {
    At(id).rows.insert(At(id).rows.end(), rows.begin(), rows.end());
  }
  void RemoveRows(int id, const std::vector<size_t>& rows) override {
    for (size_t i = rows.size(); i-- > 0;) {
      At(id).rows.erase(At(id).rows.begin() + static_cast<ptrdiff_t>(rows[i]));
    }
    At(id).selectedRows.clear();
  }
  std::vector<size_t> SelectedRows(int id) override {
    return {At(id).selectedRows.begin(), At(id).selectedRows.end()};
  }
  void SelectAll(int id) override {
    for (size_t i = 0; i < At(id).rows.size(); ++i) At(id).selectedRows.insert(i);
  }
  void InvertSelection(int id) override {
    const std::set<size_t> before = At(id).selectedRows;
    SelectAll(id);
    for (const size_t row : before) At(id).selectedRows.erase(row);
  }
  void SetTree(int id, std::vector<platform::TreeItem> items) override {
    const auto& before = At(id).tree;
    platform::KeepBranches(items, before, [&](size_t i) { return before[i].isExpanded; });
    At(id).tree = std::move(items);
    tell(At(id).isEnabled ? "a new tree" : "a new tree while it is grey");
  }
  void SetTreeChecked(int id, const std::vector<platform::TreePlace>& places,
                      bool isChecked) override {
    for (const auto& place : places) platform::ItemAt(At(id).tree, place).isChecked = isChecked;
    tell(std::to_string(places.size()) + " boxes set");
  }
  void ExpandTree(int id, bool isExpanded) override {
    for (auto& item : At(id).tree) item.isExpanded = isExpanded;
  }
  void ShowMessage(const std::string& text) override { tell("message: " + text); }
  std::optional<std::string> AskForFile(const platform::FileRequest& request) override {
    tell("asks in '" + request.folder + "' for " + request.defaultExtension + ": " +
         request.filters);
    return pickedFile;
  }
  int RunDialog(platform::DialogHandler& nested) override { return runDialog(nested); }
  bool ShowHelp(const std::string& file, uint32_t topic) override {
    tell("help " + file + " " + std::to_string(topic));
    return hasHelp;
  }
  void SetWaitCursor(bool isWaiting) override { tell(isWaiting ? "waits" : "waits no more"); }
  void Pause(int milliseconds) override { tell("pause " + std::to_string(milliseconds)); }

  platform::DialogHandler& handler;
  std::function<void(const std::string&)> tell;
  std::map<int, Control> controls;
  platform::PixelSize size{500, 300};
  std::optional<int> result;
  int focus = 0;
  std::optional<std::string> pickedFile;
  bool hasHelp = true;
  std::function<int(platform::DialogHandler&)> runDialog;
};

}  // namespace gantry::test
