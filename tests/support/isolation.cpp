#include "support/isolation.h"

#include <cstdlib>

namespace gantry::test {

ScopedVariable::ScopedVariable(const char* name, const std::optional<std::string>& value)
    : name_(name) {
  if (const char* before = std::getenv(name)) before_ = before;
  Set(value);
}

}  // namespace gantry::test
