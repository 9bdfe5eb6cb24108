#pragma once

#include <string>

#include "host/field_totals.h"
#include "host/output_file.h"
#include "host/run_record.h"

namespace gantry::fieldrun {

/// The tables wells.csv, inflow.csv and field.csv in a folder that exists, in the units of the
/// case. They take their names when the run has ended. docs/fieldrun.md tells the columns.
class ResultTables : public RunListener {
 public:
  ResultTables(const std::string& folder, UnitSystem units);

  void Started(const RunStart& start) override;
  void StepDone(const StepRecord& record) override;
  void Ended(const RunEnd& end) override;

 private:
  std::string Number(double value, Quantity quantity) const;
  std::string Heading(std::string_view name, Quantity quantity) const;
  std::string RateFields(const Rates& rates) const;
  std::string PointFields(const InflowPoint& point) const;
  void WriteWells(const StepRecord& record, const std::string& stepFields);
  void WriteInflow(const StepRecord& record, const std::string& stepFields);
  void WriteField(const StepRecord& record, const std::string& stepFields);

  UnitSystem units_;
  std::vector<RunWell> wells_;
  FieldCumulatives cumulatives_;
  OutputFile wellsFile_;
  OutputFile inflowFile_;
  OutputFile fieldFile_;
};

/// "producer", "water injector", "gas injector".
std::string_view KindName(WellKind kind);

}  // namespace gantry::fieldrun
