// What every toolkit does for a dialog, with real windows, keys and clicks: the plays of
// toolkit.play, of which docs/testing.md tells.

#include <algorithm>
#include <map>

#include "support/play.h"
#include "support/test_folder.h"
#include "ui/desk.h"

namespace gantry::test {
namespace {

using namespace platform;
using enum ControlKind;
using Words = const std::string&;

enum : int { kPlain = 10, kDigits, kCheck, kDrop, kBox, kRows, kItems, kAct };
const std::map<std::string, int> kNames = {
    {"plain", kPlain}, {"digits", kDigits},      {"check", kCheck}, {"drop", kDrop},
    {"box", kBox},     {"rows", kRows},          {"items", kItems}, {"act", kAct},
    {"ok", kOkButton}, {"cancel", kCancelButton}};

/// One of each kind.
constexpr ControlRow kControls[] = {{kGroup, kNoControl, "Group", {2, 2, 170, 30}},
                                    {kLabel, kNoControl, "Label", {7, 12, 30, 8}},
                                    {kEdit, kPlain, "", {40, 10, 60, 13}},
                                    {kEdit, kDigits, "", {104, 10, 60, 13}, kDigitsOnly},
                                    {kCheckBox, kCheck, "Check", {7, 35, 60, 10}},
                                    {kDropList, kDrop, "", {70, 35, 60, 13}},
                                    {kListBox, kBox, "", {7, 52, 60, 60}},
                                    {kListView, kRows, "", {70, 52, 100, 60}},
                                    {kTree, kItems, "", {175, 7, 90, 105}},
                                    {kButton, kAct, "Act", {7, 118, 50, 14}},
                                    {kButton, kOkButton, "OK", {60, 118, 50, 14}, kDefaultButton},
                                    {kButton, kCancelButton, "Cancel", {113, 118, 50, 14}}};
constexpr DialogTemplate kTemplate = {1, "Demo", 270, 138, kControls, true};

std::string TextOf(const TreePlace& place) {
  return std::to_string(place.parent) + (place.child ? "/" + std::to_string(*place.child) : "");
}

/// Tells of what it is told, and does what the button "Act" is to do.
struct Demo : DialogHandler {
  using Told = std::function<void(const std::string&)>;
  explicit Demo(Told told) : DialogHandler(kTemplate), tell(std::move(told)) {}

  void OnOpen(DialogWindow& opened) override { window = &opened; }
  void OnButton(DialogWindow& /*window*/, int id) override {
    if (id == kAct) return act();
    tell("button " + std::to_string(id));
    if (id == kOkButton || id == kCancelButton) std::exchange(window, nullptr)->Close(id);
  }
  void OnSelection(DialogWindow& /*window*/, int id) override {
    tell("selection " + std::to_string(id));
  }
  void OnTreeCheck(DialogWindow& /*window*/, int /*id*/, const TreePlace& place) override {
    tell("check " + TextOf(place));
  }
  void OnSizing(DialogWindow& /*window*/, int newEdge) override { edge = newEdge; }
  void OnSize(DialogWindow& /*window*/, PixelSize newSize) override { size = newSize; }

