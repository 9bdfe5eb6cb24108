// The inflow library at work on a real simulator, through the model's own callbacks.

#include <cstring>

#include <gtest/gtest.h>

#include "gantry/inflow.h"
#include "integration/real_run.h"
#include "model/ext_model.h"
#include "model/inflow_callbacks.h"
#include "open_file.h"
#include "settings/gantry_app.h"

namespace gantry::test {
namespace {

/// The ratios that the library stores, by well.
std::map<std::string, double> StoredRatios(void* handle, const std::filesystem::path& path) {
  constexpr size_t kHeadSize = 16;
  const int32_t saved = SaveIPR(handle, OpenFile(path).Handle());
  std::map<std::string, double> ratios;
  const std::string block = TestFolder::Read(path);
  if (saved != 0 || block.size() < kHeadSize + 4) return ratios;
  const char* at = block.data() + kHeadSize;
  const auto take = [&at]<class T>(T value) {
    std::memcpy(&value, at, sizeof value);
    at += sizeof value;
    return value;
  };
  for (auto count = take(uint32_t{0}); count > 0; --count) {
    const auto length = take(uint32_t{0});
    const std::string name(at, length);
    at += length;
    ratios[name] = take(0.0);
  }
  return ratios;
}

class LibraryOnASimulator : public ::testing::Test {
 protected:
  LibraryOnASimulator() {
    const InflowCallbacks& calls = kInflowCallbacks;
    SetIPRCallbacks(handle_, calls.elapsedDays, calls.restart, calls.imposeRate, calls.advance,
                    calls.readInflow, calls.readCurrent);
  }
  ~LibraryOnASimulator() override { DestroyIPRModel(handle_); }

  void Start() {
    model_.Settings().FileName = run_.Deck("five_spot/FIVE_SPOT.afi", 1000.0).string();
    ExtErrorBlock error{};
    ASSERT_EQ(model_.StartSimulator(nullptr, &error), 0) << error.text;
    StartIPRAddWell(handle_);
    for (size_t i = 0; i < model_.Sources().Items.size(); ++i) {
      const Source& source = model_.Sources().Items[i];
      AddIPRWell(handle_, static_cast<int32_t>(i), source.Name.c_str(),
                 source.SourceType == kProducer, source.SourceType != kGasInjector);
    }
    EndIPRAddWell(handle_);
  }

  RealRun run_;
  CGantryApp app_;
  CExtModel model_{[](void*) -> ModelDialogs* { return nullptr; }};
  void* handle_ = CreateIPRModel(&model_);
};

TEST_F(LibraryOnASimulator, FindsThatATankIsItsOwnDrainageRegion) {
  Start();
  ASSERT_EQ(SetupIPR(nullptr, handle_), 0);
  EXPECT_TRUE(model_.IsRunning());
  EXPECT_NEAR(model_.ElapsedDays(), 60.1, 1e-9);
  const auto ratios = StoredRatios(handle_, run_.Folder() / "state");
  ASSERT_EQ(ratios.size(), 5u);
  for (const auto& [well, ratio] : ratios) EXPECT_NEAR(ratio, 1.0, 0.1) << well;
}

}  // namespace
}  // namespace gantry::test
