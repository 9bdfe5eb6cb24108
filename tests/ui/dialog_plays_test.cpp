// What a person does in the dialogs, and all that changes in them: the plays in the folder plays,
// of which docs/testing.md tells.

#include <algorithm>
#include <map>

#include <gtest/gtest.h>

#include "platform/dynamic_library.h"
#include "support/play.h"
#include "support/test_folder.h"
#include "ui/configure_dlg.h"
#include "ui/export_variables_dlg.h"
#include "ui/memory_window.h"
#include "ui/stub_case.h"

namespace gantry::test {
namespace {

using namespace platform;
using enum ControlKind;
using Control = MemoryWindow::Control;
using Facts = std::map<std::string, std::string>;

std::string Numbers(std::initializer_list<int> numbers) {
  std::string text;
  for (const int number : numbers) text += " " + std::to_string(number);
  return text;
}

/// What a person calls the controls of a dialog: by their captions, those without one by the text
/// before them, and what is called so already by both.
std::map<std::string, int> NamesOf(const DialogTemplate& shape) {
  std::map<std::string, int> names;
  std::string before;
  for (const ControlRow& row : shape.controls) {
    std::string name = row.caption;
    name.erase(name.find_last_not_of(' ') + 1);
    if (row.id == kNoControl) before = name;
    if (row.id == kNoControl) continue;
    if (name.empty()) name = before;
    if (names.contains(name) || name.find_first_not_of(" .") == std::string::npos) {
      name = before + " " + (*row.caption != '\0' ? row.caption : "2");
    }
    names.emplace(name, row.id);
  }
  return names;
}

/// "+" before an item that is closed, "*" behind what is checked.
std::string TreeText(const std::vector<TreeItem>& items) {
  std::string text;
  for (const TreeItem& item : items) {
    text += std::string("\n  ") + (item.isExpanded ? "" : "+") + item.text;
    text += std::string(item.isChecked ? "*" : "") + ":";
    for (const TreeItem& child : item.children) {
      text += " " + child.text + (child.isChecked ? "*," : ",");
    }
  }
  return text;
}

std::string Value(const Control& control) {
  const ControlKind kind = control.row->kind;
  if (kind == kTree) return TreeText(control.tree);
  if (kind == kCheckBox) return control.isChecked ? "on" : "off";
  if (kind == kDropList) {
    return control.selection < 0 ? "" : control.rows.at(static_cast<size_t>(control.selection))[0];
  }
  std::string marks;
  for (size_t i = 0; i < control.rows.size(); ++i) {
    marks += control.selectedRows.contains(i) ? "*" : "-";
  }
  return control.text + (control.isCaretBehindText ? "_" : "") + marks;
}

Facts FactsOf(MemoryWindow& window) {
  Facts facts;
  for (const auto& [name, id] : NamesOf(window.handler.Template())) {
    const Control& control = window.At(id);
    const DialogPlace& place = control.row->place;
    const PixelRect& rect = control.rect;
    facts[name] = Value(control) + (control.isEnabled ? "" : " (grey)");
    facts[name + " tells"] = control.toolTip;
    Texts rows;
    for (const auto& row : control.rows) rows.push_back(Joined(row, "/"));
    facts[name + " holds"] = Joined(rows, ", ");
    facts[name + " moved"] =
        Numbers({rect.left - place.left, rect.top - place.top,
                 rect.right - place.left - place.width, rect.bottom - place.top - place.height});
    if (window.focus == id) facts["keyboard at"] = name;
  }
  return facts;
}

/// Everything that the module's dialogs work on, and a person who goes by commands. What comes of
/// them is told line by line.
class DialogPlayer : public Player {
 public:
  DialogPlayer() {
    model_.tell = [this, folder = ModuleFolder()](std::string line) {
      if (const size_t at = line.find(folder); at != std::string::npos) {
        line.erase(at, folder.size());
      }
      Tell(line);
    };
  }

 private:
  using Verb = void (DialogPlayer::*)(const std::string&);
  static const std::map<std::string, Verb> kVerbs;

  void Do(const std::string& verb, const std::string& words) override {
    (this->*kVerbs.at(verb))(words);
  }

  // The world.

