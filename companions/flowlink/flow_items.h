#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gantry::flowlink {

/// The summary vectors of each well that the items below are made of.
const std::vector<std::string>& SummaryVectors();

/// The handle of a number that flow gives for every well, by the protocol's name.
std::optional<size_t> FindFlowItem(std::string_view item);

/// The greatest difference between two answers for a well, as a share: of rates, of what the well
/// gives there; of pressures, of what they change by on the inflow curve from its `top`, where the
/// well is held by its pressure alone, to its `bottom`, where it hardly flows.
double MissOf(const std::vector<double>& guess, const std::vector<double>& found,
              const std::vector<double>& top, const std::vector<double>& bottom);

/// The totals of one answer, put into another.
void CopyTotals(const std::vector<double>& from, std::vector<double>& to);

/// From the values of the summary vectors, in flow's unit system.
double FlowItemValue(size_t handle, const std::vector<double>& vectors);

/// Whether flow has the well shut, for whatever reason.
bool IsShutInFlow(const std::vector<double>& vectors);

}  // namespace gantry::flowlink
