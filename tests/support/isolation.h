#pragma once

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

namespace gantry::test {

/// Lets this process, and where the platform can its children, keep its registry in `folder`. A
/// test program that has this has the ports and the slots of sessions to itself from its start.
void IsolateSettings(const std::filesystem::path& folder);

/// Sets a variable of this process's environment, or takes it out.
void SetEnvironment(const char* name, const std::optional<std::string>& value);

/// While it lives, a variable of the environment has another value, or none.
class ScopedVariable {
 public:
  explicit ScopedVariable(const char* name, const std::optional<std::string>& value = {})
      : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    Set(value);
  }
  ~ScopedVariable() { SetEnvironment(name_, before_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

  void Set(const std::optional<std::string>& value) { SetEnvironment(name_, value); }

 private:
  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace gantry::test
