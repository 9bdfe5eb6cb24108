// What fieldrun's own network takes of a run: a generated field, run by the module and tanksim. The
// network of each step is solved once more by its lift tables and once by marching every tubing, so
// that the tables meet their baseline in the same run.

#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>

#include <fmt/ostream.h>
#include <unistd.h>

#include "fieldrun/case/case_reader.h"
#include "fieldrun/run/coupled_run.h"
#include "fieldrun/run/simulator_start.h"

namespace gantry::bench {
namespace {

using namespace fieldrun;
namespace fs = std::filesystem;

constexpr int kSteps = 120;
constexpr int kWellsOfPattern = 5;

/// Processor time of this process: the simulator's comes on top of it.
double SecondsSince(std::clock_t start) {
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

constexpr const char* kFluid = R"(title = "Generated patterns"
units = "metric"
start_date = 2020-01-01
end_time = 4000
[fluid]
oil_density = 850.0
gas_density = 0.9
oil = [[1.01325, 0.5, 1.02, 3.2], [100.0, 45.0, 1.15, 1.7], [250.0, 130.0, 1.40, 0.95]]
gas = [[1.01325, 1.18, 0.011], [100.0, 0.0102, 0.0145], [300.0, 0.0037, 0.0245]]
[fluid.water]
reference_pressure = 250.0
formation_factor = 1.02
compressibility = 4.5e-5
viscosity = 0.4
density = 1025.0
[rock_fluid]
water_oil = [[0.20, 0.0, 0.9], [0.50, 0.095, 0.21], [0.75, 0.305, 0.0], [1.0, 1.0, 0.0]]
gas_oil = [[0.0, 0.0, 0.9], [0.10, 0.01, 0.52], [0.40, 0.28, 0.03], [0.80, 0.85, 0.0]]
)";

constexpr const char* kCase = R"([case]
units = "metric"
[simulator]
deck = "FIELD.afi"
[time]
start = 2020-01-01
end = 2030-01-01
step = "month"
[network]
manifold_pressure = 12
[[tubing]]
name = "0"
depth = 2400
length = 2650
diameter = 62
[[tubing]]
name = "1"
depth = 2400
diameter = 89
)";

void WritePattern(int number, std::ofstream& deck, std::ofstream& model) {
  fmt::print(deck,
             "[[tank]]\nname = \"T{0}\"\npressure = {1}\ntemperature = 85.0\npore_volume = {2}\n"
             "rock_compressibility = 5.0e-5\nwater_saturation = {3}\ndissolved_gas = {4}\n"
             "displacement = \"front\"\nwater_sweep = 0.55\n",
             number, 200 + number % 50, 3000000 + 10000 * number, 0.2 + 0.1 * (number % 10) / 10,
             60 + number % 40);
  for (int well = 0; well + 1 < kWellsOfPattern; ++well) {
    fmt::print(deck,
               "[[well]]\nname = \"P{0}_{1}\"\ntank = \"T{0}\"\ntype = \"producer\"\n"
               "productivity_index = {2}\nminimum_bottom_hole_pressure = 80.0\ndepth = 2400.0\n",
               number, well, 3 + well + number % 10 / 10.0);
    fmt::print(model, "[[well]]\nname = \"P{}_{}\"\nkind = \"producer\"\ntubing = \"{}\"\n", number,
               well, well % 2);
  }
  fmt::print(deck,
             "[[well]]\nname = \"I{0}\"\ntank = \"T{0}\"\ntype = \"water_injector\"\n"
             "injectivity_index = 20.0\nmaximum_bottom_hole_pressure = 370.0\ndepth = 2400.0\n",
             number);
  fmt::print(model, "[[well]]\nname = \"I{}\"\nkind = \"water_injector\"\nwater_rate = 900\n",
             number);
}

std::string WriteField(const fs::path& folder, int wells) {
  std::ofstream deck(folder / "FIELD.afi");
  std::ofstream model(folder / "case.toml");
  deck << kFluid;
  model << kCase;
  for (int i = 0; i < wells / kWellsOfPattern; ++i) WritePattern(i, deck, model);
  return (folder / "case.toml").string();
}

/// Solves the network of each step again, by tables and by marches.
class SolveAgain : public RunListener {
 public:
  explicit SolveAgain(const CaseModel& model) : model_(model) {}

  void Started(const RunStart& start) override { wells_ = start.wells; }
  void StepDone(const StepRecord& record) override {
    const std::clock_t start = std::clock();
    const std::vector<OperatingPoint> fast = Solve(record, true, byTables);
    const std::vector<OperatingPoint> exact = Solve(record, false, byMarches);
    for (size_t i = 0; i < fast.size(); ++i) {
      worst = std::max(worst, std::abs(fast[i].pressure - exact[i].pressure));
    }
    spent += SecondsSince(start);
  }
  void Ended(const RunEnd& end) override { std::fputs(end.failure.c_str(), stderr); }

  double byTables = 0;   ///< seconds
  double byMarches = 0;  ///< seconds
  double spent = 0;      ///< seconds that are not the run's
  double worst = 0;      ///< between the two, psi at the bottom of a well

 private:
  std::vector<OperatingPoint> Solve(const StepRecord& record, bool useTables, double& seconds) {
    const std::clock_t start = std::clock();
    std::vector<NetworkWell> wells;
    for (size_t i = 0; i < wells_.size(); ++i) {
      const WellSpec& spec = *wells_[i].spec;
      const bool isProducer = spec.Kind() == WellKind::kProducer;
      NetworkWell& well = wells.emplace_back(spec, InflowCurve(record.wells[i].inflow, isProducer));
      well.tubing = model_.TubingOf(spec);
      well.manifoldPressure = spec.manifoldPressure.value_or(*model_.network.manifoldPressure);
      well.gravities = record.wells[i].gravities;
    }
    if (useTables) tables_.Assign(wells);
    SolveNetwork(wells, model_.groups);
    seconds += SecondsSince(start);
    std::vector<OperatingPoint> points;
    for (const NetworkWell& well : wells) points.push_back(well.Point());
    return points;
  }

  const CaseModel& model_;
  LiftTables tables_;
  std::vector<RunWell> wells_;
};

void Measure(const fs::path& folder, int wells) {
  const CaseModel caseModel = ReadCase(WriteField(folder, wells));
  const std::unique_ptr<ModuleApi> api = ModuleApi::Load(GANTRY_MODULE);
  DriverModel model(*api, nullptr);
  ApplySettings(model, caseModel, GANTRY_TANKSIM);
  SolveAgain listener(caseModel);
  CoupledRun run(caseModel, model, listener);
  run.Start("bench", kSteps);
  const std::clock_t start = std::clock();
  run.Run();
  const double seconds = SecondsSince(start) - listener.spent;
  std::printf("%6d %9.2f %12.2f %9.1f %% %12.2f %8.1f %12.2f\n", wells, seconds, listener.byTables,
              100 * listener.byTables / seconds, listener.byMarches,
              listener.byMarches / listener.byTables, listener.worst);
}

}  // namespace
}  // namespace gantry::bench

int main() {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("network_bench-" + std::to_string(::getpid()));
  std::filesystem::create_directory(folder);
  std::printf("%d steps of a generated field, seconds of the host's processor\n",
              gantry::bench::kSteps);
  std::printf("%6s %9s %12s %11s %12s %8s %12s\n", "wells", "the run", "its network", "share",
              "by marches", "ratio", "worst, psi");
  for (const int wells : {100, 1000}) gantry::bench::Measure(folder, wells);
  std::filesystem::remove_all(folder);
}
