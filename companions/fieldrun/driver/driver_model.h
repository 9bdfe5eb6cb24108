#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "boundary/records.h"
#include "described_toml/calendar.h"
#include "fieldrun/driver/call_trace.h"
#include "fieldrun/driver/module_api.h"
#include "fieldrun/network/inflow_curve.h"
#include "fieldrun/network/tubing.h"

namespace gantry::fieldrun {

/// A command of the module that failed. what() is the module's own text, or says which command
/// failed where the module gave none.
class DriverFailure : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// What the module says of itself.
struct DriverIdentity {
  std::string name;
  std::string description;
  int interfaceNumber = 0;
  uint64_t moduleKind = 0;
};

struct DriverUnit {
  std::string name;
  uint32_t code = 0;
  uint32_t unitClass = 0;
};

/// A well as the module lists it.
struct DriverWell {
  std::string name;
  bool isProducer = true;
};

/// The inflow of one well as the module hands it over, and what has to go back unchanged.
struct DriverInflow {
  std::vector<InflowPoint> points;
  bool hasNone = false;
  Gravities gravities;
  double pointValue = 0;
  double passThrough[3] = {0, 0, 0};
  InflowPoint current;  ///< the well's state as the simulator reports it
};

/// What the host decides for one well.
struct DriverControl {
  int well = 0;
  bool isShut = false;
  bool isShutForGood = false;  ///< in every completion, not only at the surface
  InflowPoint point;
  double downFraction = 0;
  std::vector<double> composition;  ///< of a gas injector in a compositional run
};

struct PublishedVariable {
  int handle = -1;
  bool isWriteable = false;
  std::string fullName;
  std::string wellName;
  std::string shortName;
  uint32_t code = 0;

  bool operator==(const PublishedVariable&) const = default;
};

/// Reads what the module says of itself, with no model made.
DriverIdentity Identify(const ModuleApi& api, CallTrace* trace);
std::vector<DriverUnit> Units(const ModuleApi& api, CallTrace* trace);

/// One model of the module, from its making to its end, as plain calls: each is one call over the
/// boundary, logged when there is a trace. Not to be used from two threads. Every call but the
/// destructor throws DriverFailure when the module reports a failure.
class DriverModel {
 public:
  explicit DriverModel(const ModuleApi& api, CallTrace* trace = nullptr);
  ~DriverModel();
  DriverModel(const DriverModel&) = delete;
  DriverModel& operator=(const DriverModel&) = delete;

  void SetLabel(const std::string& label);
  void SetStoreFile(const std::string& path, bool load);
  std::string Get(const std::string& path);
  void Set(const std::string& path, const std::string& value);
  void Do(const std::string& command);

  void StartSimulator();
  std::vector<DriverWell> Wells();
  /// None when the simulator's date isn't known.
  std::optional<Date> SimulationDate();
  /// Empty for a black-oil dataset.
  std::vector<std::string> ComponentNames();
  void Connect(int well, bool connected);
  std::string Description();

  /// `onStatus` gets the texts that the module sends while it works; it is kept for the model's
  /// life.
  void StartRun(const std::vector<int32_t>& connected, double startDay,
                std::function<void(const std::string&)> onStatus);
  void ReadWells();
  DriverInflow Inflow(int well);
  void SetControl(const DriverControl& control, const DriverInflow& inflow, int componentCount);
  void ApplyControls();
  /// True while the simulation goes on, false when the simulator has ended it.
  bool Step(double days);
  void CloseSimulator();

  /// The case block, as the host keeps it in its own file.
  std::string SaveCase();
  void LoadCase(const std::string& block, const std::string& casePath, bool keepDatasetPath);
  std::vector<PublishedVariable> PublishedVariables();
  std::string ReadPublished(int handle);
  void WritePublished(int handle, const std::string& value);
  void DeletePublished(int handle);
  void WriteEquipmentXml(const std::string& path, bool withVariables,
                         const std::vector<std::string>& wells);
  /// Opens a dialog (5 or 104) over a window; whether the user accepted it.
  bool OpenDialog(ExtCommand command, void* window);

 private:
  /// One call of ExtCmd, traced where there is a trace.
  int32_t Call(ExtCommand command, void* data = nullptr, uint32_t value = 0);
  /// The same; a failure is thrown. `what` completes "The module couldn't", for one without a text.
  void Require(std::string_view what, ExtCommand command, void* data = nullptr, uint32_t value = 0);
  int32_t CallGuarded(ExtCommand command, void* data, uint32_t value);

  [[noreturn]] void Fail(std::string_view what) const;

  const ModuleApi& api_;
  CallTrace* trace_;
  void* model_ = nullptr;
  void* window_ = nullptr;  ///< of the dialog that is being opened
  ExtErrorBlock error_{};
  std::unique_ptr<_tGetSetData> record_;
};

}  // namespace gantry::fieldrun
