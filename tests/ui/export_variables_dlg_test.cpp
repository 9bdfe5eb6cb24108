#include "ui/export_variables_dlg.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "support/test_folder.h"
#include "ui/dialog_templates.h"
#include "ui/memory_window.h"

namespace gantry {
namespace {

using namespace export_id;
using platform::kCancelButton;
using platform::kOkButton;
using platform::TreeItem;
using test::MemoryWindow;
using Texts = std::vector<std::string>;

class ExportDialog : public ::testing::Test {
 protected:
  ExportDialog() { AddWells({"P2", "p1", "I1"}); }

  void AddWells(const Texts& names) {
    for (const std::string& name : names) wells.Items.emplace_back().Name = name;
  }
  void AddUserProperty(const std::string& display, int32_t isScalar) {
    auto property = std::make_unique<CIXUserProperty>();
    property->Property = "KEY";
    property->DisplayName = display;
    property->IsScalar = isScalar;
    config.UserProperties.push_back(std::move(property));
  }
  MemoryWindow Open(bool hasComponents = false) {
    dialog = std::make_unique<CExportVariablesDlg>(target, wells, hasComponents, config);
    return MemoryWindow(*dialog);
  }
  static void Add(MemoryWindow& window, const Texts& wellNames, const Texts& properties) {
    window.MarkItems(kWells, wellNames);
    window.MarkItems(kProperties, properties);
    window.Press(kAdd);
  }
  /// The tree as lines "well: variable, variable".
  static Texts Lines(MemoryWindow& window) {
    Texts lines;
    for (const TreeItem& item : window.At(kVariables).tree) {
      std::string line = item.text + ":";
      for (const TreeItem& child : item.children) line += " " + child.text;
      lines.push_back(line);
    }
    return lines;
  }

