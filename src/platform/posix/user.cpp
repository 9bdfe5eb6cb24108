#include "platform/user.h"

#include <cerrno>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace gantry::platform {

std::optional<std::string> LogInName() {
  std::vector<char> texts(1024);
  passwd entry{};
  passwd* found = nullptr;
  while (::getpwuid_r(::geteuid(), &entry, texts.data(), texts.size(), &found) == ERANGE &&
         texts.size() < (size_t{1} << 20)) {
    texts.resize(texts.size() * 2);
  }
  if (found == nullptr) return std::nullopt;
  return found->pw_name;
}

}  // namespace gantry::platform
