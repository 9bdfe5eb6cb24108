#include "support/well_messages.h"

#include <sstream>

namespace gantry::test {
namespace {

std::string TextOf(double value) {
  std::ostringstream text;
  text.precision(17);
  text << value;
  return text.str();
}

}  // namespace

ScriptedPeer& GreetMetricConnector(ScriptedPeer& peer) {
  return peer.Greet()
      .Answer("QUERY QRESVR_STR QITEMS{IX_VERSION} END",
              "REPLY QITEM{IX_VERSION} VALUES{2017.2} END")
      .Answer("QUERY QRESVR_STR QITEMS{UNIT_SYSTEM} END",
              "REPLY QITEM{UNIT_SYSTEM} VALUES{ECLIPSE_METRIC} END");
}

Entries WellQuestion(const std::string& well, const std::string& item) {
  return Parse("QUERY QWELLS QITEMS{" + item + "} WELNAMES{" + well + "} END");
}

Entries WellAnswer(const std::string& well, const std::string& item, double value) {
  return Parse("REPLY QITEMS{" + item + "} WELLNAME{" + well + "} VALUES[" + TextOf(value) +
               "] END");
}

Entries WellConstraint(const std::string& well, const std::string& item, double value) {
  return Parse("SET SETWCONSTRAINTS WELLNAME{" + well + "} ITEMS{" + item + "} VALUES[" +
               TextOf(value) + "] SETTERS{USER} END");
}

}  // namespace gantry::test
