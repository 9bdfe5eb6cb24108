// gantry._native: fieldrun's driver layer for Python. Values pass in the units of the case, which
// are turned into the boundary's own here and nowhere else.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>

#include <pybind11/functional.h>
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "fieldrun/case/case_reader.h"
#include "fieldrun/driver/module_api.h"
#include "fieldrun/driver/simulator_warnings.h"
#include "fieldrun/results/run_results.h"
#include "fieldrun/run/coupled_run.h"
#include "fieldrun/run/simulator_end.h"
#include "fieldrun/run/simulator_start.h"
#include "platform/file_path.h"

namespace py = pybind11;

namespace gantry::fieldrun {
namespace {

using Numbers = py::array_t<double>;
using enum Quantity;

/// A case as Python holds it: read, checked, and the units in which its numbers are told.
class PythonCase {
 public:
  PythonCase(const std::string& file, const std::optional<std::string>& output) {
    model_ = ReadCase(file);
    if (output) {
      model_.general.output =
          platform::NameOf(std::filesystem::absolute(platform::PathOf(*output)));
    }
  }

  const CaseModel& Model() const { return model_; }
  UnitSystem Units() const { return model_.Units(); }
  double Told(double value, Quantity quantity) const { return FromField(value, quantity, Units()); }
  double Taken(double value, Quantity quantity) const { return ToField(value, quantity, Units()); }
  std::string UnitOf(Quantity quantity) const { return std::string(UnitName(quantity, Units())); }

 private:
  CaseModel model_;
};

/// One well's inflow of one step: the table as the module gave it, and the path through it.
class PythonInflow {
 public:
  PythonInflow(const PythonCase& owner, const std::vector<InflowPoint>& points, bool isProducer)
      : case_(&owner), points_(points), curve_(points, isProducer) {}

  Numbers Column(double (*value)(const InflowPoint&), Quantity quantity) const {
    Numbers column(static_cast<py::ssize_t>(points_.size()));
    for (size_t i = 0; i < points_.size(); ++i) {
      column.mutable_at(i) = case_->Told(value(points_[i]), quantity);
    }
    return column;
  }
  bool IsDead() const { return curve_.IsDead(); }

  /// The point at the largest opening that keeps within all limits; none when nothing flows.
  std::optional<InflowPoint> PointWithin(const std::map<std::string, double>& limits,
                                         std::optional<double> pressure) const {
    if (curve_.IsDead()) return {};
    double opening = curve_.FullOpening();
    for (const auto& [phase, limit] : limits) {
      const auto quantity = [&phase = phase](const InflowPoint& point) {
        return RateOf(point, phase);
      };
      const double most = case_->Taken(limit, phase == "gas" ? kGasRate : kLiquidRate);
      opening = std::min(opening, curve_.LargestOpening(quantity, most));
    }
    if (pressure) {
      // Along the path a producer's pressure falls and an injector's rises.
      const auto& path = curve_.Points();
      const double sign = path.front().pressure > path.back().pressure ? -1 : 1;
      const auto along = [sign](const InflowPoint& point) { return sign * point.pressure; };
      opening = std::min(
          opening, curve_.LargestOpening(along, sign * case_->Taken(*pressure, kGaugePressure)));
    }
    return curve_.At(opening);
  }

 private:
  static double RateOf(const InflowPoint& point, const std::string& phase) {
    if (phase == "oil") return point.rates.oil;
    if (phase == "water") return point.rates.water;
    if (phase == "gas") return point.rates.gas;
    return point.rates.Liquid();
  }

  const PythonCase* case_;
  std::vector<InflowPoint> points_;
  InflowCurve curve_;
};

/// Pressure and rates of a point as Python has them.
py::dict Told(const PythonCase& owner, double pressure, const Rates& rates) {
  py::dict told;
  told["bottom_hole_pressure"] = owner.Told(pressure, kGaugePressure);
  told["oil"] = owner.Told(rates.oil, kLiquidRate);
  told["water"] = owner.Told(rates.water, kLiquidRate);
  told["gas"] = owner.Told(rates.gas, kGasRate);
  return told;
}

py::dict Told(const PythonCase& owner, const OperatingPoint& point) {
  // A well that is shut has no pressure that anyone has decided.
  py::dict told = Told(owner, point.isOpen ? point.pressure : std::nan(""), point.rates);
  told["is_open"] = point.isOpen;
  told["limited_by"] = point.limitedBy;
  return told;
}

/// A run from its start to its end, a step at a time. Of one thread; Python's lock is free while
/// the simulator works.
class PythonRun : public RunListener {
 public:
  PythonRun(std::shared_ptr<PythonCase> owner, const std::string& module,
            const std::string& simulator, size_t mostSteps)
      : case_(std::move(owner)),
        api_(ModuleApi::Load(module)),
        model_(*api_),
        results_(std::in_place, Model()),
        ofSimulator_(platform::PathOf(Model().general.output)),
        run_(Model(), model_, *this) {
    const py::gil_scoped_release others;
    const std::string label = Model().simulator.label;
    model_.SetLabel(label.empty() ? Model().general.title : label);
    model_.SetStoreFile(Model().simulator.storeFile, true);
    ApplySettings(model_, Model(), simulator);
    ShareWithSimulator(Model());
    const DriverIdentity identity = Identify(*api_, nullptr);
    run_.Start(identity.name + ", " + identity.description, mostSteps);
  }

