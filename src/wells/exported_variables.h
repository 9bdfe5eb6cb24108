#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "settings/machine_config.h"
#include "text/ext_collection.h"

namespace gantry {

class CExtConnectorBase;
struct WellVariable;

/// How many values a variable has: any other number is that many.
enum VariableKind : uint32_t { kOnePerComponent = 0, kOneValue = 1 };

/// One simulator quantity of a well that the user exports to the host.
class CExportedVariable : public CExtCollectionObject {
 public:
  CExportedVariable() = default;
  explicit CExportedVariable(const WellVariable& row);
  explicit CExportedVariable(const CIXUserProperty& property);

  void Serialize(CaseArchive& archive, int32_t version) override;
  /// How many handles it takes, one for each value. Not
  /// above 1000.
  uint32_t EntryCount(size_t componentCount) const;

  std::string Key;            ///< the simulator's name for a read
  std::string SimulatorItem;  ///< the simulator's name for a write; empty: read-only
  std::string Label;
  uint32_t Code = 0;
  int32_t UnitFamily = -1;
  uint32_t Kind = kOneValue;  ///< a `VariableKind`
};

class CExportedVariableCollection : public CExtCollection<CExportedVariable> {
 public:
  CExportedVariable* FindByLabel(const std::string& label);
  void Serialize(CaseArchive& archive, int32_t version);
};

/// The exported variables of one well.
class CExportedVariableWellParent : public CExtCollectionObject {
 public:
  void Serialize(CaseArchive& archive, int32_t version) override;

  /// 0, or 1 with `error`; a standard exception of the connector ends here, no other does.
  int32_t Evaluate(CExtConnectorBase& connector, const CExportedVariable& variable,
                   uint32_t element, double& value, std::string& error) const;
  int32_t Assign(CExtConnectorBase& connector, const CExportedVariable& variable, uint32_t element,
                 std::string_view text, std::string& error) const;
  void Remove(const CExportedVariable& variable);

  std::string WellName;
  CExportedVariableCollection Variables;
};

/// The model's list of exported variables, by well. Whoever builds it sees to it that a well stands
/// in it at most once, and a label at most once in a well. Copies are deep. No lock of its own.
class CExportedVariables : public CExtCollection<CExportedVariableWellParent> {
 public:
  struct Entry {
    CExportedVariableWellParent* wellParent = nullptr;
    CExportedVariable* variable = nullptr;
    uint32_t element = 0;
  };

  /// By name, exactly and with case; null when there is none. Linear.
  CExportedVariableWellParent* FindWellParent(const std::string& wellName);
  /// The entry of a handle: a running number over all elements of all variables of all wells, in
  /// list order. `variable` is null when there is none.
  Entry FindEntry(int32_t handle, size_t componentCount);
  bool HasPerComponentVariable() const;
  /// In the direction of the archive; a read appends to what the list holds.
  void Serialize(CaseArchive& archive, int32_t version);
};

/// One row of the catalogue of well variables.
struct WellVariable {
  const char* key;
  const char* simulatorItem;  ///< empty where the simulator has none
  const char* label;
  uint32_t code;
  int32_t family;  ///< unit family, -1 for no conversion
  uint32_t kind;   ///< as `CExportedVariable::Kind`
};

}  // namespace gantry
