#pragma once

#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "platform/file_path.h"
#include "platform/process.h"
#include "support/test_folder.h"

namespace gantry::test {

/// The witness program in a folder of its own, whose name has blanks and a letter outside ASCII in
/// the code page. It ends with the object.
class Child {
 public:
  Child() {
    std::filesystem::create_directory(platform::PathOf(Folder()));
    std::filesystem::copy_file(LAUNCH_WITNESS, platform::PathOf(Program()));
    std::ofstream(platform::PathOf(Folder() + "\\hold"));
  }
  ~Child() { End(); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  std::string Folder() const { return platform::NameOf(folder_.Path()) + "\\D\xE9p\xF4t des cas"; }
  std::string Program() const { return Folder() + "\\launch witness.exe"; }

  bool Start(const std::string& commandLine) {
    process_ = platform::StartProcess(Program(), commandLine, Folder() + "\\");
    return process_ != nullptr;
  }
  bool IsRunning() const { return process_->IsRunning(); }

  /// What the child has written down.
  std::string Report() const {
    std::string report;  // which may be there before anybody else is let in
    while (report.empty()) {
      std::this_thread::yield();
      report = TestFolder::Read(platform::PathOf(Folder() + "\\started.txt"));
    }
    return report;
  }

  void End() {
    std::error_code ignored;
    std::filesystem::remove(platform::PathOf(Folder() + "\\hold"), ignored);
    while (process_ != nullptr && process_->IsRunning()) std::this_thread::yield();
  }

 private:
  TestFolder folder_;
  std::unique_ptr<platform::ChildProcess> process_;
};

}  // namespace gantry::test