  /// False when the run is over.
  bool Next() {
    const py::gil_scoped_release others;
    TakeDownWarnings();
    step_ = run_.Next();
    return step_.has_value();
  }
  void Carry() {
    const py::gil_scoped_release others;
    run_.Carry(std::move(*step_));
    step_.reset();
  }
  void End(const std::string& failure) {
    const py::gil_scoped_release others;
    RunEnd end = run_.End(failure);
    TakeDownWarnings();
    WriteReport(Model(), history_);
    results_.reset();
    if (failure.empty() && !end.failure.empty()) throw DriverFailure(end.failure);
    if (failure.empty() && !Model().simulator.IsOnCluster()) {
      simulatorEnd_.Await([] { return false; });
    }
  }

  const StepRecord& Step() const {
    if (!step_) throw std::logic_error("the step is over");
    return *step_;
  }
  PythonInflow Inflow(size_t well) const {
    return {*case_, Step().wells.at(well).inflow, KindOf(well) == WellKind::kProducer};
  }
  py::dict Decided(size_t well) const { return Told(*case_, Step().wells.at(well).point); }
  /// What the simulator told at the end of the step before; none before the first.
  py::object Reported(size_t well) const {
    if (!lastStep_ || !lastStep_->wells.at(well).reported) return py::none();
    const InflowPoint& point = *lastStep_->wells[well].reported;
    return Told(*case_, point.pressure, point.rates);
  }

  void Shut(size_t well, const std::string& reason) {
    Step();
    step_->wells.at(well).point = {.isOpen = false, .limitedBy = reason};
  }
  void SetPoint(size_t well, const InflowPoint& point, const std::string& reason) {
    Step();
    step_->wells.at(well).point = {true, point.pressure, point.rates, reason};
  }

  std::vector<std::string> Wells() const {
    std::vector<std::string> names;
    for (const RunWell& well : run_.Facts().wells) names.push_back(well.spec->name);
    return names;
  }
  WellKind KindOf(size_t well) const { return run_.Facts().wells.at(well).spec->Kind(); }
  const RunStart& Facts() const { return run_.Facts(); }
  const PythonCase& Owner() const { return *case_; }
  DriverModel& Driver() { return model_; }
  const std::vector<RunWarning>& Warnings() const { return history_.warnings; }

  void Started(const RunStart& start) override {
    history_.Started(start);
    results_->Started(start);
  }
  void StepDone(const StepRecord& record) override {
    history_.StepDone(record);
    results_->StepDone(record);
    lastStep_ = record;
  }
  void Ended(const RunEnd& end) override {
    history_.Ended(end);
    results_->Ended(end);
  }
  void Warned(const RunWarning& warning) override {
    history_.Warned(warning);
    if (results_) results_->Warned(warning);
  }

 private:
  const CaseModel& Model() const { return case_->Model(); }
  void TakeDownWarnings() {
    ofSimulator_.TellNew([this](const std::string& text) {
      Warned({"simulator", "", step_ ? step_->date : run_.Facts().start, text});
    });
  }

