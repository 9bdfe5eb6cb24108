// What a host does with a model, and what comes of it: the talks in talks/*.talk, of which
// docs/testing.md tells. {case} is the case's folder there, {folder} the one around it, {held} the
// program that stands for a simulator's, and {/} the system's separator.

#include "model/talk.h"

#include <algorithm>
#include <cstddef>
#include <future>
#include <thread>

#include "client/unit_converter.h"

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

}  // namespace

/// What is changed of the simulated field.
const std::map<std::string, HostTalk::Verb> HostTalk::kFieldVerbs = {
    {"field",
     [](HostTalk& t, Words& w) {
       t.peer.wells.clear();
       for (const std::string& well : w.All()) t.peer.wells.push_back(WellOf(well));
     }},
    {"fluid-of-field", [](HostTalk& t, Words& w) { t.peer.components = w.All(); }},
    {"interaction", [](HostTalk& t, Words& w) { t.peer.binaryInteraction = w.All<double>(); }},
    {"date-of-field", [](HostTalk& t, Words& w) { t.peer.date = w.All<int32_t>(); }},
    {"start-of-field", [](HostTalk& t, Words& w) { t.peer.startDate = w.All<int32_t>(); }},
    {"days-of-field", [](HostTalk& t, Words& w) { t.peer.days = w.Next(0.0); }},
    {"end-of-field", [](HostTalk& t, Words& w) { t.peer.endOfRun = w.Next(0.0); }},
    {"item",
     [](HostTalk& t, Words& w) {
       double& value = t.peer.variables[w.Next()];
       value = w.Next(0.0);
     }},
    {"metric", [](HostTalk& t, Words&) { t.peer.isMetric = true; }},
    {"tell-of-all-wells", [](HostTalk& t, Words&) { t.peer.tellsOfAllWells = true; }},
    {"cut-at",  // MESSAGE, or nowhere
     [](HostTalk& t, Words& w) {
       t.peer.said = {{w.Next<std::string>("none"), {}}};
     }}};

