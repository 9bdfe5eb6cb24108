#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "boundary/records.h"

namespace gantry::platform {
class DynamicLibrary;
}

namespace gantry::fieldrun {

/// The exported functions of a driver module, loaded by a host program. The module stays loaded for
/// the life of the object; a model made through it must be destroyed before.
class ModuleApi {
 public:
  /// Throws runtime_error with the loader's reason, or with the names of what the library lacks.
  static std::unique_ptr<ModuleApi> Load(const std::string& path);
  ~ModuleApi();
  ModuleApi(const ModuleApi&) = delete;
  ModuleApi& operator=(const ModuleApi&) = delete;

  int32_t (*ExtIdentify)(void* identityRecord, ExtErrorBlock* err) = nullptr;
  int32_t (*ExtCreateInstance)(void** outModel, ExtErrorBlock* err) = nullptr;
  int32_t (*ExtDestroyInstance)(void* model, ExtErrorBlock* err) = nullptr;
  int32_t (*ExtCmd)(void* model, void* window, uint32_t command, void* data, uint32_t value,
                    ExtErrorBlock* err) = nullptr;
  int32_t (*ExtConfigure)(void* parentWindow) = nullptr;
  void (*ExtCopyConfigure)(void* rootKey, const char* baseKeyPath) = nullptr;
  void (*ExtHelp)() = nullptr;
  int32_t (*ExtConnectToApp)(void* model, uint32_t first, uint32_t second,
                             ExtErrorBlock* err) = nullptr;
  int32_t (*ExtStartApp)(void* model, uint32_t value, ExtErrorBlock* err) = nullptr;
  int32_t (*ExtStopApp)(void* model) = nullptr;
  int32_t (*ExtEquipXml)(void* model, const char* path, uint32_t flag,
                         const char* const* names) = nullptr;
  int32_t (*ExtCreateUnit)(int32_t index, void* unitRecord) = nullptr;

 private:
  explicit ModuleApi(std::unique_ptr<platform::DynamicLibrary> library);
  template <class Function>
  void Bind(Function*& function, const char* name);

  std::unique_ptr<platform::DynamicLibrary> library_;
  std::string missing_;
};

/// The commands of `ExtCmd` by what they do.
enum Command : uint32_t {
  kEnumSources = 2,
  kEdit = 5,
  kGetFluidModel = 9,
  kSetDataFolder = 10,
  kGetSimulationDate = 11,
  kSaveCaseData = 12,
  kLoadCaseData = 13,
  kEnumDataFiles = 16,
  kSetConnection = 19,
  kSetStoreFile = 20,
  kSetLabel = 21,
  kStartSimulator = 23,
  kStartRun = 48,
  kTimestep = 49,
  kGetIPR = 50,
  kSetOpPt = 53,
  kStopSimulator = 55,
  kCloseSimulator = 56,
  kQueryCanRun = 62,
  kSetTimestepData = 63,
  kGetProperty = 96,
  kSetProperty = 97,
  kDoCommand = 98,
  kApplyOperatingPoints = 101,
  kGetVariableNames = 102,
  kEnumPublishedVariables = 103,
  kEditPublishedVariables = 104,
  kEvalPublishedVariables = 105,
  kDelPublishedVariable = 109,
  kGetDescription = 129,
  kImportComposition = 130,
  kSetDataFile = 136,
};

}  // namespace gantry::fieldrun
