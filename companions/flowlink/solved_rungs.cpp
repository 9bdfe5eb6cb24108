#include "flowlink/solved_rungs.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "flowlink/flow_items.h"

namespace gantry::flowlink {

namespace {

constexpr size_t kOfParabola = 3;

size_t MiddleOf(const std::vector<double>& shares) {
  const double half = 0.5 * (shares.front() + shares.back());
  const auto nearer = [&](double one, double other) {
    return std::abs(one - half) < std::abs(other - half);
  };
  const auto inner = std::ranges::min_element(shares.begin() + 1, shares.end() - 1, nearer);
  return static_cast<size_t>(inner - shares.begin());
}

}  // namespace

SolvedRungs::SolvedRungs(std::vector<double> shares, WellValues first, bool solvesAll)
    : shares_(std::move(shares)),
      values_(shares_.size()),
      isAsked_(shares_.size()),
      middle_(MiddleOf(shares_)),
      coarse_({0, middle_, shares_.size() - 1}),
      between_({middle_ / 2, (middle_ + shares_.size()) / 2}),
      solvesAll_(solvesAll) {
  Take(0, std::move(first));
}

void SolvedRungs::Take(size_t rung, std::optional<WellValues> values) {
  isAsked_[rung] = true;
  values_[rung] = std::move(values);
}

std::vector<size_t> SolvedRungs::Next() {
  const size_t last = coarse_.back();
  if (!solvesAll_ && !isAsked_[last]) return {last, middle_};
  if (!solvesAll_ && AreSolved(coarse_)) {
    if (Meets(middle_, {0, last})) return {};
    if (!isAsked_[between_.back()]) return Unasked(between_);
    const auto isMet = [this](size_t rung) { return Meets(rung, coarse_); };
    if (AreSolved(between_) && std::ranges::all_of(between_, isMet)) return {};
  }
  std::vector<size_t> all(shares_.size());
  std::iota(all.begin(), all.end(), 0);
  return Unasked(std::move(all));
}

std::vector<size_t> SolvedRungs::Unasked(std::vector<size_t> rungs) const {
  std::erase_if(rungs, [this](size_t rung) { return isAsked_[rung]; });
  return rungs;
}

bool SolvedRungs::AreSolved(const std::vector<size_t>& rungs) const {
  return std::ranges::all_of(rungs, [this](size_t rung) { return values_[rung].has_value(); });
}

/// Whether for every well a solved rung is what others say of it.
bool SolvedRungs::Meets(size_t rung, const std::vector<size_t>& from) const {
  const WellValues read = ReadOff(rung, from);
  const WellValues& found = *values_[rung];
  for (size_t well = 0; well < read.size(); ++well) {
    const auto& top = (*values_.front())[well];
    const auto& bottom = (*values_.back())[well];
    if (MissOf(read[well], found[well], top, bottom) > kStraight) return false;
  }
  return true;
}

std::optional<WellValues> SolvedRungs::At(size_t rung) const {
  if (values_[rung]) return values_[rung];
  std::vector<size_t> solved;
  for (size_t other = 0; other < shares_.size(); ++other) {
    if (values_[other]) solved.push_back(other);
  }
  if (solved.size() < 2) return std::nullopt;
  // A parabola through neighbours of a rung that flow can't solve would trust them too far.
  return ReadOff(rung, Nearest(rung, solved, isAsked_[rung] ? 2 : kOfParabola));
}

std::vector<size_t> SolvedRungs::Nearest(size_t rung, const std::vector<size_t>& among,
                                         size_t count) const {
  std::vector<size_t> nearest = among;
  const auto distance = [&](size_t other) { return std::abs(shares_[other] - shares_[rung]); };
  std::ranges::stable_sort(nearest, {}, distance);
  nearest.resize(std::min(count, nearest.size()));
  return nearest;
}

/// By Lagrange's formula, in the shares.
WellValues SolvedRungs::ReadOff(size_t rung, const std::vector<size_t>& from) const {
  WellValues read;
  for (const size_t node : from) {
    double weight = 1.0;
    for (const size_t other : from) {
      if (other == node) continue;
      weight *= (shares_[rung] - shares_[other]) / (shares_[node] - shares_[other]);
    }
    const WellValues& values = *values_[node];
    if (read.empty()) {
      for (const auto& well : values) read.emplace_back(well.size(), 0.0);
    }
    for (size_t well = 0; well < values.size(); ++well) {
      for (size_t i = 0; i < values[well].size(); ++i) read[well][i] += weight * values[well][i];
    }
  }
  return read;
}

}  // namespace gantry::flowlink
