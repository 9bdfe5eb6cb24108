#include "ui/export_variables_dlg.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "ui/button_actions.h"
#include "ui/dialog_templates.h"
#include "wells/well_variable_catalogue.h"

namespace gantry {

using namespace export_id;
using platform::DialogWindow;
using platform::TreePlace;

namespace {

constexpr uint32_t kFullHeight = kAnchorLeft | kAnchorTop | kAnchorBottom;
constexpr uint32_t kBottomLeft = kAnchorLeft | kAnchorBottom;
constexpr uint32_t kTopRight = kAnchorTop | kAnchorRight;
constexpr uint32_t kBottomRight = kAnchorRight | kAnchorBottom;
constexpr uint32_t kWhole = kAnchorLeft | kAnchorTop | kAnchorRight | kAnchorBottom;

constexpr std::pair<int, uint32_t> kAnchors[] = {{kWells, kFullHeight},
                                                 {kAllWells, kBottomLeft},
                                                 {kInvertWells, kBottomLeft},
                                                 {kProperties, kFullHeight},
                                                 {kAllProperties, kBottomLeft},
                                                 {kInvertProperties, kBottomLeft},
                                                 {kVariables, kWhole},
                                                 {kDelete, kBottomLeft},
                                                 {kCollapseAll, kBottomLeft},
                                                 {kExpandAll, kBottomLeft},
                                                 {kSameName, kTopRight},
                                                 {platform::kOkButton, kBottomRight},
                                                 {platform::kCancelButton, kBottomRight}};

OfferedProperty Offer(CExportedVariable variable) {
  std::string text = DisplayText(variable.Label, variable.Kind);
  return {std::move(text), std::move(variable)};
}

std::vector<std::string> SortedNames(const StaticWellDataCollection& wells) {
  std::vector<std::string> names = wells.Names(false);
  std::ranges::stable_sort(names, SortsBefore);
  return names;
}

/// The parents by name; the first of a name counts. The names stay in place while it is used.
class ParentIndex {
 public:
  explicit ParentIndex(CExportedVariables& variables) : variables_(variables) {
    for (const auto& parent : variables) parents_.emplace(parent->WellName, parent.get());
  }

  CExportedVariableWellParent& FindOrAdd(const std::string& name) {
    if (const auto found = parents_.find(name); found != parents_.end()) return *found->second;
    auto parent = std::make_unique<CExportedVariableWellParent>();
    parent->WellName = name;
    CExportedVariableWellParent& added = variables_.Add(std::move(parent));
    parents_.emplace(added.WellName, &added);
    return added;
  }

 private:
  CExportedVariables& variables_;
  std::unordered_map<std::string_view, CExportedVariableWellParent*> parents_;
};

}  // namespace

std::vector<OfferedProperty> OfferedProperties(bool hasComponents, const CIXConfig& config) {
  std::vector<OfferedProperty> properties;
  for (const WellVariable& row : WellVariableCatalogue) {
    if (row.kind != 0 || hasComponents) properties.push_back(Offer(CExportedVariable(row)));
  }
  for (const auto& property : config.UserProperties) {
    properties.push_back(Offer(CExportedVariable(*property)));
  }
  std::ranges::stable_sort(properties, SortsBefore, &OfferedProperty::text);
  return properties;
}

CExportVariablesDlg::CExportVariablesDlg(CExportedVariables& target,
                                         const StaticWellDataCollection& wells, bool hasComponents,
                                         const CIXConfig& config)
    : CExtResizableDlg(kExportVariablesTemplate),
      target_(target),
      working_(target),
      wells_(SortedNames(wells)),
      properties_(OfferedProperties(hasComponents, config)) {}

void CExportVariablesDlg::OnOpen(DialogWindow& window) {
  for (const auto& [id, anchors] : kAnchors) Register(id, anchors);
  CExtResizableDlg::OnOpen(window);
  window.SetItems(kWells, wells_);
  std::vector<std::string> texts;
  for (const OfferedProperty& property : properties_) texts.push_back(property.text);
  window.SetItems(kProperties, texts);
  for (const auto& parent : working_) {
    for (const auto& variable : parent->Variables) tree_.Enter(*parent, *variable);
  }
  window.SetTree(kVariables, tree_.Show());
}

void CExportVariablesDlg::OnButton(DialogWindow& window, int id) {
  Press(id, {{kAllWells, [&] { window.SelectAll(kWells); }},
             {kInvertWells, [&] { window.InvertSelection(kWells); }},
             {kAllProperties, [&] { window.SelectAll(kProperties); }},
             {kInvertProperties, [&] { window.InvertSelection(kProperties); }},
             {kAdd, [&] { AddSelected(window); }},
             {kDelete, [&] { DeleteChecked(window); }},
             {kCollapseAll, [&] { window.ExpandTree(kVariables, false); }},
             {kExpandAll, [&] { window.ExpandTree(kVariables, true); }},
             {platform::kOkButton, [&] { Accept(window); }},
             {platform::kCancelButton, [&] { window.Close(platform::kCancelButton); }}});
}

void CExportVariablesDlg::AddSelected(DialogWindow& window) {
  const std::vector<size_t> wells = window.SelectedRows(kWells);
  const std::vector<size_t> properties = window.SelectedRows(kProperties);
  if (wells.empty() || properties.empty()) return;
  ParentIndex parents(working_);
  bool isChanged = false;
  for (const size_t well : wells) {
    CExportedVariableWellParent& parent = parents.FindOrAdd(wells_[well]);
    std::unordered_set<std::string_view> labels;
    for (const auto& variable : parent.Variables) labels.insert(variable->Label);
    for (const size_t property : properties) {
      const CExportedVariable& offered = properties_[property].variable;
      if (!labels.insert(offered.Label).second) continue;
      isChanged = true;
      tree_.Enter(parent, parent.Variables.Add(std::make_unique<CExportedVariable>(offered)));
    }
  }
  if (isChanged) window.SetTree(kVariables, tree_.Show());
}

void CExportVariablesDlg::DeleteChecked(DialogWindow& window) {
  const std::unordered_set<uintptr_t> checked = tree_.RemoveChecked();
  if (checked.empty()) return;
  const auto isChecked = [&](const auto& object) {
    return checked.contains(reinterpret_cast<uintptr_t>(object.get()));
  };
  Disable(window, kVariables);
  for (const auto& parent : working_) {
    if (!isChecked(parent)) parent->Variables.RemoveIf(isChecked);
  }
  working_.RemoveIf(
      [&](const auto& parent) { return isChecked(parent) || parent->Variables.IsEmpty(); });
  window.SetTree(kVariables, tree_.Show());
  EnableAgain(window, kVariables);
}

void CExportVariablesDlg::OnTreeCheck(DialogWindow& window, int id, const TreePlace& place) {
  if (id != kVariables) return;
  const bool isChecked = tree_.Toggle(place);
  if (!place.child || !window.IsChecked(kSameName)) return;
  window.SetTreeChecked(kVariables, tree_.CheckNamesakes(place), isChecked);
}

void CExportVariablesDlg::Accept(DialogWindow& window) {
  target_ = working_;
  window.Close(platform::kOkButton);
}

}  // namespace gantry
