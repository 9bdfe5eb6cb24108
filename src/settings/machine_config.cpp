#include "settings/machine_config.h"

#include <utility>

#include "client/unit_converter.h"
#include "platform/files.h"
#include "settings/registry_values.h"
#include "text/number_text.h"
#include "text/pieces.h"

namespace gantry {

using platform::RegistryKey;

const char* const kRegistryKey = R"(Software\Orvale\Tessel\ExtensionDlls100_64\Intersect)";

namespace {

constexpr RegistryValue<LaunchSettings> kRegistryValues[] = {
    {"SimExecutable", &LaunchSettings::SimExecutable},
    {"MPIExecutable", &LaunchSettings::MPIExecutable},
    {"CmdLine", &LaunchSettings::CmdLine},
    {"StartPort", &LaunchSettings::StartPort},
    {"EndPort", &LaunchSettings::EndPort},
};

void ClearUnlessReadable(std::string& path) {
  if (!platform::CanOpenForReading(path)) path.clear();
}

/// One record of the list; none when it has too few fields. docs/registry-file.md shows the form.
std::unique_ptr<CIXUserProperty> ParseUserProperty(const std::string& record) {
  const std::vector<std::string> fields = SplitAt(record, "|");
  if (fields.size() < 3) return nullptr;
  auto property = std::make_unique<CIXUserProperty>();
  property->Property = fields[0];
  property->DisplayName = fields[1];
  property->UnitFamily = ReadInteger(fields[2]);
  property->UnitCode = UnitFamilyUserCode(property->UnitFamily);
  property->IsScalar = fields.size() == 4 ? ReadInteger(fields[3]) : 1;
  return property;
}

std::string FormatUserProperty(const CIXUserProperty& property) {
  return property.Property + "|" + property.DisplayName + "|" +
         std::to_string(property.UnitFamily) + "|" + std::to_string(property.IsScalar) + "~";
}

}  // namespace

CIXConfig::CIXConfig() : CIXConfig(platform::kCurrentUser, kRegistryKey) {}

CIXConfig::CIXConfig(uintptr_t root, const std::string& keyPath) { Load(root, keyPath); }

CIXConfig::~CIXConfig() { Save(); }

LaunchSettings CIXConfig::ForLaunch() const {
  const platform::SingleLock lock(section_);
  return *this;
}

void CIXConfig::SetForLaunch(LaunchSettings settings) {
  const platform::SingleLock lock(section_);
  LaunchSettings::operator=(std::move(settings));
  isUnread_ = false;
}

void CIXConfig::Load(uintptr_t root, const std::string& keyPath) {
  const platform::SingleLock lock(section_);
  StartPort = LaunchSettings().StartPort;
  EndPort = LaunchSettings().EndPort;
  LaunchSettings& settings = *this;
  if (const auto key = RegistryKey::Create(root, keyPath)) {
    ReadValues(*key, kRegistryValues, settings);
  } else {
    isUnread_ = isUnread_ || root == platform::kCurrentUser;
  }
  ClearUnlessReadable(SimExecutable);
  ClearUnlessReadable(MPIExecutable);

  // The properties are the user's own wherever the rest comes from.
  std::string list;
  if (const auto key = RegistryKey::Create(platform::kCurrentUser, keyPath)) {
    list = key->ReadText("UserProperties").value_or("");
  } else {
    isUnread_ = true;
  }
  for (const std::string& record : SplitAt(list, "~")) {
    if (auto property = ParseUserProperty(record)) UserProperties.push_back(std::move(property));
  }
}

void CIXConfig::Save() const {
  if (isUnread_) return;
  const auto key = RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  if (key == nullptr) return;
  std::string list;
  for (const auto& property : UserProperties) list += FormatUserProperty(*property);
  const LaunchSettings& settings = *this;
  WriteValues(*key, kRegistryValues, settings);
  key->WriteText("UserProperties", list);
}

}  // namespace gantry
