// The module as a host on Windows loads it: by its file, with nothing else of ours in the process.

#include <gtest/gtest.h>

#include "platform/windows/win32.h"
//
#include <tlhelp32.h>

#include "support/test_folder.h"

namespace gantry::platform {
namespace {

int CountThreads() {
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof entry;
  int count = 0;
  for (BOOL more = Thread32First(snapshot, &entry); more != 0;
       more = Thread32Next(snapshot, &entry)) {
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  }
  CloseHandle(snapshot);
  return count;
}

// What a library may not do while the loader's lock is held, it leaves to the first who needs it.
TEST(Module, IsLoadedWithoutAThreadAndWithoutTheSocketLibraryAndFreedAgain) {
  const test::TestFolder folder;
  const int threads = CountThreads();
  const HMODULE module = LoadLibraryA(INTERSECT_DLL);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(CountThreads(), threads);
  EXPECT_EQ(::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP), INVALID_SOCKET);
  EXPECT_EQ(WSAGetLastError(), WSANOTINITIALISED);
  FreeLibrary(module);
  EXPECT_EQ(GetModuleHandleA("Intersect.dll"), nullptr) << "nothing keeps it";
}

}  // namespace
}  // namespace gantry::platform
