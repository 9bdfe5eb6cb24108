#include "model/inflow_callbacks.h"

#include "boundary/error_text.h"
#include "model/ext_model.h"
#include "platform/module_state.h"

namespace gantry {
namespace {

/// Calls the model, and gives the library a failure's text.
template <class... Parameters, class... Arguments>
int32_t Call(void* model, char* text, int32_t (InflowDriver::*operation)(Parameters...),
             Arguments&&... arguments) {
  ExtErrorBlock err = {};
  InflowDriver& driver = *static_cast<CExtModel*>(model);
  if ((driver.*operation)(arguments..., &err) == 0) return 0;
  if (text != nullptr) CopyBounded({text, IPR_TEXT_SIZE}, err.text);
  return 1;
}

_tGetSetData& AsRecord(void* record) { return *static_cast<_tGetSetData*>(record); }

}  // namespace

constinit const InflowCallbacks kInflowCallbacks = {
    .elapsedDays = [](void* model) { return static_cast<CExtModel*>(model)->ElapsedDays(); },
    .restart =
        [](void* model, char* text) {
          const platform::ModuleStateScope state;
          return Call(model, text, &InflowDriver::Restart);
        },
    .imposeRate =
        [](void* model, int32_t well, double rate, char* text) {
          return Call(model, text, &InflowDriver::ImposeRate, well, rate);
        },
    .advance = [](void* model, double days,
                  char* text) { return Call(model, text, &InflowDriver::Advance, days); },
    .readInflow =
        [](void* model, int32_t well, void* record, char* text) {
          return Call(model, text, &InflowDriver::ReadInflow, well, AsRecord(record));
        },
    .readCurrent =
        [](void* model, int32_t well, void* record, char* text) {
          return Call(model, text, &InflowDriver::ReadCurrent, well, AsRecord(record));
        },
};

}  // namespace gantry
