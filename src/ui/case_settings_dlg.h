#pragma once

#include <string>

#include "model/model_dialogs.h"
#include "settings/link_settings.h"
#include "settings/machine_config.h"
#include "toolkit/dialog_window.h"
#include "wells/static_well_data.h"

namespace gantry {

/// "Intersect Case Settings": edits the settings of a case in place, and starts or stops its
/// simulator. Whoever opened it goes on with a run only when it was closed with "Start".
///
/// The enabled states are refreshed on opening, with a change of computer or inflow model, and
/// after a stop, and at no other time. So "OK" is greyed only at the next refresh after the dataset
/// has been changed, from when on only "Start" or "Cancel" ends the dialog: a new dataset has to be
/// read before it can be accepted.
class CCaseSettingsDlg : public platform::DialogHandler {
 public:
  CCaseSettingsDlg(EditedCase& model, CIXConfig& config);

  bool StartRequested() const { return startRequested_; }

  void OnOpen(platform::DialogWindow& window) override;
  void OnButton(platform::DialogWindow& window, int id) override;
  void OnSelection(platform::DialogWindow& window, int id) override;

 private:
  void FillLists(platform::DialogWindow& window) const;
  void ShowSettings(platform::DialogWindow& window) const;
  void ShowDefaultSimulator(platform::DialogWindow& window) const;
  void Refresh(platform::DialogWindow& window) const;
  void Browse(platform::DialogWindow& window, int edit, const platform::FileRequest& request,
              std::string& target) const;
  void Save(platform::DialogWindow& window) const;
  void Accept(platform::DialogWindow& window, bool isStart);
  void Cancel(platform::DialogWindow& window);
  void StartOrStop(platform::DialogWindow& window);
  bool WaitForStop(platform::DialogWindow& window) const;
  void Calculate(platform::DialogWindow& window) const;

  EditedCase& model_;
  CIXConfig& config_;
  LinkSettings& live_;
  const LinkSettings saved_;
  StaticWellDataCollection& liveWells_;
  const StaticWellDataCollection savedWells_;
  bool startRequested_ = false;
  const std::string openingDataset_;
};

}  // namespace gantry