  Told tell;
  DialogWindow* window = nullptr;  ///< while it is open
  std::function<void()> act;
  int edge = 0;
  PixelSize size;
};

TreePlace PlaceOf(Words words) {
  const Texts numbers = Split(words, "/");
  TreePlace place{std::stoul(numbers[0])};
  if (numbers.size() > 1) place.child = std::stoul(numbers[1]);
  return place;
}

/// Wells by their numbers with variables "a", "b" and "c", as many as are told or each by its own;
/// "+" before one that is closed, "*" behind one whose first variable is checked.
std::vector<TreeItem> Wells(Words words) {
  Texts numbers = Split(words, " ");
  if (numbers[0] == "all") {
    const size_t count = std::stoul(numbers[1]);
    numbers.clear();
    for (size_t i = 0; i < count; ++i) numbers.push_back(std::to_string(i));
  }
  std::vector<TreeItem> items;
  for (const std::string& word : numbers) {
    const std::string number = word.substr(word.find_first_not_of('+'));
    const uintptr_t data = 4 * std::stoul(number) + 1;  // never 0
    items.push_back({.text = "W" + number, .isExpanded = number == word, .data = data});
    items.back().children = {{.text = "a", .isChecked = word.ends_with('*'), .data = data + 1},
                             {.text = "b", .data = data + 2},
                             {.text = "c", .data = data + 3}};
  }
  return items;
}

std::vector<TreePlace> PlacesOf(Words words) {
  std::vector<TreePlace> places;
  for (const std::string& place : Split(words, " ")) places.push_back(PlaceOf(place));
  return places;
}

/// What the host asks of the window.
const std::map<std::string, void (*)(DialogWindow& window, int id, Words words)> kCalls = {
    {"set", [](DialogWindow& window, int id, Words text) { window.SetText(id, text); }},
    {"caret", [](DialogWindow& window, int id, Words) { window.PutCaretBehindText(id); }},
    {"grey", [](DialogWindow& window, int id, Words) { window.Enable(id, false); }},
    {"clear", [](DialogWindow& window, int id, Words) { window.SetChecked(id, false); }},
    {"focus", [](DialogWindow& window, int id, Words) { window.Focus(id); }},
    {"fill",
     [](DialogWindow& window, int id, Words items) {
       window.SetItems(id, items == "none" ? Texts{} : Split(items, " "));
     }},
    {"select", [](DialogWindow& window, int id, Words row) { window.Select(id, std::stoi(row)); }},
    {"all", [](DialogWindow& window, int id, Words) { window.SelectAll(id); }},
    {"invert", [](DialogWindow& window, int id, Words) { window.InvertSelection(id); }},
    {"columns",
     [](DialogWindow& window, int id, Words title) {
       window.SetColumns(id, {{title, 60}, {"Unit", 60}});
     }},
    {"add", [](DialogWindow& window, int id,
               Words row) { window.AddRows(id, {Split(row, "/")}, kVariablePicture); }},
    {"remove",
     [](DialogWindow& window, int id, Words row) { window.RemoveRows(id, {std::stoul(row)}); }},
    {"wells", [](DialogWindow& window, int, Words wells) { window.SetTree(kItems, Wells(wells)); }},
    {"tick", [](DialogWindow& window, int,
                Words places) { window.SetTreeChecked(kItems, PlacesOf(places), true); }},
    {"expand", [](DialogWindow& window, int, Words) { window.ExpandTree(kItems, true); }},
    {"collapse", [](DialogWindow& window, int, Words) { window.ExpandTree(kItems, false); }}};

std::string NameAt(int id) {
  const auto found = std::ranges::find(kNames, id, [](const auto& name) { return name.second; });
  return found != kNames.end() ? found->first : std::to_string(id);
}

/// Someone at the desk of the demo dialog.
class DeskPlayer : public Player {
  void PlayAll() override {
    const int result = AtDesk(demo_, [this](Desk& desk) {
      desk_ = &desk;
      while (!commands_.empty()) {
        DoNext();
        desk.InHost([this] { TellChanges(); });
      }
    });
    Tell("closed with " + std::to_string(result));
  }

  void Do(const std::string& verb, Words words) override {
    const auto name = kNames.find(Split(words, " ")[0]);
    const int id = name != kNames.end() ? name->second : 0;
    const std::string rest = id != 0 ? words.substr(words.find(' ') + 1) : words;
    const auto call = kCalls.find(verb);
    if (call == kCalls.end()) return kVerbs.at(verb)(*this, id, rest);
    desk_->InHost([&] { call->second(*demo_.window, id, rest); });
  }
  void Act(void (DeskPlayer::*act)()) {
    demo_.act = [this, act] { (this->*act)(); };
    desk_->Click(kAct);
  }

  /// What controls hold by now; rows by their numbers.
  void TellChanges() {
    for (const auto& [name, id] : kNames) {
      if (demo_.window == nullptr) return;
      std::string value = id == kPlain || id == kDigits ? demo_.window->Text(id) : "";
      if (id == kCheck) value = demo_.window->IsChecked(id) ? "on" : "off";
      if (id == kDrop) value = std::to_string(demo_.window->Selection(id));
      if (id == kBox || id == kRows) {
        for (const size_t row : demo_.window->SelectedRows(id)) value += " " + std::to_string(row);
      }
      const bool isFirst = !seen_.contains(name);
      if (std::exchange(seen_[name], value) != value && !isFirst) Tell(name + ": " + value);
    }
  }

