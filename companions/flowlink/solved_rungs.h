#pragma once

#include <optional>
#include <vector>

#include "flowlink/flow_link.h"

namespace gantry::flowlink {

/// The rungs of one inflow sweep, of which no more are solved than its curves need.
///
/// Behind the first rung the last is solved and one in the middle. Where all wells are so straight
/// that a line from the first rung to the last meets the middle one within `kStraight`, the others
/// are read off the parabola through the three. Otherwise one more is solved on either side of the
/// middle; where both meet that parabola as closely, the others are read off the parabolas through
/// their nearest three of the five. Otherwise all are solved, and so they are where flow finds no
/// solution for one of them; that one is read off its nearest neighbours then.
class SolvedRungs {
 public:
  /// By how much, as `MissOf` tells it, a rung may lie off what is read for it.
  static constexpr double kStraight = 0.005;

  /// The rungs' shares of the first one's rates, falling, and the first one's answer.
  SolvedRungs(std::vector<double> shares, WellValues first, bool solvesAll);

  /// The rungs to be solved together next; none when nothing more is to be asked.
  std::vector<size_t> Next();
  /// What flow found for a rung; nothing where it found no solution.
  void Take(size_t rung, std::optional<WellValues> values);

  /// Solved or read off; empty when fewer than two rungs have a solution.
  std::optional<WellValues> At(size_t rung) const;
  bool IsSolved(size_t rung) const { return values_[rung].has_value(); }

 private:
  std::vector<size_t> Unasked(std::vector<size_t> rungs) const;
  bool AreSolved(const std::vector<size_t>& rungs) const;
  bool Meets(size_t rung, const std::vector<size_t>& from) const;
  std::vector<size_t> Nearest(size_t rung, const std::vector<size_t>& among, size_t count) const;
  WellValues ReadOff(size_t rung, const std::vector<size_t>& from) const;

  std::vector<double> shares_;
  std::vector<std::optional<WellValues>> values_;
  std::vector<bool> isAsked_;
  size_t middle_;
  std::vector<size_t> coarse_;  ///< the first, the middle and the last
  std::vector<size_t> between_;
  bool solvesAll_;
};

}  // namespace gantry::flowlink