  void Open(const std::string& dialog) {
    CConfigureDlg configure(config_);
    CCaseSettingsDlg settings(model_, config_);
    CExportVariablesDlg variables(exported_, model_.wells, components_ != 0, config_);
    const std::map<std::string, DialogHandler*> dialogs = {
        {"configuration", &configure}, {"case", &settings}, {"variables", &variables}};
    Show(*dialogs.at(dialog));
    if (settings.StartRequested()) Tell("and is to start");
  }
  void AddWell(const std::string& well) {
    model_.wells.Items.emplace_back().Name = Split(well, " = ")[0];
    model_.wells.Items.back().OpMode = std::stoi(Split(well, " = ")[1]);
  }
  void Expose(const std::string& property) {
    const Texts words = Split(property, ", ");
    const CIXUserProperty added = {words[0], "", words[1], 0, -1, std::stoi(words[2])};
    config_.UserProperties.push_back(std::make_unique<CIXUserProperty>(added));
  }
  void Let(const std::string& change) {
    const Texts words = Split(change, " = ");
    const std::map<std::string, int32_t*> numbers = {
        {"running", &model_.isRunning},   {"tests until it has stopped", &model_.testsUntilStopped},
        {"closing", &model_.closeResult}, {"version", &model_.settings.LinuxIXVersion},
        {"components", &components_},     {"help", &hasHelp_}};
    *numbers.at(words[0]) = std::stoi(words[1]);
  }
  void PickNext(const std::string& file) { picked_ = file; }
  void Recall(const std::string&) {
    model_.settings = LinkSettings();
    model_.settings.LoadFromRegistry();
  }
  void TellCase(const std::string&) {
    const LinkSettings& settings = model_.settings;
    Tell("simulator " + settings.SimExeName + ", dataset " + settings.FileName);
    Tell("computer, inflow, version, log:" +
         Numbers({settings.ConnectionMode, settings.IPRModel, settings.LinuxIXVersion,
                  settings.StdLogging}));
    for (const auto& well : model_.wells.Items) Tell(well.Name + Numbers({well.OpMode}));
  }
  void TellConfiguration(const std::string&) {
    Tell("simulator " + config_.SimExecutable + ", mpiexec " + config_.MPIExecutable + ", " +
         config_.CmdLine + Numbers({config_.StartPort, config_.EndPort}));
    for (const auto& property : config_.UserProperties) {
      const int code = static_cast<int>(property->UnitCode);
      Tell(property->Property + "/" + property->DisplayName +
           Numbers({code, property->UnitFamily, property->IsScalar}));
    }
  }
  void TellVariables(const std::string&) {
    for (const auto& well : exported_) {
      for (const auto& variable : well->Variables) {
        Tell(well->WellName + ": " + variable->Label + " " + variable->Key);
      }
    }
  }

  // A person before a dialog.

