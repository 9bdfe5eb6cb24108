#include "wells/exported_variables.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <stdexcept>
#include <vector>

#include "client/connector_base.h"
#include "settings/case_archive.h"
#include "text/number_text.h"
#include "wells/well_variable_catalogue.h"

namespace gantry {
namespace {

constexpr int32_t kFirstVersionWithKind = 2;

/// More values than any simulator has for one quantity of a well: a file or a registry that asks
/// for more is damaged, and would keep the host in its list of them for good.
constexpr uint32_t kMostElements = 1000;

template <class T>
void TransferItems(CaseArchive& archive, CExtCollection<T>& items, int32_t version) {
  archive.TransferList(items, [&](std::unique_ptr<T>& item) {
    if (item == nullptr) item = std::make_unique<T>();
    item->Serialize(archive, version);
  });
}

/// The simulator's name of one element: the simulator counts from 1, the handles from 0.
std::string ElementItem(const std::string& item, uint32_t kind, uint32_t element) {
  return kind == kOneValue ? item : item + "[" + std::to_string(uint64_t{element} + 1) + "]";
}

}  // namespace

CExportedVariable::CExportedVariable(const WellVariable& row)
    : Key(row.key),
      SimulatorItem(row.simulatorItem),
      Label(row.label),
      Code(row.code),
      UnitFamily(row.family),
      Kind(row.kind) {}

CExportedVariable::CExportedVariable(const CIXUserProperty& property)
    : Key(property.Property),
      SimulatorItem(property.SimulatorItem),
      Label(property.DisplayName),
      Code(property.UnitCode),
      UnitFamily(property.UnitFamily),
      Kind(static_cast<uint32_t>(property.IsScalar)) {}

void CExportedVariable::Serialize(CaseArchive& archive, int32_t version) {
  archive.Transfer(Code);
  archive.Transfer(UnitFamily);
  archive.Transfer(Key);
  archive.Transfer(SimulatorItem);
  archive.Transfer(Label);
  if (version >= kFirstVersionWithKind) {
    archive.Transfer(Kind);
  } else if (archive.IsReading()) {
    Kind = kOneValue;
  }
}

uint32_t CExportedVariable::EntryCount(size_t componentCount) const {
  return Kind != kOnePerComponent ? std::min(Kind, kMostElements)
                                  : static_cast<uint32_t>(componentCount);
}

CExportedVariable* CExportedVariableCollection::FindByLabel(const std::string& label) {
  for (const auto& variable : *this) {
    if (variable->Label == label) return variable.get();
  }
  return nullptr;
}

void CExportedVariableCollection::Serialize(CaseArchive& archive, int32_t version) {
  TransferItems(archive, *this, version);
}

void CExportedVariableWellParent::Serialize(CaseArchive& archive, int32_t version) {
  archive.Transfer(WellName);
  Variables.Serialize(archive, version);
}

int32_t CExportedVariableWellParent::Evaluate(CExtConnectorBase& connector,
                                              const CExportedVariable& variable, uint32_t element,
                                              double& value, std::string& error) const {
  try {
    const std::string item = ElementItem(variable.Key, variable.Kind, element);
    Doubles values;
    connector.GetWellVariables(WellName, {item}, {variable.UnitFamily}, values);
    if (values.empty()) throw std::runtime_error("the simulator gave too few values");
    value = values.front();
    return 0;
  } catch (const std::exception& failure) {
    error = "Could not evaluate exported variables for " + WellName + ", " + failure.what();
    return 1;
  }
}

int32_t CExportedVariableWellParent::Assign(CExtConnectorBase& connector,
                                            const CExportedVariable& variable, uint32_t element,
                                            std::string_view text, std::string& error) const {
  try {
    const std::string item = ElementItem(variable.SimulatorItem, variable.Kind, element);
    connector.SetWellConstraints({WellName}, {{item}}, {{ReadDouble(text)}},
                                 {{variable.UnitFamily}});
    return 0;
  } catch (const std::exception& failure) {
    error = std::string("error: ") + failure.what();
    return 1;
  }
}

void CExportedVariableWellParent::Remove(const CExportedVariable& variable) {
  for (size_t i = 0; i < Variables.Size(); ++i) {
    if (&Variables[i] != &variable) continue;
    Variables.TakeOut(i);
    return;
  }
}

CExportedVariableWellParent* CExportedVariables::FindWellParent(const std::string& wellName) {
  for (const auto& parent : *this) {
    if (parent->WellName == wellName) return parent.get();
  }
  return nullptr;
}

CExportedVariables::Entry CExportedVariables::FindEntry(int32_t handle, size_t componentCount) {
  if (handle < 0) return {};
  auto remaining = static_cast<uint32_t>(handle);
  for (const auto& parent : *this) {
    for (const auto& variable : parent->Variables) {
      const uint32_t entries = variable->EntryCount(componentCount);
      if (remaining < entries) return {parent.get(), variable.get(), remaining};
      remaining -= entries;
    }
  }
  return {};
}

bool CExportedVariables::HasPerComponentVariable() const {
  for (const auto& parent : *this) {
    for (const auto& variable : parent->Variables) {
      if (variable->Kind == kOnePerComponent) return true;
    }
  }
  return false;
}

void CExportedVariables::Serialize(CaseArchive& archive, int32_t version) {
  TransferItems(archive, *this, version);
}

}  // namespace gantry
