#include "settings/link_settings.h"

#include <algorithm>

#include "boundary/parallel_range.h"
#include "settings/machine_config.h"
#include "settings/registry_values.h"

namespace gantry {

namespace {

/// The last used values, in the order of reading and writing.
constexpr RegistryValue<LinkSettings> kRegistryValues[] = {
    {"Module", &LinkSettings::SimExeName},
    {"Dataset", &LinkSettings::FileName},
    {"Parallel", &LinkSettings::Parallel},
    {"HeadNode", &LinkSettings::HeadNode},
    {"HeadNodePort", &LinkSettings::HeadNodePort},
    {"LinuxIXVersion", &LinkSettings::LinuxIXVersion},
};

}  // namespace

bool LinkSettings::Handle(TagParser& parser, TagContext /*context*/) {
  if (!parser.MatchWord("CaseDetails")) return false;
  if (parser.IntProperty(ConnectionMode, "ConnectionMode") ||
      parser.IntProperty(IPRModel, "IPRModel") || parser.IntProperty(UpTimeMode, "UpTimeMode") ||
      parser.StringProperty(HeadNode, "HeadNode") ||
      parser.IntProperty(HeadNodePort, "HeadNodePort") ||
      parser.IntProperty(LinuxIXVersion, "LinuxIXVersion") ||
      parser.StringProperty(SimExeName, "SimExeName") ||
      parser.StringProperty(FileName, "FileName") ||
      parser.BoolProperty(CloseUnconnectedWells, "CloseUnconnectedWells") ||
      parser.BoolProperty(StdLogging, "StdLogging")) {
    return true;
  }
  if (!parser.IntProperty(Parallel, "Parallel")) return false;
  ClampParallel();
  return true;
}

void LinkSettings::ClampParallel() {
  Parallel = std::clamp(Parallel, kLeastParallel, kMostParallel);
}

const std::string& LinkSettings::GetName() const {
  static const std::string none;
  return none;
}

std::string LinkSettings::GetCaseDirectory() const {
  size_t last = FileName.rfind('/');
  if (last == std::string::npos) last = FileName.rfind('\\');
  if (last == std::string::npos || last == 0) return {};
  return FileName.substr(0, last + 1);
}

std::string LinkSettings::GetCaseBaseName() const {
  std::string name = FileName.substr(GetCaseDirectory().size());
  const size_t extension = name.rfind('.');
  if (extension == std::string::npos || extension == 0) return name;
  return name.substr(0, extension);
}

std::string LinkSettings::GetBackupFileName() const { return FileName + ".backup"; }

std::string LinkSettings::GetScriptFileName() const {
  return GetCaseDirectory() + GetCaseBaseName() + "_py.py";
}

void LinkSettings::LoadFromRegistry() {
  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  if (key != nullptr) ReadValues(*key, kRegistryValues, *this);
}

void LinkSettings::SaveToRegistry() const {
  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  if (key != nullptr) WriteValues(*key, kRegistryValues, *this);
}

}  // namespace gantry
