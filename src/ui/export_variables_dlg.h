#pragma once

#include <string>
#include <vector>

#include "ui/ext_resizable_dlg.h"
#include "ui/variable_tree.h"
#include "wells/exported_variables.h"
#include "wells/static_well_data.h"

namespace gantry {

/// One property on offer.
struct OfferedProperty {
  std::string text;  ///< the label, marked when it stands for several values
  CExportedVariable variable;
};

/// What can be exported from every well, sorted as shown: the catalogue, without what a fluid
/// without components doesn't have, and the user's own properties, which are always offered.
std::vector<OfferedProperty> OfferedProperties(bool hasComponents, const CIXConfig& config);

/// "Export variables": the user chooses which properties of which wells go to the host. Works on a
/// copy, which "OK" puts in the place of the model's list.
class CExportVariablesDlg : public CExtResizableDlg {
 public:
  CExportVariablesDlg(CExportedVariables& target, const StaticWellDataCollection& wells,
                      bool hasComponents, const CIXConfig& config);

  void OnOpen(platform::DialogWindow& window) override;
  void OnButton(platform::DialogWindow& window, int id) override;
  void OnTreeCheck(platform::DialogWindow& window, int id,
                   const platform::TreePlace& place) override;

 private:
  void AddSelected(platform::DialogWindow& window);
  void DeleteChecked(platform::DialogWindow& window);
  void Accept(platform::DialogWindow& window);

  CExportedVariables& target_;
  CExportedVariables working_;
  const std::vector<std::string> wells_;  ///< in the order of the list
  const std::vector<OfferedProperty> properties_;
  VariableTree tree_;  ///< of `working_`
};

}  // namespace gantry