const std::map<std::string, HostTalk::Verb> HostTalk::kVerbs = {
    {"orders", [](HostTalk& t, Words&) { t.TellAll(t.peer.TakeOrders()); }},
    {"forget-orders", [](HostTalk& t, Words&) { t.peer.TakeOrders(); }},
    {"end-process",
     [](HostTalk& t, Words&) {
       std::filesystem::remove(t.Case() / "hold");
       while (t.Get("IsRunning") == "1") std::this_thread::yield();
       t.folder.Write("case/hold", "");
     }},
    // The machine's settings.
    {"simulator", [](HostTalk& t, Words& w) { t.app.Config.SimExecutable = w.Rest(); }},
    {"mpi", [](HostTalk& t, Words& w) { t.app.Config.MPIExecutable = w.Rest(); }},
    {"options", [](HostTalk& t, Words& w) { t.app.Config.CmdLine = w.Rest(); }},
    // The case.
    {"file",  // NAME [CONTENT]
     [](HostTalk& t, Words& w) {
       const std::string name = w.Next();
       t.folder.Write(name, w.Rest());
     }},
    {"name", [](HostTalk& t, Words&) {
       t.Do("set", std::string("CaseDetails.SimExeName ") + HELD_SIMULATOR);
       t.Do("set", "CaseDetails.FileName " + (t.Case() / "FIELD.afi").string());
     }},
    {"dataset",
     [](HostTalk& t, Words& w) {
       SetDataFileRecord file = {};
       w.Rest().copy(file.path, sizeof file.path - 1);
       t.Hear(t.Command(EXT_SET_DATA_FILE, &file));
     }},
    {"datasets",  // [INDEX]
     [](HostTalk& t, Words& w) {
       auto row = std::make_unique<EnumDataFilesRow>();
       row->index = w.Next(0);
       if (!t.Hear(t.Command(EXT_ENUM_DATA_FILES, row.get()))) return;
       t.Tell(Line(row->path, int{row->isLocal}, row->options, row->label));
     }},
    {"save",
     [](HostTalk& t, Words& w) {
       const auto capacity = w.Next<uint32_t>(EXT_CASE_DATA_CAPACITY);
       t.Hear(t.Command(EXT_SAVE_CASE_DATA, t.record->block, capacity));
     }},
    {"version-of-block", [](HostTalk& t, Words& w) { t.record->block[8] = char(w.Next(0)); }},
    {"load",  // [LENGTH [KEEPS-PATH CASE-PATH]]
     [](HostTalk& t, Words& w) {
       t.record->length = w.Next<uint32_t>(EXT_CASE_DATA_CAPACITY);
       t.record->keepDatasetPath = static_cast<uint8_t>(w.Next(0));
       const std::string path = w.Rest();
       t.record->casePath = path.c_str();
       t.Hear(t.Command(EXT_LOAD_CASE_DATA, t.record.get()));
     }},
    {"reopen",
     [](HostTalk& t, Words&) {
       ExtDestroyInstance(t.model, &t.err);
       ExtCreateInstance(&t.model, &t.err);
     }},
    // Text paths and commands.
    {"set",
     [](HostTalk& t, Words& w) {
       const std::string path = "Intersect." + w.Next(), value = w.Rest();
       SetPropertyRequest request = {};
       request.path = path.c_str();
       request.value = value.c_str();
       t.Hear(t.Command(EXT_SET_PROPERTY, &request));
     }},
    {"get",
     [](HostTalk& t, Words& w) {
       for (const std::string& path : w.All()) {
         const std::string value = t.Get(path);
         t.Tell(*t.err.text == '\0' ? value : t.err.text);
       }
     }},
    {"ask",  // a path with its first word
     [](HostTalk& t, Words& w) {
       const std::string path = w.Rest();
       GetPropertyRequest request = {};
       request.path = path.c_str();
       const int32_t result = t.Command(EXT_GET_PROPERTY, &request);
       t.Tell(result == 0 ? request.value : t.Outcome(result));
     }},
    {"commands",  // NUMBER..., each without a record
     [](HostTalk& t, Words& w) {
       for (const uint32_t number : w.All<uint32_t>()) {
         const int32_t result = t.Command(number);
         t.Tell(*t.err.text == '\0' ? std::to_string(result) : t.err.text);
       }
     }},
    {"names",
     [](HostTalk& t, Words&) {
       VariableNamesRecord r = {};
       t.Hear(t.Command(EXT_GET_VARIABLE_NAMES, &r));
       t.TellAll({r.reservoirProductionRate, r.reservoirInjectionRate,
                  r.reservoirProductionCumulative, r.reservoirInjectionCumulative,
                  r.waterProductionRate, r.oilProductionRate, r.gasProductionRate,
                  r.waterInjectionRate, r.gasInjectionRate,
                  Line(r.reservoirRateFactor, r.reservoirCumulativeFactor, r.liquidRateFactor,
                       r.gasRateFactor)});
     }},
    {"description",
     [](HostTalk& t, Words&) {
       char text[600];
       t.Hear(t.Command(EXT_GET_DESCRIPTION, text, sizeof text));
       std::ranges::replace(text, '\n', '|');
       t.Tell(text);
     }},
    // A run.
    {"listen", [](HostTalk& t, Words&) { t.peer.Start(); }},
    {"begin",
     [](HostTalk& t, Words&) {
       for (const char* verb : {"name", "listen", "start", "forget-orders"}) t.Do(verb, "");
     }},
    {"begin-run",
     [](HostTalk& t, Words& w) {
       t.Do("begin", "");
       t.Do("run", w.Rest());
       t.Do("forget-orders", "");
     }},
    {"arguments",
     [](HostTalk& t, Words&) {
       std::string text;  // which may be there before anybody else is let in
       while (text.empty()) text = TestFolder::Read(t.Case() / "started.txt");
       std::filesystem::remove(t.Case() / "started.txt");
       const std::string port = ":" + std::to_string(t.peer.Port()) + "\n";
       text.replace(text.find(port), port.size(), ":PORT\n");
       std::ranges::replace(text, '\n', '|');
       t.Tell(text);
     }},
    {"run", [](HostTalk& t, Words& w) { t.Hear(t.StartRun(0.0, w.All<int32_t>())); }},
    {"run-from",
     [](HostTalk& t, Words& w) {
       const double date = w.Next(0.0);
       t.Hear(t.StartRun(date, w.All<int32_t>()));
     }},
    {"told", [](HostTalk& t, Words&) { t.TellAll(Told()); }},
    {"wells", [](HostTalk& t, Words&) { t.TellAll(t.Wells()); }},
    {"well-behind",
     [](HostTalk& t, Words& w) {
       EnumSourcesRow row = {};
       row.index = w.Next(0);
       if (!t.Hear(t.Command(EXT_ENUM_SOURCES, &row, w.Next(0u)))) return;
       t.Tell(Line(row.index, row.kind, row.one1, row.one2, row.kindAgain, row.zero, row.one3,
                   row.sourceWord));
     }},
    {"connect",
     [](HostTalk& t, Words& w) {
       SetConnectionRequest request = {.reserved = 0, .well = w.Next(0), .connected = 1};
       t.Hear(t.Command(EXT_SET_CONNECTION, &request));
     }},
    {"connected",
     [](HostTalk& t, Words&) {
       for (const std::string& name : t.Wells()) {
         if (t.Get("StaticWell[{" + name + "}].Connected") == "1") t.Tell(name);
       }
     }},
    {"date",
     [](HostTalk& t, Words&) {
       DateRecord date = {};
       if (!t.Hear(t.Command(EXT_GET_SIMULATION_DATE, &date))) return;
       t.Tell(Line(date.flags, date.day, date.month, date.year, date.number));
     }},
    {"fluid", [](HostTalk& t, Words&) { t.TellFluid(); }},
    {"step", [](HostTalk& t, Words& w) {
       TimestepRecord record = {};
       record.stepDays = std::stod(w.Next());
       t.Hear(t.Command(EXT_TIMESTEP, &record));
     }},
    {"meanwhile",  // PATH..., asked while another thread is in a step of five days
     [](HostTalk& t, Words& w) {
       std::promise<void> stepping, answered;
       t.peer.HeedEach([&](const std::string& message) {
         if (message != "CONTINUE_UNTIL") return;
         stepping.set_value();
         answered.get_future().wait();
       });
       auto result = std::async(std::launch::async, [&] {
         TimestepRecord record = {};
         record.stepDays = 5.0;
         ExtErrorBlock own = {};
         return ExtCmd(t.model, nullptr, EXT_TIMESTEP, &record, 0, &own);
       });
       stepping.get_future().wait();
       kVerbs.at("get")(t, w);
       answered.set_value();
       t.Hear(result.get());
       t.peer.HeedEach({});
     }},
    {"run-and-stop",  // DATE: up to it, while another thread stops the run
     [](HostTalk& t, Words& w) {
       std::jthread stopper;
       t.peer.HeedEach([&](const std::string& message) {
         if (message != "CONTINUE_UNTIL" || stopper.joinable()) return;
         stopper = std::jthread([&t] {
           ExtErrorBlock own = {};
           EXPECT_EQ(ExtCmd(t.model, nullptr, EXT_CLOSE_SIMULATOR, nullptr, 0, &own), 0);
         });
       });
       const double date = w.Next(0.0);
       t.Hear(t.StartRun(date, {}));
       EXPECT_LT(std::stod(t.Get("CurrentElapsedDays")), date) << "the stop came to nothing";
       t.peer.HeedEach({});  // whatever the peer's thread has done is seen from here on
     }},
    {"simulator-days",
     [](HostTalk& t, Words&) { t.Tell(Line(t.Model().SimulatorDays())); }},
    {"inflow",  // WELL PART...
     [](HostTalk& t, Words& w) {
       t.inflow->well = w.Next(0);
       t.Hear(t.Command(EXT_GET_IPR, t.inflow.get()));
       for (const std::string& part : w.All()) t.TellPart(part);
     }},
    {"operate",  // WELL NAME VALUE..., at 1000 psig unless it says otherwise
     [](HostTalk& t, Words& w) {
       auto point = std::make_unique<_tGetSetData>();
       point->well = w.Next(0);
       point->pressure[0] = 1000.0;
       const std::map<std::string, double*> places = {
           {"oil", point->oilRate},          {"water", point->waterRate},
           {"gas", point->gasRate},          {"pressure", point->pressure},
           {"down", &point->downFraction},   {"value", point->pointValue},
           {"passed", point->passThrough+2}, {"gravity", &point->oilGravity}};
       for (std::string name; !(name = w.Next()).empty();) {
         if (places.contains(name)) *places.at(name) = w.Next(0.0);
         if (name == "shut") point->isShut = 1;
         if (name == "shut") point->shutInCode = w.Next(0);
         if (name != "fractions") continue;
         const auto fractions = w.All<double>();
         point->fluid.componentCount = static_cast<int32_t>(fractions.size());
         std::ranges::copy(fractions, point->moleFractions[0]);
       }
       t.Hear(t.Command(EXT_SET_OP_PT, point.get()));
     }},
    // The inflow library.
    {"library",
     [](HostTalk& t, Words&) { t.TellAll(std::exchange(t.probe.calls, {})); }},
    {"library-is-to",  // WHAT NUMBER
     [](HostTalk& t, Words& w) {
       const std::map<std::string, int32_t*> places = {{"points", &t.probe.pointsAfter},
                                                       {"reads", &t.probe.readsInside},
                                                       {"restarts", &t.probe.restartsInside}};
       int32_t& place = *places.at(w.Next());
       place = w.Next(0);
     }},
    {"library-asks",  // QUESTION [WELL OR DAYS [RATE] PART...]
     [](HostTalk& t, Words& w) {
       const std::string question = w.Next();
       if (question == "elapsed") return t.Tell(Line(t.probe.elapsedDays(t.model)));
       char text[IPR_TEXT_SIZE] = {};
       const double first = w.Next(0.0);
       const auto well = static_cast<int32_t>(first);
       int32_t result = 0;
       if (question == "restart") result = t.probe.restart(t.model, text);
       if (question == "advance") result = t.probe.advance(t.model, first, text);
       if (question == "rate") result = t.probe.imposeRate(t.model, well, w.Next(0.0), text);
       if (question == "inflow") result = t.probe.readInflow(t.model, well, t.inflow.get(), text);
       if (question == "current") result = t.probe.readCurrent(t.model, well, t.inflow.get(), text);
       if (result != 0) return t.Tell(text);
       for (const std::string& part : w.All()) t.TellPart(part);
     }},
    {"points-for-host",
     [](HostTalk& t, Words& w) {
       const auto& sources = t.Model().Sources().Items;
       t.Tell(Line(sources.at(w.Next<size_t>()).HostIPR.size()));
     }},
    {"find",  // FILE TEXT
     [](HostTalk& t, Words& w) {
       const auto file = t.folder / w.Next();
       const size_t place = TestFolder::Read(file).find(w.Rest());
       t.Tell(std::filesystem::exists(file) ? Line(place) : "no file");
     }},
    // Published variables.
    {"publish",  // WELL KIND writeable|read-only LABEL, as the export dialog does
     [](HostTalk& t, Words& w) {
       CExportedVariables& variables = t.Model().ExportedVariables();
       const std::string well = w.Next();
       CExportedVariableWellParent* parent = variables.FindWellParent(well);
       if (parent == nullptr) {
         parent = &variables.Add(std::make_unique<CExportedVariableWellParent>());
         parent->WellName = well;
       }
       const auto kind = w.Next(0u);
       const char* const item = w.Next() == "writeable" ? "OIL_PRODUCTION_RATE" : "";
       const std::string label = w.Rest();
       parent->Variables.Add(std::make_unique<CExportedVariable>(
           WellVariable{"OIL_PRODUCTION_RATE", item, label.c_str(), 30801, kLiquidRate, kind}));
     }},
    {"published",
     [](HostTalk& t, Words&) {
       PublishedVariableRow row = {};
       row.handle = -1;
       while (t.Command(EXT_ENUM_PUBLISHED_VARIABLES, &row) == 0) {
         EXPECT_EQ(row.fullName, std::string(row.wellName) + ":" + row.shortName);
         t.Tell(Line(row.fullName, row.isWriteable == 0 ? "read-only" : "writeable", row.code));
       }
     }},
    {"published-behind",
     [](HostTalk& t, Words& w) {
       PublishedVariableRow row = {};
       row.handle = w.Next(0);
       t.Tell(Line(t.Command(EXT_ENUM_PUBLISHED_VARIABLES, &row), row.handle));
     }},
    {"evaluate",  // HANDLE [TEXT], which is written into the element; it is read without one
     [](HostTalk& t, Words& w) {
       const int32_t handle = w.Next(0);
       const std::string text = w.Rest();
       std::vector<char> space(sizeof(EvalPublishedRequest) + text.size());
       auto& request = *new (space.data()) EvalPublishedRequest;
       request.handle = handle;
       request.isWrite = text.empty() ? 0 : 1;
       request.value[0] = '?';
       text.copy(space.data() + offsetof(EvalPublishedRequest, value), text.size());
       const int32_t result = t.Command(EXT_EVAL_PUBLISHED_VARIABLES, &request);
       if (t.Hear(result) && text.empty()) t.Tell(request.value);
     }},
    {"delete",
     [](HostTalk& t, Words& w) {
       const auto handle = static_cast<uint32_t>(w.Next(0));
       t.Hear(t.Command(EXT_DEL_PUBLISHED_VARIABLE, nullptr, handle));
     }},
};

TEST_P(HostTalk, GoesAsItIsWritten) {
  Scene scene = GetParam();
  for (Texts* lines : {&scene.commands, &scene.lines}) {
    for (std::string& line : *lines) line = Filled(line);
  }
  Play(scene);
}

INSTANTIATE_TEST_SUITE_P(Model, HostTalk, testing::ValuesIn(ScenesOf(GANTRY_MODEL_TALKS)),
                         SceneName);

}  // namespace gantry::test
