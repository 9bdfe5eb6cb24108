#include "flowlink/solved_rungs.h"

#include <cmath>

#include <gtest/gtest.h>

#include "flowlink/flow_items.h"

namespace gantry::flowlink {
namespace {

const std::vector<double> kShares = {1.0, 0.8, 0.55, 0.3, 0.1, 0.01};

/// A producer that gives 1000 at 1000 psi and nothing at 4000; less straight with more `bend`, and
/// at low rates with a `kink`.
WellValues At(double share, double bend, double kink = 0.0) {
  WellValues values(1, std::vector<double>(SummaryVectors().size(), 0.0));
  values[0][0] = 1000.0 * share;
  values[0][8] = 4000.0 - 3000.0 * share + bend * share * (1.0 - share);
  if (share < 0.2) values[0][8] += kink * (0.2 - share);
  return values;
}

/// The rungs that are asked for, in the order of the rounds; `unsolved` has no solution.
std::vector<size_t> Climb(SolvedRungs& rungs, double bend, size_t unsolved = 0, double kink = 0.0) {
  std::vector<size_t> asked;
  for (auto next = rungs.Next(); !next.empty(); next = rungs.Next()) {
    for (const size_t rung : next) {
      asked.push_back(rung);
      rungs.Take(rung,
                 rung == unsolved ? std::nullopt : std::optional(At(kShares[rung], bend, kink)));
    }
  }
  return asked;
}

TEST(SolvedRungs, SolvesNoMoreThanACurveNeeds) {
  SolvedRungs straight(kShares, At(1.0, 40.0), false);
  EXPECT_EQ(Climb(straight, 40.0), (std::vector<size_t>{5, 2}));
  EXPECT_NEAR((*straight.At(3))[0][8], At(0.3, 40.0)[0][8], 1e-6);
  SolvedRungs bent(kShares, At(1.0, 400.0), false);
  EXPECT_EQ(Climb(bent, 400.0), (std::vector<size_t>{5, 2, 1, 4}));
  EXPECT_NEAR((*bent.At(3))[0][8], At(0.3, 400.0)[0][8], 1e-6);
  SolvedRungs kinked(kShares, At(1.0, 400.0), false);
  EXPECT_EQ(Climb(kinked, 400.0, 0, 500.0), (std::vector<size_t>{5, 2, 1, 4, 3}));
  SolvedRungs all(kShares, At(1.0, 0.0), true);
  EXPECT_EQ(Climb(all, 0.0), (std::vector<size_t>{1, 2, 3, 4, 5}));
}

TEST(SolvedRungs, ReadsOffWhatFlowCantSolve) {
  SolvedRungs rungs(kShares, At(1.0, 0.0), false);
  EXPECT_EQ(Climb(rungs, 0.0, 5), (std::vector<size_t>{5, 2, 1, 3, 4}));
  EXPECT_FALSE(rungs.IsSolved(5));
  EXPECT_NEAR((*rungs.At(5))[0][8], At(0.01, 0.0)[0][8], 1e-6);
  const SolvedRungs alone(kShares, At(1.0, 0.0), false);
  EXPECT_FALSE(alone.At(1));
}

}  // namespace
}  // namespace gantry::flowlink
