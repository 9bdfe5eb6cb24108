#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "fieldrun/driver/module_api.h"
#include "model_size.h"

namespace gantry::bench {

/// The module as a host drives it, with this program itself as the simulator that it starts.
class DrivenModule {
 public:
  /// `folder` takes the settings and the case; `simulator` is started with the size in its case's
  /// name and must serve `port`.
  DrivenModule(const std::filesystem::path& module, const std::filesystem::path& folder,
               const std::filesystem::path& simulator, uint16_t port, ModelSize size);
  ~DrivenModule();
  DrivenModule(const DrivenModule&) = delete;
  DrivenModule& operator=(const DrivenModule&) = delete;

  void StartSimulator();
  void StartRun();
  void CloseSimulator();
  /// What the host asks in one step, part by part. All wells are connected and flow at the middle
  /// of their inflow.
  void Read();
  void ExchangeWells();
  void Advance();

 private:
  void Command(uint32_t number, void* data);

  std::unique_ptr<fieldrun::ModuleApi> api_;
  void* model_ = nullptr;
  std::vector<int32_t> wells_;
  std::unique_ptr<_tGetSetData> record_;
};

/// The size that a case's name tells, and back.
std::string CaseNameOf(ModelSize size);
ModelSize SizeOf(const std::string& caseName);

}  // namespace gantry::bench
