#include "fieldrun/platform/started_programs.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include <fmt/format.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

struct Child {
  pid_t number = 0;
  bool hasEnded = false;
  bool isProgram = false;  ///< false for a fork of this program that hasn't become another
};

/// Reads /proc/NUMBER/stat (proc(5)); none when the process is gone, or is no child of this one.
std::optional<Child> ReadChild(const fs::path& folder) {
  const std::string name = folder.filename().string();
  Child child;
  const char* const end = name.data() + name.size();
  if (std::from_chars(name.data(), end, child.number).ptr != end) return std::nullopt;
  std::ifstream file(folder / "stat");
  std::string text;
  std::getline(file, text);
  // The program's name stands in brackets, and may hold anything.
  std::istringstream rest(text.substr(std::min(text.rfind(')') + 1, text.size())));
  char state = 0;
  pid_t parent = 0;
  long ignored = 0;
  unsigned long flags = 0;
  constexpr unsigned long kForkedButNotExecuted = 0x40;
  rest >> state >> parent >> ignored >> ignored >> ignored >> ignored >> flags;
  if (!rest || parent != ::getpid()) return std::nullopt;
  child.hasEnded = state == 'Z' || state == 'X';
  child.isProgram = (flags & kForkedButNotExecuted) == 0;
  return child;
}

template <class Action>
void ForEachChild(Action action) {
  std::error_code error;
  for (fs::directory_iterator place("/proc", error), end; !error && place != end;
       place.increment(error)) {
    if (const auto child = ReadChild(place->path())) action(*child);
  }
}

ProgramEnd DescribeEnd(pid_t number) {
  siginfo_t info{};
  const auto id = static_cast<id_t>(number);
  if (::waitid(P_PID, id, &info, WEXITED | WNOHANG | WNOWAIT) != 0 || info.si_pid != number) {
    return {"by itself"};
  }
  const bool hasStatus = info.si_code == CLD_EXITED;
  return {fmt::format("{} {}", hasStatus ? "with status" : "by signal", info.si_status),
          !hasStatus || info.si_status != 0};
}

/// The module gives its programs to the system, by the death of their parent: as the reaper of its
/// descendants, this process gets them.
class ReapedPrograms : public StartedPrograms {
 public:
  ReapedPrograms() {
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    ForEachChild([this](const Child& child) { earlier_.insert(child.number); });
  }

  std::optional<ProgramEnd> End() override {
    pid_t ended = 0;
    bool lives = false;
    ForEachChild([&](const Child& child) {
      if (earlier_.contains(child.number)) return;
      lives = lives || !child.hasEnded;
      if (child.hasEnded && child.isProgram) ended = child.number;
    });
    if (ended == 0 || lives) return std::nullopt;
    return DescribeEnd(ended);
  }

 private:
  std::set<pid_t> earlier_;
};

}  // namespace

std::unique_ptr<StartedPrograms> StartedPrograms::Watch() {
  return std::make_unique<ReapedPrograms>();
}

}  // namespace gantry::fieldrun
