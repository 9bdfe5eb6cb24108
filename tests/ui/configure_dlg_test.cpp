#include "ui/configure_dlg.h"

#include <gtest/gtest.h>

#include "client/unit_converter.h"
#include "support/test_folder.h"
#include "ui/add_property_dlg.h"
#include "ui/dialog_templates.h"
#include "ui/memory_window.h"

namespace gantry {
namespace {

using namespace configure_id;
using platform::kCancelButton;
using platform::kOkButton;
using test::MemoryWindow;
using Texts = std::vector<std::string>;

class ConfigureDialog : public ::testing::Test {
 protected:
  ConfigureDialog() {
    config.SimExecutable = "bin/ix";
    config.MPIExecutable = "/mpi";
    config.CmdLine = "--x";
    for (const auto& [name, display, family] :
         {std::tuple{"A", "First", 0}, {"B", "Second", -1}, {"A", "Third", -1}}) {
      auto property = std::make_unique<CIXUserProperty>();
      property->Property = name;
      property->DisplayName = display;
      property->UnitFamily = family;
      config.UserProperties.push_back(std::move(property));
    }
  }

  Texts DisplayNames() const {
    Texts names;
    for (const auto& property : config.UserProperties) names.push_back(property->DisplayName);
    return names;
  }

  test::TestFolder folder;
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
                         {"abc", "", 9001, 9101},
                         {"99999999999", "12x", 9001, 9101}}) {
    MemoryWindow window(dialog);
    window.SetText(kStartPort, row.start);
    window.SetText(kEndPort, row.end);
    window.Press(kOkButton);
    EXPECT_EQ(config.StartPort, row.startPort);
    EXPECT_EQ(config.EndPort, row.endPort);
    EXPECT_TRUE(window.messages.empty());
    EXPECT_EQ(window.result, kOkButton);
  }
}

TEST_F(ConfigureDialog, ShowsTheConfigurationAndTakesTheTextsOnlyWithOk) {
  for (const int button : {kCancelButton, kOkButton}) {
    MemoryWindow window(dialog);
    Texts shown;
    for (const int id : {kSimExecutable, kMPIExecutable, kCmdLine, kStartPort, kEndPort}) {
      shown.push_back(window.Text(id));
      window.SetText(id, "7" + std::to_string(id));
    }
    EXPECT_EQ(shown, (Texts{"bin/ix", "/mpi", "--x", "9001", "9101"}));
    window.Press(kHelp);  // shows nothing and closes nothing
    EXPECT_FALSE(window.result);
    window.Press(button);
    EXPECT_EQ(window.result, button);
    const bool isTaken = button == kOkButton;
    EXPECT_EQ((Texts{config.SimExecutable, config.MPIExecutable, config.CmdLine}),
              isTaken ? (Texts{"71092", "71094", "71096"}) : (Texts{"bin/ix", "/mpi", "--x"}));
  }
}

TEST_F(ConfigureDialog, ListsPropertiesAndDeletesForGoodOnlyTheRowsThatAreSelected) {
  MemoryWindow window(dialog);
  const auto& list = window.At(kProperties);
  ASSERT_EQ(list.columns.size(), 3u);
  EXPECT_EQ(list.columns[0].title, "IX property");
  EXPECT_EQ(list.columns[2].width, 110);
  EXPECT_EQ(list.rows, (std::vector<Texts>{{"A", "First", UnitFamilyTable[0].name},
                                           {"B", "Second", "None"},
                                           {"A", "Third", "None"}}));
  window.Press(kDelete);
  EXPECT_EQ(DisplayNames().size(), 3u);
  window.Mark(kProperties, {0});
  window.Press(kDelete);
  window.Press(kDelete);
  EXPECT_EQ(DisplayNames(), (Texts{"Second", "Third"})) << "of the same name, not selected";
  EXPECT_EQ(list.rows[1][1], "Third");
  window.inNested = [](MemoryWindow& nested) { nested.Press(kCancelButton); };
  window.Press(kAdd);
  EXPECT_EQ(list.rows.size(), 2u);
  window.Mark(kProperties, {1});
  window.inNested = [](MemoryWindow& nested) {
    nested.SetText(add_property_id::kProperty, "D");
    nested.SetText(add_property_id::kDisplayName, "Fourth");
    nested.Press(kOkButton);
  };
  window.Press(kAdd);
  ASSERT_EQ(list.rows.size(), 3u);
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
    EXPECT_EQ(window.Selection(kUnit), 0);
    EXPECT_EQ(window.Selection(kType), 0);
    // Differs only in case from one that is there.
    window.SetText(add_property_id::kProperty, type == 0 ? "a" : "b");
    window.SetText(kDisplayName, type == 0 ? "first" : "second");
    if (type == 1) window.Choose(kUnit, 7);
    window.Choose(kType, type);
    window.Press(kOkButton);
    ASSERT_EQ(window.result, kOkButton);
    const CIXUserProperty& added = *config.UserProperties.back();
    EXPECT_EQ(added.Property, type == 0 ? "a" : "b");
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
    window.SetText(add_property_id::kProperty, row.name);
    window.SetText(kDisplayName, row.display);
    window.Press(kOkButton);
    EXPECT_EQ(window.messages, Texts{row.message});
    EXPECT_EQ(window.focus, row.focus);
    EXPECT_FALSE(window.result);
    EXPECT_EQ(config.UserProperties.size(), 3u);
    window.Press(kCancelButton);
    EXPECT_EQ(window.result, kCancelButton);
  }
}

}  // namespace
}  // namespace gantry
