// A child process for tests: writes down how it was started, then lives for as long as there is a
// file "hold" in its folder. Its last argument, if it begins with "mutex:", names one to keep.

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/windows/win32.h"

int main(int argc, char** argv) {
  constexpr char kMutex[] = "mutex:";
  const char* last = argv[argc - 1];
  if (std::strncmp(last, kMutex, std::strlen(kMutex)) == 0) {
    CreateMutexA(nullptr, TRUE, last + std::strlen(kMutex));
  }
  char folder[MAX_PATH] = {};
  GetCurrentDirectoryA(sizeof folder, folder);
  STARTUPINFOA startUp = {};
  GetStartupInfoA(&startUp);
  const char* variable = std::getenv("GANTRY_WITNESS");
  std::ofstream("starting.txt", std::ios::binary)
      << GetCommandLineA() << '\n'
      << folder << '\n'
      << "start-up flags " << startUp.dwFlags << '\n'
      << "variable " << (variable != nullptr ? variable : "none") << '\n';
  std::filesystem::rename("starting.txt", "started.txt");
  const auto longest = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (std::filesystem::exists("hold") && std::chrono::steady_clock::now() < longest) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  std::_Exit(0);  // as abruptly as a process ends that is killed
}
