// A simulator's process for tests whose simulator answers from within the test: it writes down how
// it was started, then lives for as long as there is a file "hold" in its current folder.

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

int main(int argc, char** argv) {
  std::ofstream started("starting.txt", std::ios::binary);
  for (int i = 1; i < argc; ++i) started << argv[i] << '\n';
  started.close();
  std::error_code gone;  // the test may be over by now, and its folder with it or about to go
  std::filesystem::rename("starting.txt", "started.txt", gone);
  const auto longest = std::chrono::steady_clock::now() + std::chrono::minutes(2);
  while (std::filesystem::exists("hold", gone) && std::chrono::steady_clock::now() < longest) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}
