#include "driven_module.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <numeric>
#include <stdexcept>

#include "boundary/error_text.h"

namespace gantry::bench {
namespace {

constexpr int kOperatingRow = 4;
constexpr const char* kCaseName = "wells_%d_components_%d_spins_%d";

void WriteRegistry(const std::filesystem::path& folder, const std::filesystem::path& simulator,
                   uint16_t port) {
  const auto gantry = folder / "gantry";
  std::filesystem::create_directories(gantry);
  std::ofstream(gantry / "registry.reg")
      << "REGEDIT4\r\n\r\n"
         "[HKEY_CURRENT_USER\\Software\\Orvale\\Tessel\\ExtensionDlls100_64\\Intersect]\r\n"
      << "\"SimExecutable\"=\"" << simulator.string() << "\"\r\n"
      << FormatText("\"StartPort\"=dword:%08x\r\n\"EndPort\"=dword:%08x\r\n", port, port);
}

}  // namespace

std::string CaseNameOf(ModelSize size) {
  return FormatText(kCaseName, size.wells, size.components, size.peerSpins);
}

ModelSize SizeOf(const std::string& caseName) {
  ModelSize size;
  if (std::sscanf(caseName.c_str(), kCaseName, &size.wells, &size.components, &size.peerSpins) != 3)
    throw std::runtime_error("no size in the case name " + caseName);
  return size;
}

DrivenModule::DrivenModule(const std::filesystem::path& module, const std::filesystem::path& folder,
                           const std::filesystem::path& simulator, uint16_t port, ModelSize size)
    : wells_(static_cast<size_t>(size.wells)), record_(std::make_unique<_tGetSetData>()) {
  WriteRegistry(folder, simulator, port);
  ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  std::iota(wells_.begin(), wells_.end(), 0);

  api_ = fieldrun::ModuleApi::Load(module.string());
  ExtErrorBlock error{};
  if (api_->ExtCreateInstance(&model_, &error) != 0) throw std::runtime_error(error.text);
  SetDataFileRecord file{};
  CopyBounded(file.path, (folder / (CaseNameOf(size) + ".afi")).string());
  Command(EXT_SET_DATA_FILE, &file);
}

DrivenModule::~DrivenModule() {
  ExtErrorBlock error{};
  api_->ExtDestroyInstance(model_, &error);
}

void DrivenModule::Command(uint32_t number, void* data) {
  ExtErrorBlock error{};
  if (api_->ExtCmd(model_, nullptr, number, data, 0, &error) == 0) return;
  throw std::runtime_error(FormatText("command %u: %s", number, error.text));
}

void DrivenModule::StartSimulator() { Command(EXT_START_SIMULATOR, nullptr); }

void DrivenModule::CloseSimulator() { Command(EXT_CLOSE_SIMULATOR, nullptr); }

void DrivenModule::StartRun() {
  RunStartRecord run{};
  run.connectedWells = wells_.data();
  run.connectedCount = static_cast<int32_t>(wells_.size());
  run.logCallback = run.statusCallback = [](const char*, void*) {};
  Command(EXT_START_RUN, &run);
}

void DrivenModule::Read() { Command(EXT_SET_TIMESTEP_DATA, nullptr); }

void DrivenModule::ExchangeWells() {
  _tGetSetData& record = *record_;
  for (const int32_t well : wells_) {
    record.well = well;
    Command(EXT_GET_IPR, &record);
    record.oilRate[0] = record.oilRate[kOperatingRow];
    record.waterRate[0] = record.waterRate[kOperatingRow];
    record.gasRate[0] = record.gasRate[kOperatingRow];
    record.pressure[0] = record.pressure[kOperatingRow];
    record.isShut = 0;
    Command(EXT_SET_OP_PT, &record);
  }
}

void DrivenModule::Advance() {
  TimestepRecord step{};
  step.stepDays = 1.0;
  Command(EXT_TIMESTEP, &step);
}

}  // namespace gantry::bench
