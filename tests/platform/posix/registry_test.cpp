#include "platform/registry.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/posix/full_disk.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

namespace fs = std::filesystem;

const char kHeader[] = "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Acme]\r\n";

class Registry : public testing::Test {
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

TEST_F(Registry, OpeningCreatesTheKeyAndWritesReachTheFileAtOnce) {
  const auto key = Open();
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(Stored(), kHeader);
  EXPECT_TRUE(key->WriteText("Path", R"(C:\a "b")"));
  EXPECT_TRUE(key->WriteNumber("Port", 9001));
  EXPECT_EQ(Stored(), std::string(kHeader) + "\"Path\"=\"C:\\\\a \\\"b\\\"\"\r\n" +
                          "\"Port\"=dword:00002329\r\n");
  EXPECT_EQ(key->ReadText("path"), R"(C:\a "b")");
  EXPECT_EQ(Open("SOFTWARE\\acme\\")->ReadNumber("PORT"), 9001u);
}

TEST_F(Registry, EveryTextComesBackAsItWent) {
  const auto key = Open();
  std::string bytes;
  for (int c = 1; c < 256; ++c) bytes += static_cast<char>(c);
  for (const std::string& text : {std::string(), std::string("\\"), std::string("a\r\nb\\"), bytes,
                                  std::string(100000, '"')}) {
    ASSERT_TRUE(key->WriteText("Text", text));
    EXPECT_EQ(key->ReadText("Text"), text);
  }
}

TEST_F(Registry, AValueOfAnotherTypeReadsAsAbsentUntilItIsWritten) {
  Put(std::string(kHeader) +
      "\"Port\"=\"9001\"\r\n\"Path\"=dword:00000001\r\n\"Odd\"=dword:123456789\r\n"
      "\"Open\"=\"never closed\r\n\"Tail\"=\"a\"b\r\n\"Gone\"=-\r\n\"Hex\"=hex:41,00\r\n");
  const auto key = Open();
  for (const char* name : {"Port", "Odd", "Missing"}) EXPECT_FALSE(key->ReadNumber(name)) << name;
  for (const char* name : {"Path", "Open", "Tail", "Gone", "Hex"}) {
    EXPECT_FALSE(key->ReadText(name)) << name;
  }
  EXPECT_TRUE(key->WriteNumber("Port", 7));
  EXPECT_EQ(key->ReadNumber("Port"), 7u);
  EXPECT_FALSE(key->ReadText("Port"));
}

TEST_F(Registry, ReadsTheFormsThatAWindowsMachineExports) {
  Put("REGEDIT4\n\n[HKEY_CURRENT_USER\\Software\\ACME]\n"
      "\"Long\"=hex(1):41,42,\\\n  43,00\n\"Port\"=DWORD:0000000A\n");
  EXPECT_EQ(Open()->ReadText("Long"), "ABC");
  EXPECT_EQ(Open()->ReadNumber("Port"), 10u);
}

TEST_F(Registry, KeepsEverythingThatItDoesNotUnderstandByteForByte) {
  const std::string before =
      "REGEDIT4\n; mine\n\n[HKEY_CURRENT_USER\\Other]\n\"Port\"=dword:00000001\n"
      "\"Raw\"=hex:01,\\\n  02\n@=\"\"\n\n[HKEY_CURRENT_USER\\Software\\Acme]\n\"A\"=\"1\"\n";
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

TEST_F(Registry, AFileThatIsNoneLosesNothingWhenItIsWritten) {
  const std::string garbage("\xff\xfeW\0i\0n\0", 8);
  Put(garbage);
  EXPECT_TRUE(Open()->WriteNumber("Port", 3));
  EXPECT_EQ(Open()->ReadNumber("Port"), 3u);
  EXPECT_NE(Stored().find(garbage), std::string::npos);
}

TEST_F(Registry, RootsAreApartAndAreKnownInTheirSignExtendedForm) {
  Open("K", kCurrentUser)->WriteNumber("N", 1);
  Open("K", kLocalMachine)->WriteNumber("N", 2);
  EXPECT_EQ(Open("K", kCurrentUser | 0xFFFFFFFF00000000u)->ReadNumber("N"), 1u);
  EXPECT_EQ(Open("K", kLocalMachine)->ReadNumber("N"), 2u);
}

TEST_F(Registry, RefusesWhatIsNoKey) {
  EXPECT_EQ(Open("K", 0), nullptr);
  EXPECT_EQ(Open("K", 0x1180000001u), nullptr);
  EXPECT_EQ(Open("\\K"), nullptr);
  EXPECT_EQ(Open("K]\r\n[HKEY_CURRENT_USER\\L"), nullptr);
}

TEST_F(Registry, AStoreThatCannotBeWrittenStillReadsAndIsLeftAsItIs) {
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

TEST_F(Registry, AFullDiskLeavesTheStoreAsItIs) {
  const auto key = Open();
  const std::string before = Stored();
  const test::FullDisk disk(before.size());
  EXPECT_FALSE(key->WriteText("A", "1"));
  EXPECT_EQ(Stored(), before);
}

TEST_F(Registry, AStoreThatIsNoFileIsRefused) {
  fs::create_directories(folder_ / kFile);
  EXPECT_EQ(Open(), nullptr);
  fs::remove(folder_ / kFile);
  folder_.Write(kFile, "REGEDIT4\r\n");
  fs::resize_file(folder_ / kFile, uintmax_t{1} << 40);
  EXPECT_EQ(Open(), nullptr);
}

TEST_F(Registry, ALinkedStoreStaysALinkAndKeepsItsMode) {
  const fs::path real = folder_.Write("dotfiles/registry.reg", kHeader);
  fs::permissions(real, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_directories((folder_ / kFile).parent_path());
  fs::create_symlink(real, folder_ / kFile);
  EXPECT_TRUE(Open()->WriteNumber("N", 1));
  EXPECT_TRUE(fs::is_symlink(folder_ / kFile));
  EXPECT_NE(test::TestFolder::Read(real).find("\"N\"=dword:00000001"), std::string::npos);
  EXPECT_EQ(fs::status(real).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Registry, ProcessesThatWriteAtOnceLoseNoValue) {
  constexpr int kProcesses = 4;
  constexpr int kValues = 25;
  std::vector<pid_t> writers;
  for (int p = 0; p < kProcesses; ++p) {
    writers.push_back(::fork());
    if (writers.back() != 0) continue;
    bool ok = true;
    for (int v = 0; v < kValues; ++v) {
      ok = ok && Open()->WriteNumber(std::to_string(p) + "-" + std::to_string(v), 1);
    }
    ::_exit(ok ? 0 : 1);
  }
  for (const pid_t writer : writers) {
    int status = -1;
    ASSERT_EQ(::waitpid(writer, &status, 0), writer);
    EXPECT_EQ(status, 0);
  }
  const auto key = Open();
  for (int i = 0; i < kProcesses * kValues; ++i) {
    EXPECT_EQ(key->ReadNumber(std::to_string(i / kValues) + "-" + std::to_string(i % kValues)), 1u);
  }
}

}  // namespace
}  // namespace gantry::platform
