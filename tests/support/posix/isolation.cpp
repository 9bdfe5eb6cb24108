#include "support/isolation.h"

#include <cstdlib>

namespace gantry::test {

namespace fs = std::filesystem;

void SetEnvironment(const char* name, const std::optional<std::string>& value) {
  value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
}

void IsolateSettings(const fs::path& folder) {
  for (const char* variable : {"XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"}) {
    const fs::path place = folder / variable;
    fs::create_directory(place);
    fs::permissions(place, fs::perms::owner_all);
    SetEnvironment(variable, place.string());
  }
}

}  // namespace gantry::test
