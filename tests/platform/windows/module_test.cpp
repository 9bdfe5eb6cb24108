// The module as a host on Windows loads it: by its file, with nothing else of ours in the process.

#include <array>
#include <memory>

#include <gtest/gtest.h>

#include "platform/file_path.h"
#include "platform/registry.h"
#include "platform/windows/win32.h"
//
#include <tlhelp32.h>

#include "support/test_folder.h"

namespace gantry::platform {
namespace {

namespace fs = std::filesystem;

constexpr char kKey[] = "Software\\Orvale\\Tessel\\ExtensionDlls100_64\\Intersect";

class LoadedModule {
 public:
  explicit LoadedModule(const std::string& path) : module_(LoadLibraryA(path.c_str())) {}
  ~LoadedModule() { FreeLibrary(module_); }
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  bool IsThere() const { return module_ != nullptr; }
  template <class Function>
  Function* Get(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }

 private:
  HMODULE module_;
};

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

class Module : public testing::Test {
 protected:
  test::TestFolder folder_;
};

// What a library may not do while the loader's lock is held, it leaves to the first who needs it.
TEST_F(Module, IsLoadedWithoutAThreadAndWithoutTheSocketLibrary) {
  const int threads = CountThreads();
  const LoadedModule module(INTERSECT_DLL);
  ASSERT_TRUE(module.IsThere());
  EXPECT_EQ(CountThreads(), threads);
  EXPECT_EQ(::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP), INVALID_SOCKET);
  EXPECT_EQ(WSAGetLastError(), WSANOTINITIALISED);
}

TEST_F(Module, SavesItsConfigurationWhenItIsUnloaded) {
  const auto key = RegistryKey::Create(kCurrentUser, kKey);
  key->WriteNumber("StartPort", 9500);
  key->WriteText("UserProperties", "A|B|3~");
  {
    const LoadedModule module(INTERSECT_DLL);
    ASSERT_TRUE(module.IsThere());
    key->WriteNumber("StartPort", 1);
  }
  EXPECT_EQ(key->ReadNumber("StartPort"), 9500u);
  EXPECT_EQ(key->ReadNumber("EndPort"), 9101u);
  EXPECT_EQ(key->ReadText("UserProperties"), "A|B|3|1~");
}

TEST_F(Module, IsLoadedAndFreedAgainAndAgain) {
  const auto key = RegistryKey::Create(kCurrentUser, kKey);
  for (uint32_t port = 9500; port < 9505; ++port) {
    key->WriteNumber("EndPort", port);
    {
      const LoadedModule module(INTERSECT_DLL);
      ASSERT_TRUE(module.IsThere());
      std::array<char, 264> err = {};
      void* model = nullptr;
      ASSERT_EQ(module.Get<int32_t(void**, void*)>("ExtCreateInstance")(&model, err.data()), 0);
      ASSERT_EQ(module.Get<int32_t(void*, void*)>("ExtDestroyInstance")(model, err.data()), 0);
      key->WriteNumber("EndPort", 1);
    }
    EXPECT_EQ(GetModuleHandleA("Intersect.dll"), nullptr) << "nothing keeps it";
    EXPECT_EQ(key->ReadNumber("EndPort"), port);
  }
}

TEST_F(Module, FindsItsInflowLibraryBesideItselfInAnyFolder) {
  const fs::path folder = folder_.Path() / PathOf("Mes biblioth\xE8ques");
  fs::create_directory(folder);
  fs::copy_file(INTERSECT_DLL, folder / "Intersect.dll");
  fs::copy_file(INFLOW_CALC_DLL, folder / "InflowCalc.dll");
  const LoadedModule module(NameOf(folder / "Intersect.dll"));
  ASSERT_TRUE(module.IsThere());
  std::array<char, 264> err = {};
  void* model = nullptr;
  module.Get<int32_t(void**, void*)>("ExtCreateInstance")(&model, err.data());
  char path[MAX_PATH] = {};
  GetModuleFileNameA(GetModuleHandleA("InflowCalc.dll"), path, MAX_PATH);
  EXPECT_EQ(path, NameOf(folder / "InflowCalc.dll"));
  module.Get<int32_t(void*, void*)>("ExtDestroyInstance")(model, err.data());
}

}  // namespace
}  // namespace gantry::platform
