#include "platform/named_mutex.h"

#include <gtest/gtest.h>

#include "support/test_folder.h"

namespace gantry::platform {
namespace {

using Outcome = NamedMutex::Outcome;

TEST(Mutex, IsHeldForItsLifeAndSeenAsHeldByItsOwnProcess) {
  const test::TestFolder folder;
  auto first = NamedMutex::TryAcquire("GantryTest0");
  EXPECT_EQ(first.outcome, Outcome::kTaken);
  EXPECT_EQ(NamedMutex::TryAcquire("GantryTest0").outcome, Outcome::kHeldElsewhere);
  EXPECT_EQ(NamedMutex::TryAcquire("GantryTest1").outcome, Outcome::kTaken);
  first.mutex.reset();
  EXPECT_EQ(NamedMutex::TryAcquire("GantryTest0").outcome, Outcome::kTaken);
}

}  // namespace
}  // namespace gantry::platform