  std::shared_ptr<PythonCase> case_;
  std::unique_ptr<ModuleApi> api_;
  DriverModel model_;
  std::optional<RunResults> results_;  ///< none when the run is over: the folder is free
  RunHistory history_;
  SimulatorWarnings ofSimulator_;
  SimulatorEnd simulatorEnd_;
  CoupledRun run_;
  std::optional<StepRecord> step_;
  std::optional<StepRecord> lastStep_;
};

py::tuple DateTuple(const Date& date) { return py::make_tuple(date.year, date.month, date.day); }

void BindCase(py::module_& module) {
  py::class_<PythonCase, std::shared_ptr<PythonCase>>(module, "Case")
      .def(py::init<const std::string&, const std::optional<std::string>&>())
      .def_property_readonly("title",
                             [](const PythonCase& self) { return self.Model().general.title; })
      .def_property_readonly("output",
                             [](const PythonCase& self) { return self.Model().general.output; })
      .def_property_readonly("warnings",
                             [](const PythonCase& self) { return self.Model().warnings; })
      .def_property_readonly("units",
                             [](const PythonCase& self) {
                               py::dict units;
                               units["pressure"] = self.UnitOf(kGaugePressure);
                               units["liquid_rate"] = self.UnitOf(kLiquidRate);
                               units["gas_rate"] = self.UnitOf(kGasRate);
                               return units;
                             })
      .def_property_readonly(
          "is_metric", [](const PythonCase& self) { return self.Units() == UnitSystem::kMetric; })
      .def_property_readonly("wells", [](const PythonCase& self) {
        py::dict wells;
        for (const WellSpec& well : self.Model().wells) {
          wells[py::str(well.name)] = std::string(KindName(well.Kind()));
        }
        return wells;
      });
}

void BindInflow(py::module_& module) {
  const auto column = [](double (*value)(const InflowPoint&), Quantity quantity) {
    return [=](const PythonInflow& self) { return self.Column(value, quantity); };
  };
  py::class_<PythonInflow>(module, "Inflow")
      .def_property_readonly(
          "pressure",
          column([](const InflowPoint& point) { return point.pressure; }, kGaugePressure))
      .def_property_readonly(
          "oil", column([](const InflowPoint& point) { return point.rates.oil; }, kLiquidRate))
      .def_property_readonly(
          "water", column([](const InflowPoint& point) { return point.rates.water; }, kLiquidRate))
      .def_property_readonly(
          "gas", column([](const InflowPoint& point) { return point.rates.gas; }, kGasRate))
      .def_property_readonly("is_dead", &PythonInflow::IsDead);
}

void SetPoint(PythonRun& run, size_t well, const std::map<std::string, double>& limits,
              std::optional<double> pressure, const std::string& reason) {
  const std::optional<InflowPoint> point = run.Inflow(well).PointWithin(limits, pressure);
  if (!point || point->rates.Size() <= 0) return run.Shut(well, "no inflow");
  run.SetPoint(well, *point, reason);
}

void SetExactly(PythonRun& run, size_t well, double pressure, double oil, double water, double gas,
                const std::string& reason) {
  const PythonCase& owner = run.Owner();
  run.SetPoint(well,
               {owner.Taken(pressure, kGaugePressure),
                {owner.Taken(oil, kLiquidRate), owner.Taken(water, kLiquidRate),
                 owner.Taken(gas, kGasRate)}},
               reason);
}

/// The module would pass over what concerns a connected well, with a word to its log alone.
void WritePublished(PythonRun& run, int handle, const std::string& value) {
  const std::vector<std::string> connected = run.Wells();
  for (const PublishedVariable& variable : run.Driver().PublishedVariables()) {
    if (variable.handle != handle) continue;
    if (std::ranges::find(connected, variable.wellName) == connected.end()) continue;
    throw DriverFailure("Could not write " + variable.fullName + ": well " + variable.wellName +
                        " is connected, and stands where the step decides");
  }
  run.Driver().WritePublished(handle, value);
}

void BindRun(py::module_& module) {
  py::class_<PythonRun>(module, "Run")
      .def(py::init<std::shared_ptr<PythonCase>, const std::string&, const std::string&, size_t>())
      .def("next", &PythonRun::Next)
      .def("carry", &PythonRun::Carry)
      .def("end", &PythonRun::End)
      .def("inflow", &PythonRun::Inflow, py::keep_alive<0, 1>())
      .def("decided", &PythonRun::Decided)
      .def("reported", &PythonRun::Reported)
      .def("shut", &PythonRun::Shut)
      .def("set_point", &SetPoint)
      .def("set_exactly", &SetExactly)
      .def_property_readonly("wells", &PythonRun::Wells)
      .def_property_readonly("step", [](const PythonRun& self) { return self.Step().step + 1; })
      .def_property_readonly("date",
                             [](const PythonRun& self) { return DateTuple(self.Step().date); })
      .def_property_readonly("days", [](const PythonRun& self) { return self.Step().days; })
      .def_property_readonly("length", [](const PythonRun& self) { return self.Step().length; })
      .def_property_readonly("step_count",
                             [](const PythonRun& self) { return self.Facts().stepCount; })
      .def_property_readonly("simulator",
                             [](const PythonRun& self) { return self.Facts().simulator; })
      .def_property_readonly("warnings",
                             [](const PythonRun& self) {
                               std::vector<std::string> texts;
                               for (const RunWarning& warning : self.Warnings()) {
                                 texts.push_back(ToText(warning));
                               }
                               return texts;
                             })
      .def(
          "get", [](PythonRun& self, const std::string& path) { return self.Driver().Get(path); },
          py::call_guard<py::gil_scoped_release>())
      .def(
          "set",
          [](PythonRun& self, const std::string& path, const std::string& value) {
            self.Driver().Set(path, value);
          },
          py::call_guard<py::gil_scoped_release>())
      .def(
          "do", [](PythonRun& self, const std::string& command) { self.Driver().Do(command); },
          py::call_guard<py::gil_scoped_release>())
      .def("published",
           [](PythonRun& self) {
             py::dict variables;
             for (const PublishedVariable& variable : self.Driver().PublishedVariables()) {
               variables[py::str(variable.fullName)] = variable.handle;
             }
             return variables;
           })
      .def(
          "read_published",
          [](PythonRun& self, int handle) { return self.Driver().ReadPublished(handle); },
          py::call_guard<py::gil_scoped_release>())
      .def("write_published", &WritePublished, py::call_guard<py::gil_scoped_release>());
}

PYBIND11_MODULE(_native, module) {
  py::register_exception<CaseError>(module, "CaseError", PyExc_ValueError);
  py::register_exception<DriverFailure>(module, "DriverError", PyExc_RuntimeError);
  BindCase(module);
  BindInflow(module);
  BindRun(module);
}

}  // namespace
}  // namespace gantry::fieldrun
