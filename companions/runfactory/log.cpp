#include "runfactory/log.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <stdexcept>

#include <fcntl.h>
#include <fmt/chrono.h>
#include <fmt/format.h>

namespace gantry::cluster {

namespace {

std::string Now() { return fmt::format("{:%FT%TZ}", fmt::gmtime(std::time(nullptr))); }

}  // namespace

std::string OneLine(std::string_view text) {
  std::string line;
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x20 || code == 0x7f) {
      line += fmt::format("\\x{:02x}", code);
    } else {
      line += character;
    }
  }
  return line;
}

Log::Log(const std::string& file)
    : file_(::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0640)) {
  if (!file_.IsOpen())
    throw std::runtime_error("cannot open the log " + file + ": " + std::strerror(errno));
}

void Log::Write(std::string_view text) const {
  const std::string line = Now() + " " + OneLine(text) + "\n";
  // A log that can't be written must not end a run.
  [[maybe_unused]] const ssize_t written = ::write(Descriptor(), line.data(), line.size());
}

}  // namespace gantry::cluster
