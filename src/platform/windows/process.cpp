#include "platform/process.h"

#include "platform/windows/win32.h"

namespace gantry::platform {

namespace {

class WindowsProcess : public ChildProcess {
 public:
  explicit WindowsProcess(HANDLE handle) : handle_(handle) {}

  // The handle stays open for as long as the module lives: the system ties nothing else to it.
  bool IsRunning() override {
    DWORD code = 0;
    return GetExitCodeProcess(handle_, &code) != 0 && code == STILL_ACTIVE;
  }

 private:
  HANDLE handle_;
};

}  // namespace

std::unique_ptr<ChildProcess> StartProcess(const std::string& application,
                                           const std::string& commandLine,
                                           const std::string& directory) {
  STARTUPINFOA startUp = {};  // all zero, its size field included
  PROCESS_INFORMATION process = {};
  std::string line = commandLine;  // the system may write into it
  const BOOL created = CreateProcessA(application.c_str(), line.data(), nullptr, nullptr, FALSE, 0,
                                      nullptr, directory.c_str(), &startUp, &process);
  if (created == 0) return nullptr;
  return std::make_unique<WindowsProcess>(process.hProcess);
}

}  // namespace gantry::platform
