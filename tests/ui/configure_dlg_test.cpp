#include "ui/configure_dlg.h"

#include <thread>

#include <gtest/gtest.h>

#include "client/unit_converter.h"
#include "support/test_folder.h"
#include "ui/add_property_dlg.h"
#include "ui/dialog_templates.h"
#include "ui/memory_window.h"
#include "ui/stub_case.h"

namespace gantry::test {
namespace {

using namespace configure_id;
using namespace platform;
using Texts = std::vector<std::string>;

class ConfigureDialog : public ::testing::Test {
 protected:
  ConfigureDialog() {
    config.SimExecutable = "bin/ix";
    config.MPIExecutable = "/mpi";
    config.CmdLine = "--x";
    Expose(config, "A", "First", 0);
    Expose(config, "B", "Second");
    Expose(config, "A", "Third");
  }

  Texts DisplayNames() const {
    Texts names;
    for (const auto& property : config.UserProperties) names.push_back(property->DisplayName);
    return names;
  }

  TestFolder folder;
  CIXConfig config;
  CConfigureDlg dialog{config};
};

TEST_F(ConfigureDialog, CorrectsPortsWithoutAWord) {
  struct Row {
    const char *start, *end;
    int32_t startPort, endPort;
  };
  for (const Row& row : {Row{"7000", "7010", 7000, 7010},
                         {"70000", "0", 9001, 9101},
                         {"65000", "65001", 65000, 65100},
                         {"9000", "8000", 9000, 9100},
                         {"-5", "8000", -5, 8000},
                         {"abc", "12x", 9001, 9101}}) {
    MemoryWindow window(dialog);
    window.Type({{kStartPort, row.start}, {kEndPort, row.end}});
    window.Press(kOkButton);
    EXPECT_EQ(config.StartPort, row.startPort);
    EXPECT_EQ(config.EndPort, row.endPort);
    EXPECT_TRUE(window.messages.empty());
  }
}

TEST_F(ConfigureDialog, ShowsTheConfigurationAndTakesTheTextsOnlyWithOk) {
  for (const int button : {kCancelButton, kOkButton}) {
    MemoryWindow window(dialog);
    EXPECT_EQ(window.Values({kSimExecutable, kMPIExecutable, kCmdLine, kStartPort, kEndPort}),
              "bin/ix|/mpi|--x|9001|9101");
    window.Type({{kSimExecutable, "ix2"}, {kMPIExecutable, "mpi2"}, {kCmdLine, "--y"}});
    window.Press(kHelp);  // shows nothing and closes nothing
    EXPECT_FALSE(window.result);
    window.Press(button);
    EXPECT_EQ(window.result, button);
    EXPECT_EQ(config.SimExecutable + config.MPIExecutable + config.CmdLine,
              button == kOkButton ? "ix2mpi2--y" : "bin/ix/mpi--x");
  }
}

TEST_F(ConfigureDialog, IsNeverSeenHalfDoneByAStartOfAnotherThread) {
  MemoryWindow window(dialog);
  std::jthread host([&window](const std::stop_token& ended) {
    for (size_t i = 0; !ended.stop_requested(); ++i) {
      const std::string path(1000, i % 2 == 0 ? 'a' : 'b');
      window.Type({{kSimExecutable, path}, {kCmdLine, path}});
      window.Press(kOkButton);
    }
  });
  while (config.ForLaunch().CmdLine == "--x") std::this_thread::yield();
  for (int i = 0; i < 100000; ++i) {
    const LaunchSettings seen = config.ForLaunch();
    ASSERT_EQ(seen.CmdLine, seen.SimExecutable);
  }
}

TEST_F(ConfigureDialog, ListsPropertiesAndDeletesForGoodOnlyTheRowsThatAreSelected) {
  MemoryWindow window(dialog);
  const auto& list = window.At(kProperties);
  EXPECT_EQ(list.columns.at(0).title, "IX property");
  EXPECT_EQ(list.columns.at(2).width, 110);
  EXPECT_EQ(list.rows, (std::vector<Texts>{{"A", "First", UnitFamilyTable[0].name},
                                           {"B", "Second", "None"},
                                           {"A", "Third", "None"}}));
  window.Press(kDelete);
  EXPECT_EQ(DisplayNames().size(), 3u);
  window.At(kProperties).selectedRows = {0};
  window.Press(kDelete);
  window.Press(kDelete);
  EXPECT_EQ(DisplayNames(), (Texts{"Second", "Third"})) << "of the same name, not selected";
  window.At(kProperties).selectedRows = {1};
  for (const int button : {kCancelButton, kOkButton}) {
    window.inNested = [button](MemoryWindow& nested) {
      nested.Type({{add_property_id::kProperty, "D"}, {add_property_id::kDisplayName, "Fourth"}});
      nested.Press(button);
    };
    window.Press(kAdd);
    EXPECT_EQ(list.rows.size(), button == kOkButton ? 3u : 2u);
  }
  EXPECT_EQ(list.rows[2][1], "Fourth");
  EXPECT_EQ(window.SelectedRows(kProperties), std::vector<size_t>{1});
  window.Press(kCancelButton);
  EXPECT_EQ(DisplayNames(), (Texts{"Second", "Third", "Fourth"}));
}

TEST_F(ConfigureDialog, BrowsesForEachExecutableIntoItsEdit) {
  MemoryWindow window(dialog);
  for (const auto& [button, edit, filters] :
       {std::tuple{kBrowseSimulator, kSimExecutable, "IX executable file (*.exe)|*.exe|"},
        {kBrowseMpi, kMPIExecutable, "MPI executable file - mpiexec (*.exe)|*.exe|"}}) {
    const std::string before = window.Text(edit);
    window.pickedFile.reset();
    window.Press(button);
    EXPECT_EQ(window.Text(edit), before) << "the user gave up";
    EXPECT_EQ(window.fileRequest->folder, edit == kSimExecutable ? "bin" : "/");
    window.pickedFile = "/new";
    window.Press(button);
    EXPECT_STREQ(window.fileRequest->filters, filters);
    EXPECT_EQ(window.Text(edit), "/new");
  }
  EXPECT_EQ(config.SimExecutable, "bin/ix");
}

TEST_F(ConfigureDialog, AddsAPropertyWithTheUnitAndTypeThatWereChosen) {
  using namespace add_property_id;
  for (const int type : {0, 1}) {
    CAddProperty add(config);
    MemoryWindow window(add);
    EXPECT_EQ(window.At(kUnit).items.size(), 14u);
    EXPECT_EQ(window.At(kUnit).items[0], "Other/None");
    EXPECT_EQ(window.Values({kUnit, kType}), "0|0");
    // Differs only in case from one that is there.
    const std::string name = type == 0 ? "a" : "b";
    window.Type({{add_property_id::kProperty, name}, {kDisplayName, name + " shown"}});
    if (type == 1) window.Choose(kUnit, 7);
    window.Choose(kType, type);
    window.Press(kOkButton);
    ASSERT_EQ(window.result, kOkButton);
    const CIXUserProperty& added = *config.UserProperties.back();
    EXPECT_EQ(added.Property + added.DisplayName, name + name + " shown");
    EXPECT_EQ(added.UnitFamily, type == 0 ? -1 : 6);
    EXPECT_EQ(added.UnitCode, UnitFamilyUserCode(added.UnitFamily));
    EXPECT_EQ(added.IsScalar, type == 0 ? 1 : 0);
  }
}

TEST_F(ConfigureDialog, StaysOpenOverAPropertyThatCannotBeAdded) {
  using namespace add_property_id;
  constexpr const char* kMissing = "Property name and display name must be provided";
  constexpr const char* kTaken =
      "The property specified is not unique (property name or display name)";
  struct Row {
    const char *name, *display, *message;
    int focus;
  };
  for (const Row& row : {Row{"", "Name", kMissing, add_property_id::kProperty},
                         {"D", "   ", kMissing, kDisplayName},
                         {"B", "Fourth", kTaken, add_property_id::kProperty},
                         {"D", "Third", kTaken, add_property_id::kProperty}}) {
    CAddProperty add(config);
    MemoryWindow window(add);
    window.Type({{add_property_id::kProperty, row.name}, {kDisplayName, row.display}});
    window.Press(kOkButton);
    EXPECT_EQ(window.messages, Texts{row.message});
    EXPECT_EQ(window.focus, row.focus);
    EXPECT_FALSE(window.result);
    EXPECT_EQ(config.UserProperties.size(), 3u);
  }
}

}  // namespace
}  // namespace gantry::test
