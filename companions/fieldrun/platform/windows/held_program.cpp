#include "fieldrun/platform/held_program.h"

#include <stdexcept>

#include <fmt/format.h>

#include "platform/windows/win32.h"

namespace gantry::fieldrun {
namespace {

/// In a job of its own, which ends all that is left in it when it is closed.
class JobProgram : public HeldProgram {
 public:
  JobProgram(HANDLE job, HANDLE process) : job_(job), process_(process) {}

  ~JobProgram() override {
    CloseHandle(process_);
    CloseHandle(job_);
  }

  std::optional<HeldEnd> WaitForEnd(std::chrono::milliseconds limit) override {
    if (WaitForSingleObject(process_, static_cast<DWORD>(limit.count())) != WAIT_OBJECT_0) {
      return std::nullopt;
    }
    constexpr DWORD kFirstCrash = 0xC0000000;
    DWORD status = 0;
    GetExitCodeProcess(process_, &status);
    if (status >= kFirstCrash) return HeldEnd{fmt::format("with status {:#x}", status), true};
    return HeldEnd{fmt::format("with status {}", status)};
  }

 private:
  HANDLE job_;
  HANDLE process_;
};

HANDLE MakeJob() {
  HANDLE const job = CreateJobObjectA(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

HANDLE OpenInherited(const char* name, DWORD access, DWORD creation) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  return CreateFileA(name, access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, creation,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

std::unique_ptr<HeldProgram> HeldProgram::Start(const HeldStart& start) {
  // Names of files hold no quotes here.
  std::string line = "\"" + start.program + "\"";
  for (const std::string& argument : start.arguments) line += " \"" + argument + "\"";
  STARTUPINFOA startUp = {};
  startUp.cb = sizeof startUp;
  startUp.dwFlags = STARTF_USESTDHANDLES;
  startUp.hStdInput = OpenInherited("NUL", GENERIC_READ, OPEN_EXISTING);
  startUp.hStdOutput = OpenInherited(start.log.c_str(), GENERIC_WRITE, CREATE_ALWAYS);
  startUp.hStdError = startUp.hStdOutput;
  PROCESS_INFORMATION process = {};
  const BOOL created =
      CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                     start.folder.c_str(), &startUp, &process);
  const DWORD error = GetLastError();
  CloseHandle(startUp.hStdInput);
  CloseHandle(startUp.hStdOutput);
  if (created == 0) {
    throw std::runtime_error(fmt::format("{} couldn't be started: error {}", start.program, error));
  }
  HANDLE const job = MakeJob();
  AssignProcessToJobObject(job, process.hProcess);
  ResumeThread(process.hThread);
  CloseHandle(process.hThread);
  return std::make_unique<JobProgram>(job, process.hProcess);
}

}  // namespace gantry::fieldrun
