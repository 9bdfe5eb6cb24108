#pragma once

#include <optional>
#include <string>

#include "fieldrun/results/growing_table.h"
#include "fieldrun/run/field_totals.h"
#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// The tables wells.csv, inflow.csv, events.csv, field.csv and profile.csv in a folder that exists,
/// in the units of the case. They begin with the run, or go on behind the steps that are done, and
/// grow with each step; field.csv has a step's row when the wells, their inflow and events have
/// theirs. Every row ends with the run's id. docs/fieldrun.md tells the columns.
class ResultTables : public RunListener {
 public:
  ResultTables(const std::string& folder, UnitSystem units);

  void Started(const RunStart& start) override;
  void StepDone(const StepRecord& record) override;
  void Timed(std::optional<size_t> step, const StepTimes& times) override;

 private:
  std::string Number(double value, Quantity quantity) const;
  std::string Heading(std::string_view name, Quantity quantity) const;
  std::string PhaseFields(const Rates& values, Quantity liquid, Quantity gas) const;
  std::string PointFields(const InflowPoint& point) const;
  std::string GroupFields(const std::vector<GroupLimitReport>& groups) const;
  void OpenTables(size_t doneSteps);
  void WriteHeadings();
  std::string WellRows(const StepRecord& record, const std::string& stepFields) const;
  std::string InflowRows(const StepRecord& record, const std::string& stepFields) const;
  std::string EventRows(const StepRecord& record) const;
  std::string FieldRow(const StepRecord& record, const std::string& stepFields) const;

  std::string folder_;
  UnitSystem units_;
  std::string run_;
  std::vector<RunWell> wells_;
  std::optional<GrowingTable> wellsFile_;
  std::optional<GrowingTable> inflowFile_;
  std::optional<GrowingTable> eventsFile_;
  std::optional<GrowingTable> fieldFile_;
  std::optional<GrowingTable> profileFile_;
};

}  // namespace gantry::fieldrun
