#include "run_program.h"

#include "platform/windows/wide_text.h"
#include "platform/windows/win32.h"

namespace gantry::fieldrun::test {
namespace {

/// As the C library of the program takes a command line apart again.
std::string Quote(const std::string& argument) {
  std::string quoted = "\"";
  size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') quoted.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted + std::string(backslashes, '\\') + '"';
}

/// A file or device that a child inherits, open while this lives.
class Stream {
 public:
  Stream(const std::wstring& name, DWORD access, DWORD creation) {
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    handle_ =
        CreateFileW(name.c_str(), access, FILE_SHARE_READ, &inheritable, creation, 0, nullptr);
  }
  ~Stream() { CloseHandle(handle_); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  HANDLE Handle() const { return handle_; }

 private:
  HANDLE handle_;
};

}  // namespace

int RunProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::filesystem::path& folder, const std::filesystem::path& out,
               const std::filesystem::path& err) {
  const Stream input(L"NUL", GENERIC_READ, OPEN_EXISTING);
  const Stream output(out.native(), GENERIC_WRITE, CREATE_ALWAYS);
  const Stream errors(err.native(), GENERIC_WRITE, CREATE_ALWAYS);
  std::string line = Quote(program);
  for (const std::string& argument : arguments) line += " " + Quote(argument);
  std::wstring wideLine = platform::Widen(CP_UTF8, line);
  STARTUPINFOW startUp = {};
  startUp.cb = sizeof startUp;
  startUp.dwFlags = STARTF_USESTDHANDLES;
  startUp.hStdInput = input.Handle();
  startUp.hStdOutput = output.Handle();
  startUp.hStdError = errors.Handle();
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(nullptr, wideLine.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(),
                     &startUp, &process) == 0) {
    return -1;
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<int>(status);
}

// A program knows nothing of the root that a test puts in the user's place for this process.
void ShareSettingsWithPrograms() { RegOverridePredefKey(HKEY_CURRENT_USER, nullptr); }

}  // namespace gantry::fieldrun::test
