#include "flowlink/solved_rungs.h"

#include <algorithm>
#include <cmath>

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
      solvesAll_(solvesAll) {
  Take(0, std::move(first));
}

void SolvedRungs::Take(size_t rung, std::optional<WellValues> values) {
  isAsked_[rung] = true;
  values_[rung] = std::move(values);
}

std::vector<size_t> SolvedRungs::Next() {
  const size_t last = shares_.size() - 1;
  if (!solvesAll_ && !isAsked_[last]) return {last, middle_};
  if (!solvesAll_ && IsStraight()) return {};
  std::vector<size_t> rest;
  for (size_t rung = 1; rung <= last; ++rung) {
    if (!isAsked_[rung]) rest.push_back(rung);
  }
  return rest;
}

bool SolvedRungs::IsStraight() const {
  const auto& top = values_.front();
  const auto& middle = values_[middle_];
  const auto& bottom = values_.back();
  if (!middle || !bottom) return false;
  const WellValues line = ReadOff(middle_, {0, shares_.size() - 1});
  for (size_t well = 0; well < line.size(); ++well) {
    if (MissOf(line[well], (*middle)[well], (*top)[well], (*bottom)[well]) > kStraight)
      return false;
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
