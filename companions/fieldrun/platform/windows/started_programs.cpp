#include "fieldrun/platform/started_programs.h"

#include "platform/windows/win32.h"

namespace gantry::fieldrun {
namespace {

/// What this process starts belongs to its job, which counts its processes.
class JobPrograms : public StartedPrograms {
 public:
  JobPrograms() : before_(Count()) {}

  std::optional<ProgramEnd> End() override {
    const Counts now = Count();
    if (now.total <= before_.total || now.active > before_.active) return std::nullopt;
    return ProgramEnd{"by itself"};
  }

 private:
  struct Counts {
    DWORD total = 0;
    DWORD active = 0;
  };

  /// The job of this process, which it never leaves; no limit goes with it.
  static HANDLE Job() {
    static HANDLE const job = [] {
      HANDLE const own = CreateJobObjectA(nullptr, nullptr);
      AssignProcessToJobObject(own, GetCurrentProcess());
      return own;
    }();
    return job;
  }

  static Counts Count() {
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION counts = {};
    if (QueryInformationJobObject(Job(), JobObjectBasicAccountingInformation, &counts,
                                  sizeof counts, nullptr) == 0) {
      return {};
    }
    return {counts.TotalProcesses, counts.ActiveProcesses};
  }

  Counts before_;
};

}  // namespace

std::unique_ptr<StartedPrograms> StartedPrograms::Watch() {
  return std::make_unique<JobPrograms>();
}

}  // namespace gantry::fieldrun
