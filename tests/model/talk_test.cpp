// Talks of a host with a model as they are written down in talks/*.talk: "# NAME" begins one, "> "
// is what the host does, by a verb of the table below, and the "< " behind it are what comes of it,
// which for a command that succeeds is nothing. "..." at a line's end is any text, {case} the
// case's folder, {folder} the one around it, and {/} the system's separator.

#include <algorithm>
#include <cstddef>
#include <fstream>

#include "client/unit_converter.h"
#include "model/ext_model.h"
#include "model/model_fixture.h"
#include "model/talk_words.h"
#include "platform/files.h"

namespace gantry::test {
namespace {

/// NAME[:TYPE[:STATUS]]
SimulatedWell WellOf(std::string text) {
  std::ranges::replace(text, ':', ' ');
  Words words(text);
  SimulatedWell well{.name = words.Next()};
  well.type = words.Next(well.type);
  well.status = words.Next(well.status);
  return well;
}

/// What is changed of the simulated field.
const std::map<std::string, void (*)(FieldPeer&, Words&)> kFieldVerbs = {
    {"field",
     [](FieldPeer& f, Words& w) {
       f.wells.clear();
       for (const std::string& well : w.All<std::string>()) f.wells.push_back(WellOf(well));
     }},
    {"fluid-of-field", [](FieldPeer& f, Words& w) { f.components = w.All<std::string>(); }},
    {"interaction", [](FieldPeer& f, Words& w) { f.binaryInteraction = w.All<double>(); }},
    {"date-of-field", [](FieldPeer& f, Words& w) { f.date = w.All<int32_t>(); }},
    {"start-of-field", [](FieldPeer& f, Words& w) { f.startDate = w.All<int32_t>(); }},
    {"days-of-field", [](FieldPeer& f, Words& w) { f.days = w.Next(0.0); }},
    {"end-of-field", [](FieldPeer& f, Words& w) { f.endOfRun = w.Next(0.0); }},
    {"item",
     [](FieldPeer& f, Words& w) {
       double& value = f.variables[w.Next()];
       value = w.Next(0.0);
     }},
    {"metric", [](FieldPeer& f, Words&) { f.isMetric = true; }},
    {"tell-of-all-wells", [](FieldPeer& f, Words&) { f.tellsOfAllWells = true; }},
};

class Talk : public ModelTest, public testing::WithParamInterface<std::string> {
 protected:
  using Verb = void (*)(Talk& talk, Words& words);
  static const std::map<std::string, Verb> kVerbs;

  Talk() { std::memset(inflow.get(), 0x7e, sizeof *inflow); }

  void Play(const Texts& lines) {
    for (auto line = lines.begin(); line != lines.end();) {
      Words words(Filled(line->substr(2)));
      const std::string act = *line++;
      Texts expected;
      while (line != lines.end() && line->starts_with("< ")) {
        expected.push_back(Filled((line++)->substr(2)));
      }
      heard_.clear();
      Act(words.Next(), words);
      for (size_t i = 0; i < std::min(heard_.size(), expected.size()); ++i) {
        const size_t cut = expected[i].size() - std::min<size_t>(expected[i].size(), 3);
        if (expected[i].ends_with("...")) heard_[i].replace(cut, std::string::npos, "...");
      }
      EXPECT_EQ(heard_, expected) << act;
    }
  }

  void Act(const std::string& verb, Words& words) {
    if (kVerbs.contains(verb)) return kVerbs.at(verb)(*this, words);
    peer.ChangeWells([&](auto&) { kFieldVerbs.at(verb)(peer, words); });
  }

  std::string Filled(std::string text) const {
    const std::pair<std::string, std::string> places[] = {{"{case}", Case().string()},
                                                          {"{folder}", folder.Path().string()},
                                                          {"{held}", HELD_SIMULATOR},
                                                          {"{/}", {platform::kPathSeparator}}};
    for (const auto& [place, filling] : places) {
      for (size_t at; (at = text.find(place)) != std::string::npos;) {
        text.replace(at, place.size(), filling);
      }
    }
    return text;
  }

  void Hear(const std::string& line) { heard_.push_back(line); }
  /// What went wrong, if it did; true where nothing has.
  bool Tell(int32_t result) {
    if (result != 0) Hear(Outcome(result));
    return result == 0;
  }

  Texts Wells() {
    Texts names;
    EnumSourcesRow row = {};
    row.index = -1;
    while (Command(EXT_ENUM_SOURCES, &row) == 0) names.push_back(row.name);
    return names;
  }

  void HearPublished() {
    PublishedVariableRow row = {};
    row.handle = -1;
    while (Command(EXT_ENUM_PUBLISHED_VARIABLES, &row) == 0) {
      EXPECT_EQ(row.fullName, std::string(row.wellName) + ":" + row.shortName);
      Hear(Line(row.fullName, row.isWriteable == 0 ? "read-only" : "writeable", row.code));
    }
  }

