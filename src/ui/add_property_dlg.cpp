#include "ui/add_property_dlg.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "client/unit_converter.h"
#include "text/pieces.h"

namespace gantry {

using platform::DialogWindow;

namespace {

bool IsTaken(const CIXConfig& config, const std::string& name, const std::string& displayName) {
  return std::ranges::any_of(config.UserProperties, [&](const auto& property) {
    return property->Property == name || property->DisplayName == displayName;
  });
}

}  // namespace

void CAddProperty::OnOpen(DialogWindow& window) {
  using namespace add_property_id;
  std::vector<std::string> units = {"Other/None"};
  for (const UnitFamily& family : UnitFamilyTable) units.emplace_back(family.name);
  window.SetItems(kUnit, units);
  window.Select(kUnit, 0);
  window.SetItems(kType, {"Scalar", "Component array"});
  window.Select(kType, 0);
}

void CAddProperty::OnButton(DialogWindow& window, int id) {
  if (id == platform::kOkButton) Accept(window);
  if (id == platform::kCancelButton) window.Close(platform::kCancelButton);
}

void CAddProperty::Accept(DialogWindow& window) {
  using namespace add_property_id;
  auto property = std::make_unique<CIXUserProperty>();
  property->Property = window.Text(kProperty);
  property->DisplayName = window.Text(kDisplayName);
  if (IsBlank(property->Property) || IsBlank(property->DisplayName)) {
    window.ShowMessage("Property name and display name must be provided");
    return window.Focus(IsBlank(property->Property) ? kProperty : kDisplayName);
  }
  if (IsTaken(config_, property->Property, property->DisplayName)) {
    window.ShowMessage("The property specified is not unique (property name or display name)");
    return window.Focus(kProperty);
  }
  property->UnitFamily = window.Selection(kUnit) - 1;
  property->UnitCode = UnitFamilyUserCode(property->UnitFamily);
  property->IsScalar = window.Selection(kType) == 0 ? 1 : 0;
  config_.UserProperties.push_back(std::move(property));
  window.Close(platform::kOkButton);
}

}  // namespace gantry
