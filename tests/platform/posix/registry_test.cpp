#include "platform/registry.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "settings/machine_config.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

namespace fs = std::filesystem;

const char kHeader[] = "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Acme]\r\n";

class RegistryFile : public testing::Test {
 protected:
  static std::unique_ptr<RegistryKey> Open(const std::string& path = "Software\\Acme",
                                           uintptr_t root = kCurrentUser) {
    return RegistryKey::Create(root, path);
  }
  void Put(const std::string& content) const { folder_.Write(kFile, content); }
  std::string Stored() const { return test::TestFolder::Read(folder_ / kFile); }

  static constexpr char kFile[] = "XDG_CONFIG_HOME/gantry/registry.reg";
  test::TestFolder folder_;
};

TEST_F(RegistryFile, HoldsAKeyOnceItIsOpenedAndAValueOnceItIsWritten) {
  const auto key = Open();
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(Stored(), kHeader);
  EXPECT_TRUE(key->WriteText("Path", R"(C:\a "b")"));
  EXPECT_TRUE(key->WriteNumber("Port", 9001));
  EXPECT_EQ(Stored(), std::string(kHeader) + "\"Path\"=\"C:\\\\a \\\"b\\\"\"\r\n" +
                          "\"Port\"=dword:00002329\r\n");
}

TEST_F(RegistryFile, ReadsTheFormsThatAWindowsMachineExportsAndNoOthers) {
  Put("REGEDIT4\n\"Gone\"=\"of no key\"\n\n[HKEY_CURRENT_USER\\Software\\ACME]\n"
      "\"Long\"=hex(1):41,42,\\\n  43,00\n\"Port\"=DWORD:0000000A\n\"Odd\"=dword:123456789\n"
      "\"Open\"=\"never closed\n\"Tail\"=\"a\"b\n\"Gone\"=-\n\"Hex\"=hex:41,00\n\"Bare\"=xy\"\n");
  const auto key = Open();
  EXPECT_EQ(key->ReadText("Long"), "ABC");
  EXPECT_EQ(key->ReadNumber("Port"), 10u);
  EXPECT_FALSE(key->ReadNumber("Odd"));
  for (const char* name : {"Open", "Tail", "Gone", "Hex", "Bare"})
    EXPECT_FALSE(key->ReadText(name)) << name;
}

TEST_F(RegistryFile, KeepsEverythingThatItDoesNotUnderstandByteForByte) {
  const std::string before =
      "REGEDIT4\n; mine\n\n[HKEY_CURRENT_USER\\Other]\n\"Port\"=dword:00000001\n"
      "\"Raw\"=hex:01,\\\n  02\n@=\"\"\n\n[HKEY_CURRENT_USER\\Software\\Acme]\n\"A\"=\"1\"\n; "
      "C:\\\n";
  const std::string after =
      "; tail \xff\x80\n\n[broken\nnonsense = 1\n\"half\n\n[-HKEY_USERS\\X]\nlast";
  Put(before + "\"Port\"=dword:00000002\n" + after);
  const auto key = Open();
  EXPECT_TRUE(key->WriteNumber("Port", 3));
  EXPECT_EQ(Stored(), before + "\"Port\"=dword:00000003\n" + after);
  EXPECT_TRUE(key->WriteText("New", "x"));
  EXPECT_EQ(Stored(), before + "\"Port\"=dword:00000003\n\"New\"=\"x\"\n" + after);
  EXPECT_TRUE(Open("Software\\Next")->WriteText("B", "y"));
  EXPECT_EQ(Stored(), before + "\"Port\"=dword:00000003\n\"New\"=\"x\"\n" + after +
                          "\n\n[HKEY_CURRENT_USER\\Software\\Next]\n\"B\"=\"y\"\n");
}