  /// Publishes a variable of a well, as the export dialog does.
  void Publish(const std::string& well, uint32_t kind, bool isWriteable, const std::string& label) {
    CExportedVariables& variables = static_cast<CExtModel*>(model)->ExportedVariables();
    CExportedVariableWellParent* parent = variables.FindWellParent(well);
    if (parent == nullptr) {
      parent = &variables.Add(std::make_unique<CExportedVariableWellParent>());
      parent->WellName = well;
    }
    auto& variable = parent->Variables.Add(std::make_unique<CExportedVariable>());
    variable.Key = "OIL_PRODUCTION_RATE";
    variable.SimulatorItem = isWriteable ? variable.Key : "";
    variable.Label = label;
    variable.Code = 30801;
    variable.UnitFamily = kLiquidRate;
    variable.Kind = kind;
  }

  /// Writes the text into an element, or reads it where there is none.
  void Evaluate(int32_t handle, const std::string& text) {
    std::vector<char> space(sizeof(EvalPublishedRequest) + text.size());
    auto& request = *new (space.data()) EvalPublishedRequest;
    request.handle = handle;
    request.isWrite = text.empty() ? 0 : 1;
    request.value[0] = '?';
    text.copy(space.data() + offsetof(EvalPublishedRequest, value), text.size());
    const int32_t result = Command(EXT_EVAL_PUBLISHED_VARIABLES, &request);
    if (Tell(result) && text.empty()) Hear(request.value);
  }

  void HearFluid() {
    auto fluid = std::make_unique<FluidModelRecord>();
    std::memset(fluid.get(), 0x55, sizeof *fluid);
    if (Command(EXT_GET_FLUID_MODEL, fluid.get()) != 0) return Hear("none");
    const auto& bic = fluid->binaryInteraction;
    Hear(Line(fluid->componentCount, "components, mask", fluid->mask, "equation",
              fluid->equationOfState, std::string(fluid->names[2], 17)));
    Hear(Line("weights", fluid->molecularWeight[3], fluid->molecularWeight[4], "interaction",
              bic[1][0], bic[2][0], bic[2][1], bic[3][0], bic[3][1], bic[0][1], bic[1][1]));
    EXPECT_EQ(Line(fluid->reserved0, fluid->reserved2[99]), "1431655765 U")
        << "the host's own bytes stay";
  }

