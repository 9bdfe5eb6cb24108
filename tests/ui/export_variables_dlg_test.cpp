#include "ui/export_variables_dlg.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "support/test_folder.h"
#include "ui/dialog_templates.h"
#include "ui/memory_window.h"
#include "ui/stub_case.h"

namespace gantry::test {
namespace {

using namespace export_id;
using namespace platform;
using Texts = std::vector<std::string>;

class ExportDialog : public ::testing::Test {
 protected:
  ExportDialog() { AddWells({"P2", "p1", "I1"}); }

  void AddWells(const Texts& names) {
    for (const std::string& name : names) wells.Items.emplace_back().Name = name;
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
  static std::string Box(const TreeItem& item) { return item.isChecked ? "*" : ""; }
  /// The tree as lines "well: variable, variable", "+" before a well that is closed and "*" behind
  /// what is checked.
  static Texts Lines(MemoryWindow& window) {
    Texts lines;
    for (const TreeItem& item : window.At(kVariables).tree) {
      std::string line = (item.isExpanded ? "" : "+") + item.text + Box(item) + ":";
      for (const TreeItem& child : item.children) line += " " + child.text + Box(child);
      lines.push_back(line);
    }
    return lines;
  }

  TestFolder folder;
  CIXConfig config;
  StaticWellDataCollection wells;
  CExportedVariables target;
  std::unique_ptr<CExportVariablesDlg> dialog;
};

TEST_F(ExportDialog, OffersWellsAndPropertiesSortedAndThoseOfComponentsWhereThereAreAny) {
  Expose(config, "A", "My array", -1, 0);
  Expose(config, "B", "My scalar", -1, 1);
  Expose(config, "C", "My many", -1, 4);
  for (const bool hasComponents : {false, true}) {
    MemoryWindow window = Open(hasComponents);
    EXPECT_EQ(window.At(kWells).items, (Texts{"I1", "p1", "P2"}));
    const Texts& offered = window.At(kProperties).items;
    EXPECT_EQ(offered.front(), "Bottom hole pressure");
    EXPECT_TRUE(std::ranges::is_sorted(offered));
    for (const char* text : {"My array[comps]", "My scalar", "My many[]"}) {
      EXPECT_EQ(std::ranges::count(offered, text), 1) << text;
    }
    EXPECT_EQ(std::ranges::count(offered, "Total mole fraction[comps]"), hasComponents ? 1 : 0);
    EXPECT_EQ(offered.size(), hasComponents ? 32u : 29u);
  }
}

TEST_F(ExportDialog, AddsEachPairOnceAndTakesTheListWithOkAlone) {
  for (const int button : {kCancelButton, kOkButton}) {
    MemoryWindow window = Open();
    Add(window, {"P2"}, {});
    Add(window, {}, {"Water cut"});
    Add(window, {"P2"}, {"Water cut", "Gas-oil ratio"});
    Add(window, {"P2", "I1"}, {"Water cut"});
    EXPECT_EQ(Lines(window), (Texts{"I1: Water cut", "P2: Gas-oil ratio Water cut"}));
    const int treesSet = window.treesSet;
    window.Press(kAdd);
    EXPECT_EQ(window.treesSet, treesSet) << "nothing new";
    EXPECT_TRUE(target.IsEmpty());
    window.Press(button);
    EXPECT_EQ(window.result, button);
    ASSERT_EQ(target.Size(), button == kOkButton ? 2u : 0u);
  }
  EXPECT_EQ(target[0].WellName, "P2");
  EXPECT_EQ(target[0].Variables.FindByLabel("Water cut")->Key, "WATER_CUT");
  EXPECT_EQ(target[1].Variables.Size(), 1u);
  MemoryWindow again = Open();
  EXPECT_EQ(Lines(again), (Texts{"I1: Water cut", "P2: Gas-oil ratio Water cut"}));
}

TEST_F(ExportDialog, DeletesCheckedWellsAndVariablesAndLeavesTheRestAsItWas) {
  AddWells({"Q"});
  MemoryWindow window = Open();
  Add(window, {"I1", "p1", "P2", "Q"}, {"Water cut", "Uptime"});
  const int treesSet = window.treesSet;
  window.Press(kDelete);
  EXPECT_EQ(window.treesSet, treesSet) << "nothing is checked";
  window.ItemAt(kVariables, {3}).isExpanded = false;  // by the user
  window.ClickCheckBox(kVariables, {0});              // I1 as a whole
  window.ClickCheckBox(kVariables, {1, 0});           // both of p1's
  window.ClickCheckBox(kVariables, {1, 1});
  window.ClickCheckBox(kVariables, {2, 0});  // one of P2's
  window.ClickCheckBox(kVariables, {3, 0});  // and none of Q's, on second thought
  window.ClickCheckBox(kVariables, {3, 0});
  window.Press(kDelete);
  EXPECT_EQ(Lines(window), (Texts{"P2: Water cut", "+Q: Uptime Water cut"}));
  EXPECT_TRUE(window.At(kVariables).isEnabled);
  window.Press(kDelete);
  window.Press(kOkButton);
  ASSERT_EQ(target.Size(), 2u);
  EXPECT_EQ(target[0].WellName, "P2");
  EXPECT_EQ(target[0].Variables[0].Label, "Water cut");
}

TEST_F(ExportDialog, ChecksAllOfANameWithOneClickWhenAskedTo) {
  MemoryWindow window = Open();
  Add(window, {"I1", "p1", "P2"}, {"Water cut", "Uptime"});
  window.ClickCheckBox(kVariables, {2, 1});
  window.SetChecked(kSameName, true);
  window.ClickCheckBox(kVariables, {0, 1});
  EXPECT_EQ(Lines(window),
            (Texts{"I1: Uptime Water cut*", "p1: Uptime Water cut*", "P2: Uptime Water cut*"}));
  EXPECT_EQ(window.boxesSet, 1u) << "only the one that differed";
  window.ClickCheckBox(kVariables, {1});  // a well is no property
  window.ClickCheckBox(kVariables, {1, 1});
  EXPECT_EQ(Lines(window),
            (Texts{"I1: Uptime Water cut", "p1*: Uptime Water cut", "P2: Uptime Water cut"}));
  window.ClickCheckBox(kVariables, {1});
  Add(window, {"I1"}, {"Gas-oil ratio"});
  window.ClickCheckBox(kVariables, {2, 0});
  EXPECT_EQ(Lines(window), (Texts{"I1: Gas-oil ratio Uptime* Water cut", "p1: Uptime* Water cut",
                                  "P2: Uptime* Water cut"}))
      << "wherever they stand by now";
}

TEST_F(ExportDialog, KeepsWhatIsCheckedAndClosedWhenMoreIsAdded) {
  MemoryWindow window = Open();
  Add(window, {"I1", "P2"}, {"Water cut"});
  window.ClickCheckBox(kVariables, {0, 0});
  window.Press(kCollapseAll);
  Add(window, {"P2"}, {"Uptime"});
  EXPECT_EQ(Lines(window), (Texts{"+I1: Water cut*", "P2: Uptime Water cut"}));
  window.Press(kExpandAll);
  EXPECT_EQ(Lines(window)[0], "I1: Water cut*");
}

TEST_F(ExportDialog, SelectsAllAndInvertsInEachList) {
  MemoryWindow window = Open();
  for (const auto& [list, all, invert, count] :
       {std::tuple{kWells, kAllWells, kInvertWells, 3u},
        {kProperties, kAllProperties, kInvertProperties, 26u}}) {
    window.Press(all);
    EXPECT_EQ(window.SelectedRows(list).size(), count);
    window.At(list).selectedRows = {1};
    window.Press(invert);
    EXPECT_EQ(window.SelectedRows(list).size(), count - 1);
    EXPECT_EQ(window.SelectedRows(list)[1], 2u);
  }
}

TEST_F(ExportDialog, StretchesTheTreeAndTheListsAndKeepsTheButtonsInTheCorner) {
  MemoryWindow window = Open();
  const auto before = window.controls;
  window.Drag(kEdgeBottomRight, {window.size.width + 7, window.size.height + 9});
  const std::pair<PixelRect, std::vector<int>> shifts[] = {
      {{0, 0, 0, 9}, {kWells, kProperties}},
      {{0, 0, 7, 9}, {kVariables}},
      {{0, 9, 0, 9},
       {kAllWells, kInvertWells, kAllProperties, kInvertProperties, kDelete, kCollapseAll,
        kExpandAll}},
      {{0, 0, 0, 0}, {kAdd}},
      {{7, 0, 7, 0}, {kSameName}},
      {{7, 9, 7, 9}, {kOkButton, kCancelButton}}};
  for (const auto& [by, ids] : shifts) {
    for (const int id : ids) {
      const PixelRect& from = before.at(id).rect;
      EXPECT_EQ(window.Rect(id), (PixelRect{from.left + by.left, from.top + by.top,
                                            from.right + by.right, from.bottom + by.bottom}))
          << id;
    }
  }
  EXPECT_EQ(window.redraws, 1);
}

}  // namespace
}  // namespace gantry::test