TEST_F(RegistryFile, AFileThatIsNoneLosesNothingWhenItIsWritten) {
  const std::string garbage("\xff\xfeW\0i\0n\0", 8);
  Put(garbage);
  EXPECT_TRUE(Open()->WriteNumber("Port", 3));
  EXPECT_EQ(Open()->ReadNumber("Port"), 3u);
  EXPECT_NE(Stored().find(garbage), std::string::npos);
  const std::string cut = "REGEDIT4\r\n[HKEY_CURRENT_USER\\Software\\Acme]\r\n\"Raw\"=hex:01,\\";
  Put(cut);
  EXPECT_TRUE(Open()->WriteNumber("Port", 3));
  EXPECT_EQ(Stored(), cut + "\r\n\r\n\"Port\"=dword:00000003\r\n");
}

TEST_F(RegistryFile, KeepsRootsApartAndRefusesWhatIsNoKey) {
  Open("K", kCurrentUser)->WriteNumber("N", 1);
  Open("K", kLocalMachine)->WriteNumber("N", 2);
  EXPECT_EQ(Open("K", kCurrentUser)->ReadNumber("N"), 1u);
  EXPECT_EQ(Open("K", 0), nullptr);
  EXPECT_EQ(Open("K", 0x1180000001u), nullptr);
  EXPECT_EQ(Open("\\K"), nullptr);
  EXPECT_EQ(Open("K]\r\n[HKEY_CURRENT_USER\\L"), nullptr);
}

TEST_F(RegistryFile, AStoreThatCannotBeWrittenStillReadsAndIsLeftAsItIs) {
  Put(std::string(kHeader) + "\"A\"=\"1\"\r\n");
  const std::string before = Stored();
  fs::create_directory(folder_ / (std::string(kFile) + ".lock"));
  const auto key = Open();
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(key->ReadText("A"), "1");
  EXPECT_FALSE(key->WriteText("A", "2"));
  EXPECT_EQ(Open("Software\\Missing"), nullptr);
  EXPECT_EQ(Stored(), before);
}

TEST_F(RegistryFile, AStoreThatCannotBeReadIsRefusedAndNotWrittenOver) {
  const auto key = Open();
  constexpr uintmax_t kTooLarge = uintmax_t{1} << 40;
  fs::resize_file(folder_ / kFile, kTooLarge);
  EXPECT_EQ(Open(), nullptr);
  EXPECT_FALSE(key->WriteText("A", "1"));
  EXPECT_EQ(fs::file_size(folder_ / kFile), kTooLarge);
  fs::remove(folder_ / kFile);
  fs::create_directories(folder_ / kFile);
  EXPECT_EQ(Open(), nullptr);
  {
    const CIXConfig config;
    fs::remove(folder_ / kFile);
  }
  EXPECT_FALSE(fs::exists(folder_ / kFile)) << "nor by a configuration that could not be read";
  { const CIXConfig config; }
  EXPECT_TRUE(fs::exists(folder_ / kFile)) << "one that there is none of isn't unread";
}

TEST_F(RegistryFile, ALinkedStoreStaysALinkAndKeepsItsMode) {
  const fs::path real = folder_.Write("dotfiles/registry.reg", kHeader);
  fs::permissions(real, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_directories((folder_ / kFile).parent_path());
  fs::create_symlink(real, folder_ / kFile);
  EXPECT_TRUE(Open()->WriteNumber("N", 1));
  EXPECT_TRUE(fs::is_symlink(folder_ / kFile));
  EXPECT_NE(test::TestFolder::Read(real).find("\"N\"=dword:00000001"), std::string::npos);
  EXPECT_EQ(fs::status(real).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(RegistryFile, ProcessesThatWriteAtOnceLoseNoValue) {
  constexpr int kProcesses = 4;
  constexpr int kValues = 25;
  const auto name = [](int process, int value) {
    return std::to_string(process) + "-" + std::to_string(value);
  };
  for (int p = 0; p < kProcesses; ++p) {
    if (::fork() != 0) continue;
    bool ok = true;
    for (int v = 0; v < kValues; ++v) ok = ok && Open()->WriteNumber(name(p, v), 1);
    ::_exit(ok ? 0 : 1);
  }
  int status = 0;
  while (::wait(&status) > 0) EXPECT_EQ(status, 0);
  for (int i = 0; i < kProcesses * kValues; ++i) {
    EXPECT_EQ(Open()->ReadNumber(name(i / kValues, i % kValues)), 1u);
  }
}

}  // namespace
}  // namespace gantry::platform