  Texts heard_;
  std::unique_ptr<_tGetSetData> point_ = std::make_unique<_tGetSetData>();  ///< what is set
  std::unique_ptr<CaseDataRecord> record_ = std::make_unique<CaseDataRecord>();
};

const std::map<std::string, Talk::Verb> Talk::kVerbs = {
    // The peer.
    {"cut-at", [](Talk& t, Words& w) { t.peer.CutAt(w.Next()); }},
    {"orders", [](Talk& t, Words&) { t.heard_ = t.peer.TakeOrders(); }},
    {"forget-orders", [](Talk& t, Words&) { t.peer.TakeOrders(); }},
    {"end-process",
     [](Talk& t, Words&) {
       std::filesystem::remove(t.Case() / "hold");
       while (t.Get("IsRunning") == "1") std::this_thread::yield();
       t.folder.Write("case/hold", "");
     }},
    // The machine's settings.
    {"simulator", [](Talk& t, Words& w) { t.app.Config.SimExecutable = w.Rest(); }},
    {"mpi", [](Talk& t, Words& w) { t.app.Config.MPIExecutable = w.Rest(); }},
    {"options", [](Talk& t, Words& w) { t.app.Config.CmdLine = w.Rest(); }},
    // The case.
    {"file", [](Talk& t, Words& w) { t.folder.Write(w.Rest(), ""); }},
    {"name", [](Talk& t, Words&) { t.NameCase(); }},
    {"dataset",
     [](Talk& t, Words& w) {
       SetDataFileRecord file = {};
       w.Rest().copy(file.path, sizeof file.path - 1);
       t.Tell(t.Command(EXT_SET_DATA_FILE, &file));
     }},
    {"dataset-folder",
     [](Talk& t, Words& w) { t.Tell(t.Command(EXT_SET_DATA_FOLDER, w.Rest().data())); }},
    {"datasets",  // [INDEX]
     [](Talk& t, Words& w) {
       auto row = std::make_unique<EnumDataFilesRow>();
       row->index = w.Next(0);
       if (t.Tell(t.Command(EXT_ENUM_DATA_FILES, row.get()))) t.Hear(Line(row->path, int{row->isLocal}, row->options, row->label));
     }},
    {"save",
     [](Talk& t, Words& w) {
       const auto capacity = w.Next<uint32_t>(EXT_CASE_DATA_CAPACITY);
       t.Tell(t.Command(EXT_SAVE_CASE_DATA, t.record_->block, capacity));
     }},
    {"version-of-block", [](Talk& t, Words& w) { t.record_->block[8] = char(w.Next(0)); }},
    {"load",  // [LENGTH [KEEPS-PATH CASE-PATH]]
     [](Talk& t, Words& w) {
       t.record_->length = w.Next<uint32_t>(EXT_CASE_DATA_CAPACITY);
       t.record_->keepDatasetPath = static_cast<uint8_t>(w.Next(0));
       const std::string path = w.Rest();
       t.record_->casePath = path.c_str();
       t.Tell(t.Command(EXT_LOAD_CASE_DATA, t.record_.get()));
     }},
    {"reopen",
     [](Talk& t, Words&) {
       ExtDestroyInstance(t.model, &t.err);
       ExtCreateInstance(&t.model, &t.err);
     }},
    // Text paths and commands.
    {"set",
     [](Talk& t, Words& w) {
       const std::string path = w.Next();
       t.Tell(t.Set(path, w.Rest()));
     }},
    {"get",
     [](Talk& t, Words& w) {
       for (const std::string& path : w.All<std::string>()) {
         const std::string value = t.Get(path);
         t.Hear(t.Error().empty() ? value : t.Error());
       }
     }},
    {"ask",  // a path with its first word
     [](Talk& t, Words& w) {
       const std::string path = w.Rest();
       GetPropertyRequest request = {};
       request.path = path.c_str();
       const int32_t result = t.Command(EXT_GET_PROPERTY, &request);
       t.Hear(result == 0 ? request.value : t.Outcome(result));
     }},
    {"commands",  // NUMBER..., each without a record
     [](Talk& t, Words& w) {
       for (const uint32_t number : w.All<uint32_t>()) {
         const int32_t result = t.Command(number);
         t.Hear(t.Error().empty() ? std::to_string(result) : t.Error());
       }
     }},
    {"do", [](Talk& t, Words& w) { t.Tell(t.Do(w.Rest())); }},
    {"description",
     [](Talk& t, Words&) {
       char text[600];
       t.Tell(t.Command(EXT_GET_DESCRIPTION, text, sizeof text));
       std::ranges::replace(text, '\n', '|');
       t.Hear(text);
     }},
    // A run.
    {"listen", [](Talk& t, Words&) { t.peer.Start(); }},
    {"begin", [](Talk& t, Words&) { t.StartSimulator(); }},
    {"begin-run", [](Talk& t, Words& w) { t.BeginRun(w.All<int32_t>()); }},
    {"start", [](Talk& t, Words&) { t.Tell(t.Command(EXT_START_SIMULATOR)); }},
    {"close", [](Talk& t, Words&) { t.Tell(t.Command(EXT_CLOSE_SIMULATOR)); }},
    {"arguments",
     [](Talk& t, Words&) {
       std::string text;  // which may be there before anybody else is let in
       while (text.empty()) text = TestFolder::Read(t.Case() / "started.txt");
       std::filesystem::remove(t.Case() / "started.txt");
       const std::string port = ":" + std::to_string(t.peer.Port()) + "\n";
       text.replace(text.find(port), port.size(), ":PORT\n");
       std::ranges::replace(text, '\n', '|');
       t.Hear(text);
     }},
    {"run", [](Talk& t, Words& w) { t.Tell(t.StartRun(w.All<int32_t>())); }},
    {"run-from",
     [](Talk& t, Words& w) {
       const double date = w.Next(0.0);
       t.Tell(t.StartRun(w.All<int32_t>(), date));
     }},
    {"told", [](Talk& t, Words&) { t.heard_ = Told(); }},
    {"wells", [](Talk& t, Words&) { t.heard_ = t.Wells(); }},
    {"well-behind",
     [](Talk& t, Words& w) {
       EnumSourcesRow row = {};
       row.index = w.Next(0);
       if (t.Tell(t.Command(EXT_ENUM_SOURCES, &row, w.Next(0u)))) t.Hear(Line(row.index, row.kind, row.one1, row.one2, row.kindAgain, row.zero, row.one3,
                   row.sourceWord));
     }},
    {"connect",
     [](Talk& t, Words& w) {
       SetConnectionRequest request = {.reserved = 0, .well = w.Next(0), .connected = 1};
       t.Tell(t.Command(EXT_SET_CONNECTION, &request));
     }},
    {"connected",
     [](Talk& t, Words&) {
       for (const std::string& name : t.Wells()) {
         if (t.Get("StaticWell[{" + name + "}].Connected") == "1") t.Hear(name);
       }
     }},
    {"date",
     [](Talk& t, Words&) {
       DateRecord date = {};
       if (t.Tell(t.Command(EXT_GET_SIMULATION_DATE, &date))) t.Hear(Line(date.flags, date.day, date.month, date.year, date.number));
     }},
    {"fluid", [](Talk& t, Words&) { t.HearFluid(); }},
    {"step", [](Talk& t, Words& w) { t.Tell(t.StepBy(std::stod(w.Next()))); }},
    {"simulator-days",
     [](Talk& t, Words&) { t.Hear(Line(static_cast<CExtModel*>(t.model)->SimulatorDays())); }},
    {"read", [](Talk& t, Words&) { t.Tell(t.Command(EXT_SET_TIMESTEP_DATA)); }},
    {"apply", [](Talk& t, Words&) { t.Tell(t.Command(EXT_APPLY_OPERATING_POINTS)); }},
    {"inflow",  // WELL PART...
     [](Talk& t, Words& w) {
       t.Tell(t.ReadInflow(w.Next(0), *t.inflow));
       for (const std::string& part : w.All<std::string>()) t.Hear(Part(*t.inflow, part));
     }},
    {"operate",  // WELL OIL WATER GAS [PRESSURE [DOWN]]
     [](Talk& t, Words& w) {
       *t.point_ = {};
       t.point_->well = w.Next(0);
       t.point_->oilRate[0] = w.Next(0.0);
       t.point_->waterRate[0] = w.Next(0.0);
       t.point_->gasRate[0] = w.Next(0.0);
       t.point_->pressure[0] = w.Next(1000.0);
       t.point_->downFraction = w.Next(0.0);
       t.Tell(t.Command(EXT_SET_OP_PT, t.point_.get()));
     }},
    {"shut",  // WELL CODE
     [](Talk& t, Words& w) {
       *t.point_ = {};
       t.point_->isShut = 1;
       t.point_->well = w.Next(0);
       t.point_->shutInCode = w.Next(0);
       t.Tell(t.Command(EXT_SET_OP_PT, t.point_.get()));
     }},
    {"inject",  // WELL GAS VALUE PASSED GRAVITY FRACTIONS...
     [](Talk& t, Words& w) {
       *t.point_ = {};
       t.point_->well = w.Next(0);
       t.point_->gasRate[0] = w.Next(0.0);
       t.point_->pointValue[0] = w.Next(0.0);
       t.point_->passThrough[2] = w.Next(0.0);
       t.point_->oilGravity = w.Next(0.0);
       const auto fractions = w.All<double>();
       t.point_->fluid.componentCount = static_cast<int32_t>(fractions.size());
       std::ranges::copy(fractions, t.point_->moleFractions[0]);
       t.Tell(t.Command(EXT_SET_OP_PT, t.point_.get()));
     }},
    // Published variables.
    {"publish",  // WELL KIND writeable|read-only LABEL
     [](Talk& t, Words& w) {
       const std::string well = w.Next();
       const auto kind = w.Next(0u);
       const bool isWriteable = w.Next() == "writeable";
       t.Publish(well, kind, isWriteable, w.Rest());
     }},
    {"published", [](Talk& t, Words&) { t.HearPublished(); }},
    {"published-behind",
     [](Talk& t, Words& w) {
       PublishedVariableRow row = {};
       row.handle = w.Next(0);
       t.Hear(Line(t.Command(EXT_ENUM_PUBLISHED_VARIABLES, &row), row.handle));
     }},
    {"evaluate",  // HANDLE [TEXT]
     [](Talk& t, Words& w) {
       const int32_t handle = w.Next(0);
       t.Evaluate(handle, w.Rest());
     }},
    {"delete",
     [](Talk& t, Words& w) {
       const auto handle = static_cast<uint32_t>(w.Next(0));
       t.Tell(t.Command(EXT_DEL_PUBLISHED_VARIABLE, nullptr, handle));
     }},
};

/// The talks, by their names.
const std::map<std::string, Texts>& Talks() {
  static const auto talks = [] {
    std::map<std::string, Texts> read;
    for (const auto& file : std::filesystem::directory_iterator(GANTRY_MODEL_TALKS)) {
      std::ifstream text(file.path());
      std::string name;
      for (std::string line; std::getline(text, line);) {
        if (line.starts_with("# ")) name = line.substr(2);
        if (line.starts_with("> ") || line.starts_with("< ")) read[name].push_back(line);
      }
    }
    return read;
  }();
  return talks;
}

std::vector<std::string> Names() {
  std::vector<std::string> names;
  for (const auto& [name, lines] : Talks()) names.push_back(name);
  return names;
}

TEST_P(Talk, GoesAsItIsWritten) { Play(Talks().at(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Model, Talk, testing::ValuesIn(Names()),
                         [](const auto& talk) { return talk.param; });

}  // namespace
}  // namespace gantry::test
