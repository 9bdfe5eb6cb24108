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

/// From the values of the summary vectors, in flow's unit system.
double FlowItemValue(size_t handle, const std::vector<double>& vectors);

}  // namespace gantry::flowlink
