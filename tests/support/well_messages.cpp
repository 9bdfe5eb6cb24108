#include "support/well_messages.h"

namespace gantry::test {
namespace {

ScriptedPeer& AnswerReservoirQuestion(ScriptedPeer& peer, const std::string& item,
                                      const std::string& answer) {
  return peer.Answer({"QUERY", "QRESVR_STR", {"QITEMS", Texts{item}}, "END"},
                     {"REPLY", {"QITEM", Texts{item}}, {"VALUES", Texts{answer}}, "END"});
}

}  // namespace

ScriptedPeer& GreetMetricConnector(ScriptedPeer& peer) {
  peer.Greet();
  AnswerReservoirQuestion(peer, "IX_VERSION", "2017.2");
  return AnswerReservoirQuestion(peer, "UNIT_SYSTEM", "ECLIPSE_METRIC");
}

Entries WellQuestion(const std::string& well, const std::string& item) {
  return {"QUERY", "QWELLS", {"QITEMS", Texts{item}}, {"WELNAMES", Texts{well}}, "END"};
}

Entries WellAnswer(const std::string& well, const std::string& item, double value) {
  return {"REPLY",
          {"QITEMS", Texts{item}},
          {"WELLNAME", Texts{well}},
          {"VALUES", Numbers{value}},
          "END"};
}

Entries WellConstraint(const std::string& well, const std::string& item, double value) {
  return {"SET",
          "SETWCONSTRAINTS",
          {"WELLNAME", Texts{well}},
          {"ITEMS", Texts{item}},
          {"VALUES", Numbers{value}},
          {"SETTERS", Texts{"USER"}},
          "END"};
}

}  // namespace gantry::test
