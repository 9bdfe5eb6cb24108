#include "ui/configure_dlg.h"

#include <gtest/gtest.h>

#include "client/unit_converter.h"
#include "support/test_folder.h"
#include "ui/add_property_dlg.h"
#include "ui/dialog_templates.h"
#include "ui/memory_window.h"

namespace gantry {
namespace {

using platform::kCancelButton;
using platform::kOkButton;
using test::MemoryWindow;

std::unique_ptr<CIXUserProperty> Property(const std::string& name, const std::string& display,
                                          int32_t family = -1) {
  auto property = std::make_unique<CIXUserProperty>();
  property->Property = name;
  property->DisplayName = display;
  property->UnitFamily = family;
  return property;
}

class ConfigureDialog : public ::testing::Test {
 protected:
  ConfigureDialog() {
    config.UserProperties.push_back(Property("A", "First", 0));
    config.UserProperties.push_back(Property("B", "Second"));
    config.UserProperties.push_back(Property("C", "Third"));
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& property : config.UserProperties) names.push_back(property->Property);
    return names;
  }

  test::TestFolder folder;
  CIXConfig config;
  CConfigureDlg dialog{config};
};

struct PortCase {
  const char* start;
  const char* end;
  int32_t startPort;
  int32_t endPort;
};

class PortsOfConfigureDialog : public ConfigureDialog,
                               public ::testing::WithParamInterface<PortCase> {};

TEST_P(PortsOfConfigureDialog, AreCorrectedWithoutAWord) {
  MemoryWindow window(dialog);
  window.SetText(configure_id::kStartPort, GetParam().start);
  window.SetText(configure_id::kEndPort, GetParam().end);
  window.Press(kOkButton);
  EXPECT_EQ(config.StartPort, GetParam().startPort);
  EXPECT_EQ(config.EndPort, GetParam().endPort);
  EXPECT_TRUE(window.messages.empty());
  EXPECT_EQ(window.result, kOkButton);
}

INSTANTIATE_TEST_SUITE_P(
    , PortsOfConfigureDialog,
    ::testing::Values(PortCase{"7000", "7010", 7000, 7010}, PortCase{"70000", "0", 9001, 9101},
                      PortCase{"65000", "65001", 65000, 65100},
                      PortCase{"9000", "8000", 9000, 9100}, PortCase{"-5", "8000", -5, 8000},
                      PortCase{"abc", "", 9001, 9101}, PortCase{"99999999999", "12x", 9001, 9101}));

TEST_F(ConfigureDialog, ShowsTheConfigurationAndTakesTheTextsOnlyWithOk) {
  config.SimExecutable = "/ix";
  config.MPIExecutable = "/mpi";
  config.CmdLine = "--x";
  for (const int button : {kCancelButton, kOkButton}) {
    MemoryWindow window(dialog);
    EXPECT_EQ(window.Text(1092), "/ix");
    EXPECT_EQ(window.Text(1094), "/mpi");
    EXPECT_EQ(window.Text(1096), "--x");
    EXPECT_EQ(window.Text(1121), "9001");
    window.SetText(1092, "/other");
    window.SetText(1096, "--y --z");
    window.Press(3);  // help shows nothing and closes nothing
    EXPECT_FALSE(window.result);
    window.Press(button);
    EXPECT_EQ(window.result, button);
    EXPECT_EQ(config.SimExecutable, button == kOkButton ? "/other" : "/ix");
    EXPECT_EQ(config.CmdLine, button == kOkButton ? "--y --z" : "--x");
  }
}

TEST_F(ConfigureDialog, ListsThePropertiesWithTheNamesOfTheirUnits) {
  MemoryWindow window(dialog);
  const auto& list = window.At(1118);
  EXPECT_EQ(list.columns[0].title, "IX property");
  EXPECT_EQ(list.columns[2].width, 110);
  ASSERT_EQ(list.rows.size(), 3u);
  EXPECT_EQ(list.rows[0][2], UnitFamilyTable[0].name);
  EXPECT_EQ(list.rows[1], (std::vector<std::string>{"B", "Second", "None"}));
}

TEST_F(ConfigureDialog, DeletesTheSelectedRowsForGood) {
  MemoryWindow window(dialog);
  window.Press(4);
  EXPECT_EQ(config.UserProperties.size(), 3u);
  window.Mark(1118, {0, 2});
  window.Press(4);
  EXPECT_EQ(window.At(1118).rows.size(), 1u);
  window.Press(kCancelButton);
  EXPECT_EQ(Names(), std::vector<std::string>{"B"});
}

TEST_F(ConfigureDialog, ListsAnAddedPropertyOnlyWhenTheOtherDialogWasAccepted) {
  MemoryWindow window(dialog);
  window.inNested = [](MemoryWindow& nested) { nested.Press(kCancelButton); };
  window.Press(5);
  EXPECT_EQ(window.At(1118).rows.size(), 3u);
  window.inNested = [](MemoryWindow& nested) {
    nested.SetText(1119, "D");
    nested.SetText(1120, "Fourth");
    nested.Press(kOkButton);
  };
  window.Press(5);
  EXPECT_EQ(window.At(1118).rows.size(), 4u);
  window.Press(kCancelButton);
  EXPECT_EQ(config.UserProperties.size(), 4u);
}

TEST_F(ConfigureDialog, BrowsesForEachExecutableIntoItsEdit) {
  MemoryWindow window(dialog);
  window.SetText(1092, "/old");
  window.Press(1093);
  EXPECT_EQ(window.Text(1092), "/old") << "the user gave up";
  window.pickedFile = "/new/ix";
  window.Press(1093);
  EXPECT_STREQ(window.fileRequest->filters, "IX executable file (*.exe)|*.exe|");
  EXPECT_EQ(window.Text(1092), "/new/ix");
  window.Press(1095);
  EXPECT_STREQ(window.fileRequest->filters, "MPI executable file - mpiexec (*.exe)|*.exe|");
  EXPECT_EQ(window.Text(1094), "/new/ix");
  EXPECT_EQ(config.SimExecutable, "");
}

TEST_F(ConfigureDialog, AddsAPropertyWithTheUnitAndTypeThatWereChosen) {
  CAddProperty add(config);
  MemoryWindow window(add);
  EXPECT_EQ(window.At(1099).items.size(), 14u);
  EXPECT_EQ(window.At(1099).items[0], "Other/None");
  EXPECT_EQ(window.Selection(1099), 0);
  EXPECT_EQ(window.Selection(1100), 0);
  window.SetText(1119, "a");  // differs only in case from one that is there
  window.SetText(1120, "first");
  window.Choose(1099, 7);
  window.Choose(1100, 1);
  window.Press(kOkButton);
  ASSERT_EQ(window.result, kOkButton);
  const CIXUserProperty& added = *config.UserProperties.back();
  EXPECT_EQ(added.Property, "a");
  EXPECT_EQ(added.UnitFamily, 6);
  EXPECT_EQ(added.UnitCode, UnitFamilyTable[6].userCode);
  EXPECT_EQ(added.IsScalar, 0);
}

struct RefusedProperty {
  const char* name;
  const char* display;
  const char* message;
};

TEST_F(ConfigureDialog, StaysOpenOverAPropertyThatCannotBeAdded) {
  constexpr const char* kMissing = "Property name and display name must be provided";
  constexpr const char* kTaken =
      "The property specified is not unique (property name or display name)";
  for (const RefusedProperty& refused : {RefusedProperty{"", "Name", kMissing},
                                         {"D", "   ", kMissing},
                                         {"B", "Fourth", kTaken},
                                         {"D", "Third", kTaken}}) {
    CAddProperty add(config);
    MemoryWindow window(add);
    window.SetText(1119, refused.name);
    window.SetText(1120, refused.display);
    window.Press(kOkButton);
    EXPECT_EQ(window.messages, std::vector<std::string>{refused.message});
    EXPECT_FALSE(window.result);
    EXPECT_EQ(config.UserProperties.size(), 3u);
  }
}

}  // namespace
}  // namespace gantry
