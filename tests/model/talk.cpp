#include "model/talk.h"

#include <cstring>
#include <map>

#include "platform/dynamic_library.h"
#include "platform/files.h"

namespace gantry::test {

namespace {

InflowProbe& TheProbe() {
  static const auto library = platform::DynamicLibrary::Open(INFLOW_PROBE);
  return *reinterpret_cast<InflowProbe* (*)()>(library->Symbol("TheInflowProbe"))();
}

/// Commands of no record or with a text, and the number behind each.
const std::map<std::string, std::pair<uint32_t, uint32_t>> kCommands = {
    {"start", {EXT_START_SIMULATOR, 0}},
    {"close", {EXT_CLOSE_SIMULATOR, 0}},
    {"read", {EXT_SET_TIMESTEP_DATA, 0}},
    {"apply", {EXT_APPLY_OPERATING_POINTS, 0}},
    {"do", {EXT_DO_COMMAND, 0}},
    {"dataset-folder", {EXT_SET_DATA_FOLDER, 0}},
    {"store-file", {EXT_SET_STORE_FILE, 0}},
    {"load-store-file", {EXT_SET_STORE_FILE, 1}}};

}  // namespace

HostTalk::HostTalk() : probe(TheProbe()) {
  probe.calls.clear();  // of models before
  std::filesystem::create_directory(Case());
  folder.Write("case/hold", "");
  app.Config.SimExecutable = "/IX/2017.2/ix";
  app.Config.StartPort = app.Config.EndPort = peer.Port();
  std::memset(inflow.get(), 0x7e, sizeof *inflow);
  ExtCreateInstance(&model, &err);
}

HostTalk::~HostTalk() {
  probe = {};
  ExtDestroyInstance(model, &err);
  std::filesystem::remove(Case() / "hold");  // lets the simulator's process end
}

void HostTalk::Do(const std::string& verb, const std::string& rest) {
  Words words(rest);
  if (kFieldVerbs.contains(verb)) {
    return peer.Change([&] { kFieldVerbs.at(verb)(*this, words); });
  }
  if (kVerbs.contains(verb)) return kVerbs.at(verb)(*this, words);
  const auto [number, value] = kCommands.at(verb);
  Hear(Command(number, rest.empty() ? nullptr : std::string(rest).data(), value));
}

std::string HostTalk::Filled(std::string text) const {
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

int32_t HostTalk::StartRun(double hostDate, std::vector<int32_t> connected) {
  RunStartRecord run = {};
  run.connectedWells = connected.data();
  run.connectedCount = static_cast<int32_t>(connected.size());
  run.startDate = hostDate;
  run.logCallback = [](const char* text, void*) { Told().push_back(text); };
  run.statusCallback = run.logCallback;
  Told().clear();
  return Command(EXT_START_RUN, &run);
}

Texts& HostTalk::Told() {
  static Texts texts;
  return texts;
}

void HostTalk::TellFluid() {
  auto fluid = std::make_unique<FluidModelRecord>();
  std::memset(fluid.get(), 0x55, sizeof *fluid);
  if (Command(EXT_GET_FLUID_MODEL, fluid.get()) != 0) return Tell("none");
  const auto& bic = fluid->binaryInteraction;
  Tell(Line(fluid->componentCount, "components, mask", fluid->mask, "equation",
            fluid->equationOfState, std::string(fluid->names[2], 17)));
  Tell(Line("weights", fluid->molecularWeight[3], fluid->molecularWeight[4], "interaction",
            bic[1][0], bic[2][0], bic[2][1], bic[3][0], bic[3][1], bic[0][1], bic[1][1]));
  EXPECT_EQ(Line(fluid->reserved0, fluid->reserved2[99]), "1431655765 U")
      << "the host's own bytes stay";
}

void HostTalk::TellPart(const std::string& part) {
  const _tGetSetData& r = *inflow;
  const auto point = [&r](size_t i) {
    return Line(r.oilRate[i], r.waterRate[i], r.gasRate[i], r.pressure[i]);
  };
  const std::map<std::string, std::string> parts = {
      {"points", Line(r.pointCount, int{r.isShut}, r.hasStepped)},
      {"first", point(0)},
      {"last", point(9)},
      {"values", Line(r.pointValue[0], r.pointValue[9], r.passThrough[2])},
      {"mass", Line(r.massRate[0])},
      {"gravities", Line(r.oilGravity, r.gasGravity, r.waterGravity)},
      {"now", Line(r.currentOilRate, r.currentWaterRate, r.currentGasRate, r.currentPressure)},
      {"fractions",
       Line(std::string(r.fluid.names[3], 2), r.moleFractions[9][3], r.moleFractions[9][4])},
      {"untouched", Line(r.size, r.fluid.reserved0)}};
  Tell(parts.at(part));
}

}  // namespace gantry::test
