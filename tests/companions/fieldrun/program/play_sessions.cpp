// The sessions of a folder, each a test.

#include <gtest/gtest.h>

#include "session.h"

namespace gantry::fieldrun::test {
namespace {

class Session : public ::testing::TestWithParam<std::string> {};

TEST_P(Session, GoesAsItIsWritten) {
  PlaySession(std::filesystem::path(SESSIONS) / (GetParam() + ".session"));
}

INSTANTIATE_TEST_SUITE_P(Programs, Session, ::testing::ValuesIn(SessionsIn(SESSIONS)),
                         [](const auto& session) { return session.param; });

}  // namespace
}  // namespace gantry::fieldrun::test