  test::TestFolder folder;
  CIXConfig config;
  StaticWellDataCollection wells;
  CExportedVariables target;
  std::unique_ptr<CExportVariablesDlg> dialog;
};

TEST_F(ExportDialog, OffersWellsAndPropertiesSorted) {
  MemoryWindow window = Open();
  EXPECT_EQ(window.At(kWells).items, (Texts{"I1", "p1", "P2"}));
  const Texts& offered = window.At(kProperties).items;
  EXPECT_EQ(offered.size(), 26u);
  EXPECT_EQ(offered.front(), "Bottom hole pressure");
  EXPECT_TRUE(std::ranges::is_sorted(offered));
}

TEST_F(ExportDialog, OffersPropertiesOfComponentsOnlyWhereThereAreAnyButTheUsersOwnAlways) {
  AddUserProperty("My array", 0);
  AddUserProperty("My scalar", 1);
  AddUserProperty("My many", 4);
  const Texts without = Open(false).At(kProperties).items;
  EXPECT_EQ(without.size(), 29u);
  for (const char* text : {"My array[comps]", "My scalar", "My many[]"}) {
    EXPECT_EQ(std::ranges::count(without, text), 1) << text;
  }
  EXPECT_EQ(std::ranges::count(without, "Total mole fraction[comps]"), 0);
  EXPECT_EQ(std::ranges::count(Open(true).At(kProperties).items, "Total mole fraction[comps]"), 1);
}

TEST_F(ExportDialog, AddsEachPairOnceUnderTheSortedWells) {
  MemoryWindow window = Open();
  Add(window, {"P2"}, {"Water cut", "Gas-oil ratio"});
  Add(window, {"P2", "I1"}, {"Water cut"});
  EXPECT_EQ(Lines(window), (Texts{"I1: Water cut", "P2: Gas-oil ratio Water cut"}));
  EXPECT_TRUE(window.At(kVariables).tree[0].isExpanded);
  const auto before = Lines(window);
  window.Press(kAdd);
  EXPECT_EQ(Lines(window), before);
  window.Press(kOkButton);
  ASSERT_EQ(target.Size(), 2u);
  EXPECT_EQ(target[0].WellName, "P2");
  EXPECT_EQ(target[0].Variables.FindByLabel("Water cut")->Key, "WATER_CUT");
  EXPECT_EQ(target[1].Variables.Size(), 1u);
}

TEST_F(ExportDialog, DoesNothingWithoutASelectionOrACheck) {
  MemoryWindow window = Open();
  Add(window, {"P2"}, {});
  Add(window, {}, {"Water cut"});
  Add(window, {"P2"}, {"Water cut"});
  window.ExpandTree(kVariables, false);
  window.Press(kDelete);
  EXPECT_EQ(Lines(window), Texts{"P2: Water cut"});
  EXPECT_FALSE(window.At(kVariables).tree[0].isExpanded);
  window.Press(kOkButton);
  EXPECT_EQ(target.Size(), 1u);
}

TEST_F(ExportDialog, LeavesTheModelsListAloneWithCancel) {
  MemoryWindow window = Open();
  Add(window, {"P2"}, {"Water cut"});
  window.Press(kCancelButton);
  EXPECT_EQ(window.result, kCancelButton);
  EXPECT_TRUE(target.IsEmpty());
}

TEST_F(ExportDialog, DeletesCheckedWellsAndVariablesAndWellsLeftEmpty) {
  MemoryWindow window = Open();
  Add(window, {"I1", "p1", "P2"}, {"Water cut", "Uptime"});
  window.ClickCheckBox(kVariables, {0});     // I1 as a whole
  window.ClickCheckBox(kVariables, {1, 0});  // both of p1's
  window.ClickCheckBox(kVariables, {1, 1});
  window.ClickCheckBox(kVariables, {2, 0});  // one of P2's
  window.Press(kDelete);
  EXPECT_EQ(Lines(window), Texts{"P2: Water cut"});
  EXPECT_FALSE(window.At(kVariables).tree[0].isChecked);
  EXPECT_TRUE(window.At(kVariables).isEnabled);
  window.Press(kOkButton);
  ASSERT_EQ(target.Size(), 1u);
  EXPECT_EQ(target[0].WellName, "P2");
}

TEST_F(ExportDialog, ChecksAllOfANameWithOneClickWhenAskedTo) {
  MemoryWindow window = Open();
  Add(window, {"I1", "p1", "P2"}, {"Water cut", "Uptime"});
  window.ClickCheckBox(kVariables, {2, 1});
  window.SetChecked(kSameName, true);
  window.ClickCheckBox(kVariables, {0, 1});
  const auto& tree = window.At(kVariables).tree;
  for (const TreeItem& item : tree) {
    EXPECT_TRUE(item.children[1].isChecked);
    EXPECT_FALSE(item.children[0].isChecked);
  }
  window.ClickCheckBox(kVariables, {1});  // a well is no property
  EXPECT_FALSE(tree[0].isChecked);
  window.ClickCheckBox(kVariables, {1, 1});
  for (const TreeItem& item : tree) EXPECT_FALSE(item.children[1].isChecked);
}

TEST_F(ExportDialog, KeepsWhatIsCheckedAndCollapsedWhenMoreIsAdded) {
  MemoryWindow window = Open();
  Add(window, {"I1", "P2"}, {"Water cut"});
  window.ClickCheckBox(kVariables, {0, 0});
  window.Press(kCollapseAll);
  Add(window, {"P2"}, {"Uptime"});
  const auto& tree = window.At(kVariables).tree;
  EXPECT_TRUE(tree[0].children[0].isChecked);
  EXPECT_FALSE(tree[0].isExpanded);
  EXPECT_TRUE(tree[1].isExpanded) << "a variable came in";
  window.Press(kExpandAll);
  EXPECT_TRUE(tree[0].isExpanded);
}

TEST_F(ExportDialog, SelectsAllAndInverts) {
  MemoryWindow window = Open();
  window.Press(kAllWells);
  EXPECT_EQ(window.SelectedRows(kWells).size(), 3u);
  window.Mark(kWells, {1});
  window.Press(kInvertWells);
  EXPECT_EQ(window.SelectedRows(kWells), (std::vector<size_t>{0, 2}));
  window.Press(kInvertProperties);
  EXPECT_EQ(window.SelectedRows(kProperties).size(), 26u);
}

TEST_F(ExportDialog, TakesTenThousandWellsInOneGo) {
  wells.Items.clear();
  for (int i = 0; i < 10000; ++i) AddWells({"WELL-" + std::to_string(i)});
  MemoryWindow window = Open();
  window.Press(kAllWells);
  window.Press(kAllProperties);
  window.Press(kAdd);
  ASSERT_EQ(window.At(kVariables).tree.size(), 10000u);
  EXPECT_EQ(window.At(kVariables).tree[9999].children.size(), 26u);
  for (size_t i = 0; i < 10000; ++i) window.ItemAt(kVariables, {i}).isChecked = i != 5;
  window.Press(kDelete);
  EXPECT_EQ(window.At(kVariables).tree.size(), 1u);
}

}  // namespace
}  // namespace gantry
