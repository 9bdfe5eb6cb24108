#include "settings/gantry_app.h"

#include <cassert>

namespace gantry {

namespace {

CGantryApp* theApp = nullptr;

}  // namespace

CGantryApp::CGantryApp() {
  assert(theApp == nullptr);
  theApp = this;
}

CGantryApp::~CGantryApp() { theApp = nullptr; }

CGantryApp& CGantryApp::Instance() {
  assert(theApp != nullptr);
  return *theApp;
}

}  // namespace gantry
