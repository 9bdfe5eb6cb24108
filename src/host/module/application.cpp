#include "settings/gantry_app.h"

namespace gantry {
namespace {

/// Made when the module is loaded and destroyed when it is unloaded.
CGantryApp application;

}  // namespace
}  // namespace gantry
