#pragma once

#include <memory>
#include <string>
#include <vector>

#include "boundary/records.h"
#include "gantry/inflow.h"

namespace gantry::test {

/// A handle of the library, ended with the object.
class InflowHandle {
 public:
  explicit InflowHandle(void* model = nullptr) : handle_(CreateIPRModel(model), &DestroyIPRModel) {}
  void* Get() const { return handle_.get(); }

 private:
  std::unique_ptr<void, void (*)(void*)> handle_;
};

/// Producers in a reservoir whose answer to any rate is known in closed form: a region at a fixed
/// pressure, and in it a block whose pressure falls with the well's rate. It stands behind the six
/// callbacks as the module would: a restart registers the wells anew, and every reading of a table
/// goes through TransformIPR.
class ScriptedReservoir {
 public:
  struct Well {
    std::string name;
    double regionPressure;
    double blockIndex;   ///< STB/d/psi
    double regionIndex;  ///< STB/d/psi
    double rate = 0.0;

    double BlockPressure(double atRate) const {
      return regionPressure - atRate * (1.0 / regionIndex - 1.0 / blockIndex);
    }
    double FlowingPressure(double atRate) const { return regionPressure - atRate / regionIndex; }
    void FillTable(_tGetSetData& record) const;
    void FillCurrent(_tGetSetData& record) const;
  };

  explicit ScriptedReservoir(std::vector<Well> wells);

  void* Handle() const { return handle_.Get(); }
  std::vector<Well>& Wells() { return wells_; }
  void RegisterWells();
  /// The pressure that the library gives the well's lowest rate; it tells one ratio from another.
  double PressureOfLowestRate(size_t index = 0);

  /// The call, counted from 1 over all callbacks that can fail, that is to fail; 0 for none.
  int failingCall = 0;
  bool timeStandsStill = false;
  int calls = 0;
  std::vector<std::string> log;

 private:
  int32_t Answer(const char* call, char* text);
  int32_t Restart(char* text);
  int32_t ImposeRate(int32_t well, double rate, char* text);
  int32_t Advance(double days, char* text);
  int32_t ReadInflow(int32_t well, void* record, char* text);
  int32_t ReadCurrent(int32_t well, void* record, char* text);

  InflowHandle handle_;
  std::vector<Well> wells_;
  double days_ = 0.0;
  bool hasRead_ = false;
};

}  // namespace gantry::test