  int Show(DialogHandler& handler) {
    MemoryWindow window(handler, model_.tell);
    MemoryWindow* const below = std::exchange(window_, &window);
    window.runDialog = [this](DialogHandler& nested) { return Show(nested); };
    Facts seen = FactsOf(window);
    handler.OnOpen(window);
    handler.OnSize(window, window.size);
    TellChanges(seen);
    while (!window.result && !commands_.empty() && !commands_[0].starts_with("open")) {
      DoNext();
      TellChanges(seen);
    }
    window_ = below;
    return window.result.value_or(kCancelButton);
  }
  void TellChanges(Facts& seen) {
    for (const auto& [name, value] : FactsOf(*window_)) {
      std::string& before = name.ends_with(" holds") ? lists_[name] : seen[name];
      const bool isToldBefore = name + " = " + value == words_;
      if (std::exchange(before, value) != value && !isToldBefore) Tell(name + ": " + value);
    }
    if (model_.setUpOver == window_) Tell("inflow is set up over it");
    if (window_->result) Tell("closed with " + std::to_string(*window_->result));
    model_.setUpOver = nullptr;
  }
  /// Of "NAME" or "NAME = VALUE".
  int IdOf(const std::string& words) {
    return NamesOf(window_->handler.Template()).at(Split(words, " = ")[0]);
  }
  /// The rows or items of a list by a text that they show.
  std::set<size_t> RowsOf(const std::string& words) {
    std::set<size_t> found;
    const auto& rows = window_->At(IdOf(words)).rows;
    for (const std::string& text : Split(Split(words, " = ")[1], ", ")) {
      const size_t before = found.size();
      for (size_t i = 0; i < rows.size(); ++i) {
        if (std::ranges::count(rows[i], text) != 0) found.insert(i);
      }
      EXPECT_TRUE(found.size() > before || text == "none") << words;
    }
    return found;
  }
  void Press(const std::string& button) {
    window_->pickedFile = std::exchange(picked_, {});
    window_->hasHelp = hasHelp_ != 0;
    MemoryWindow& window = *window_;
    if (window.At(IdOf(button)).isEnabled) window.handler.OnButton(window, IdOf(button));
  }
  void Tick(const std::string& box) {
    window_->SetChecked(IdOf(box), !window_->IsChecked(IdOf(box)));
    Press(box);
  }
  /// What is typed may stand between quotes.
  void Enter(const std::string& words) {
    const std::string text = Split(words, " = ")[1];
    const bool isQuoted = text.starts_with('\'');
    window_->SetText(IdOf(words), isQuoted ? text.substr(1, text.size() - 2) : text);
  }
  void Choose(const std::string& words) {
    const int id = IdOf(words);
    window_->Select(id, static_cast<int>(*RowsOf(words).begin()));
    window_->handler.OnSelection(*window_, id);
  }
  void Mark(const std::string& words) { window_->At(IdOf(words)).selectedRows = RowsOf(words); }
  TreePlace PlaceOf(const std::string& words) {
    const Texts way = Split(words, "/");
    TreePlace place;
    const auto find = [](const auto& items, const std::string& text) {
      return static_cast<size_t>(std::ranges::find(items, text, &TreeItem::text) - items.begin());
    };
    const auto& tree = window_->At(IdOf("Variables")).tree;
    place.parent = find(tree, way[0]);
    if (way.size() > 1) place.child = find(tree.at(place.parent).children, way[1]);
    return place;
  }
  TreeItem& Item(const std::string& words) {
    return ItemAt(window_->At(IdOf("Variables")).tree, PlaceOf(words));
  }
  void TickItem(const std::string& words) {
    window_->handler.OnTreeCheck(*window_, IdOf("Variables"), PlaceOf(words));
    Item(words).isChecked = !Item(words).isChecked;
  }
  void Fold(const std::string& words) { Item(words).isExpanded = false; }
  /// An edge by its number, as far as the dialog grows by.
  void Drag(const std::string& words) {
    window_->handler.OnSizing(*window_, std::stoi(words));
    Grow(words.substr(words.find(' ') + 1));
  }
  void Grow(const std::string& words) {
    const Texts by = Split(words, " ");
    window_->size.width += std::stoi(by[0]);
    window_->size.height += std::stoi(by[1]);
    window_->handler.OnSize(*window_, window_->size);
  }
  void Look(const std::string&) {
    const DialogTemplate& shape = window_->handler.Template();
    Tell(shape.caption + Numbers({shape.id, shape.width, shape.height, shape.isResizable}));
    for (const ControlRow& row : shape.controls) {
      const auto& [left, top, width, height] = row.place;
      Tell(Numbers({static_cast<int>(row.kind), row.id, left, top, width, height,
                    static_cast<int>(row.style)}) +
           " '" + row.caption + "' " + (row.toolTip != nullptr ? row.toolTip : ""));
    }
  }

  Facts lists_;  ///< what lists hold is told once
  TestFolder folder_;
  CIXConfig config_;
  StubCase model_;
  CExportedVariables exported_;
  int32_t components_ = 0;
  int32_t hasHelp_ = 1;
  std::optional<std::string> picked_;
  MemoryWindow* window_ = nullptr;
};

const std::map<std::string, DialogPlayer::Verb> DialogPlayer::kVerbs = {
    {"open", &DialogPlayer::Open},
    {"well", &DialogPlayer::AddWell},
    {"expose", &DialogPlayer::Expose},
    {"let", &DialogPlayer::Let},
    {"pick", &DialogPlayer::PickNext},
    {"recall", &DialogPlayer::Recall},
    {"case", &DialogPlayer::TellCase},
    {"configuration", &DialogPlayer::TellConfiguration},
    {"variables", &DialogPlayer::TellVariables},
    {"press", &DialogPlayer::Press},
    {"tick", &DialogPlayer::Tick},
    {"type", &DialogPlayer::Enter},
    {"choose", &DialogPlayer::Choose},
    {"mark", &DialogPlayer::Mark},
    {"box", &DialogPlayer::TickItem},
    {"fold", &DialogPlayer::Fold},
    {"drag", &DialogPlayer::Drag},
    {"grow", &DialogPlayer::Grow},
    {"look", &DialogPlayer::Look}};

class DialogPlay : public ::testing::TestWithParam<Scene> {};

TEST_P(DialogPlay, GoesAsItIsWritten) { DialogPlayer().Play(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Plays, DialogPlay, ::testing::ValuesIn(ScenesOf(GANTRY_PLAYS "/plays")),
                         SceneName);

}  // namespace
}  // namespace gantry::test