  void ClickItem(Words place, bool onBox, int times) {
    desk_->ClickItem(kItems, PlaceOf(place), onBox, times);
  }
  void Drag(Words words) {
    const Texts sides = Split(words, " ");
    const PixelSize before = demo_.size;
    desk_->DragEdge(std::stoi(sides[0]), std::stoi(sides[1]), {31, 17});
    dragged_ = demo_.size;
    Tell("edge " + std::to_string(std::exchange(demo_.edge, 0)) + ", larger by " +
         std::to_string(dragged_.width - before.width) + " " +
         std::to_string(dragged_.height - before.height));
  }
  void Maximize(Words isMaximized) {
    desk_->Maximize(isMaximized == "yes");
    Tell(demo_.size == dragged_ ? "as it was dragged" : "of another size");
    EXPECT_EQ(demo_.edge, 0);
  }
  void ShowOver() {
    demo_.window->ShowMessage("A message");
    Demo over([this](const std::string& told) { Tell("over it: " + told); });
    over.act = [&] { Tell("over it: " + over.window->Text(kPlain)); };
    const int result = demo_.window->RunDialog(over);
    Tell("over it: closed with " + std::to_string(result));
    demo_.window->Focus(kDigits);
  }
  void Ask() {
    const auto picked = demo_.window->AskForFile(
        {"afi", "Datasets (*.afi)|*.afi|All files (*.*)|*.*||", folder_.Path().string()});
    Tell(!picked ? "none" : *picked == file_.string() ? "field one.afi" : *picked);
  }
  void Move() {
    const PixelRect place = {11, 12, 113, 34};
    demo_.window->Move(kCheck, place);
    EXPECT_EQ(demo_.window->Rect(kCheck), place);
    demo_.window->Redraw();
    EXPECT_EQ(demo_.window->ClientSize(), demo_.size);
    EXPECT_FALSE(demo_.window->ShowHelp((folder_ / "missing.chm").string(), 1));
  }
  void Wait() {
    for (const bool isWaiting : {true, false}) {
      demo_.window->SetWaitCursor(isWaiting);
      demo_.window->Pause(1);
      Tell(ShowsWaitCursor() ? "the wait cursor" : "the usual cursor");
    }
  }

  using Verb = void (*)(DeskPlayer& p, int id, Words words);
  static const std::map<std::string, Verb> kVerbs;

  TestFolder folder_;
  const std::filesystem::path file_ = folder_.Write("field one.afi", "");
  Demo demo_{[this](const std::string& told) { Tell(told); }};
  Desk* desk_ = nullptr;
  std::map<std::string, std::string> seen_;
  PixelSize dragged_;
};

/// What a person does, with the control that is named first, where one is, and the other words.
const std::map<std::string, DeskPlayer::Verb> DeskPlayer::kVerbs = {
    {"press", [](DeskPlayer& p, int, Words w) { p.desk_->Press(w); }},
    {"type", [](DeskPlayer& p, int, Words w) { p.desk_->Type({w.begin(), w.end()}); }},
    {"click", [](DeskPlayer& p, int id, Words) { p.desk_->Click(id); }},
    {"row", [](DeskPlayer& p, int id, Words w) { p.desk_->ClickRow(id, std::stoi(w)); }},
    {"more", [](DeskPlayer& p, int id, Words w) { p.desk_->ClickRow(id, std::stoi(w), true); }},
    {"item", [](DeskPlayer& p, int, Words w) { p.ClickItem(w, false, 1); }},
    {"box", [](DeskPlayer& p, int, Words w) { p.ClickItem(w, true, 1); }},
    {"twice", [](DeskPlayer& p, int, Words w) { p.ClickItem(w, true, 2); }},
    {"drag", [](DeskPlayer& p, int, Words w) { p.Drag(w); }},
    {"maximize", [](DeskPlayer& p, int, Words w) { p.Maximize(w); }},
    {"over", [](DeskPlayer& p, int, Words) { p.Act(&DeskPlayer::ShowOver); }},
    {"ask", [](DeskPlayer& p, int, Words) { p.Act(&DeskPlayer::Ask); }},
    {"move", [](DeskPlayer& p, int, Words) { p.Act(&DeskPlayer::Move); }},
    {"wait", [](DeskPlayer& p, int, Words) { p.Act(&DeskPlayer::Wait); }},
    // What a person looks at.
    {"title", [](DeskPlayer& p, int, Words) { p.Tell(p.desk_->Title()); }},
    {"message", [](DeskPlayer& p, int, Words) { p.Tell(p.desk_->Message()); }},
    {"keyboard", [](DeskPlayer& p, int, Words) { p.Tell(NameAt(p.desk_->Focus())); }},
    {"checked",
     [](DeskPlayer& p, int, Words w) {
       p.Tell(p.desk_->ShowsCheck(kItems, PlaceOf(w)) ? "yes" : "no");
     }},
    {"branches",
     [](DeskPlayer& p, int, Words w) {
       std::string open;
       for (size_t i = 0; i < std::stoul(w); ++i) open += p.desk_->IsOpen(kItems, i) ? "-" : "+";
       p.Tell(open);
     }},
    {"tabs",
     [](DeskPlayer& p, int, Words) {
       std::string names = NameAt(p.desk_->Focus());
       for (const std::string first = names; names == first || !names.ends_with(first);) {
         p.desk_->Press("tab");
         names += " " + NameAt(p.desk_->Focus());
       }
       p.Tell(names);
     }}};

class Toolkit : public ::testing::TestWithParam<Scene> {};

TEST_P(Toolkit, GoesAsItIsWritten) { DeskPlayer().Play(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Plays, Toolkit,
                         ::testing::ValuesIn(ScenesOf(GANTRY_PLAYS "/toolkit.play")), SceneName);

}  // namespace
}  // namespace gantry::test
