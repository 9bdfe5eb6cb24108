#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include <fmt/format.h>

#include "fieldrun/peer_check/rule.h"

// What a simulator must not take, and what it must take in whatever pieces it comes.

namespace gantry::fieldrun {
namespace {

using Words = std::vector<uint64_t>;

std::string Bytes(const Words& words) {
  std::string bytes(words.size() * sizeof(uint64_t), '\0');
  std::memcpy(bytes.data(), words.data(), bytes.size());
  return bytes;
}

std::string Entry(std::string_view name, uint64_t count, std::string_view tag,
                  std::string_view elements = "") {
  return fmt::format("{}{}{}{}{}", static_cast<char>(name.size()), name, Bytes({count}), tag,
                     elements);
}

std::string Marker(std::string_view name) { return Entry(name, 0, "MESS"); }

std::string Text(std::string_view name, std::string_view text) {
  return Entry(name, 1, "CSTR", Bytes({text.size()}) + std::string(text));
}

std::string Frame(const std::string& payload) {
  return Bytes({payload.size(), payload.size()}) + payload;
}

std::string Query(const std::string& item) {
  return Marker("QUERY") + Marker("QRESVR_STR") + Text("QITEMS", item) + Marker("END");
}

void Send(CheckedSession& session, const std::string& bytes) {
  session.Wire().Write(std::as_bytes(std::span(bytes)));
}

/// The first marker of what comes next.
std::string ReceiveName(CheckedSession& session) {
  MessageStream stream(session.Wire());
  IncomingMessage message = stream.ReceiveMessage();
  return std::string(message.ReadHeader().name);
}

bool IsAnswer(std::string_view name) {
  constexpr std::array<std::string_view, 5> kAnswers = {"REPLY", "READY", "STEP", "FINISHED",
                                                        "STARTED"};
  return std::ranges::find(kAnswers, name) != kAnswers.end();
}

/// A last word that is no answer may come before the connection is closed.
void AwaitRefusal(CheckedSession& session) {
  try {
    const std::string name = ReceiveName(session);
    Require(!IsAnswer(name), "the answer " + name);
    ReceiveName(session);
    throw RuleBroken("the message " + name + ", and the session goes on");
  } catch (const PeerGone&) {
    return;
  }
}

void CheckOrderlyEnd(CheckedSession& session) {
  session.HangUp();
  const HeldEnd end = session.AwaitEnd();
  Require(!end.isCrash, "its end " + end.how);
}

void CheckRefused(CheckedSession& session, const std::string& bytes) {
  Send(session, bytes);
  AwaitRefusal(session);
  CheckOrderlyEnd(session);
  session.SetOver();
}

struct Refusal {
  std::string_view name;
  std::string_view sent;
  std::string_view section;
  std::string bytes;
};

constexpr std::string_view kRefusalDue =
    "the connection is closed, and the program ends without a crash";
constexpr std::string_view kRefusalReason =
    "what isn't understood mustn't be taken for something else";

std::vector<Refusal> Refusals() {
  const std::string whole = Query("IX_VERSION");
  const std::string cut = whole.substr(0, whole.size() - 20);
  constexpr uint64_t kSome = 8;
  const std::string setStatus = Marker("SET") + Marker("SETWSTATUS") + Text("WCLOSURE", "USER") +
                                Text("SETITEM", "STATUS") + Text("WELNAMES", "*");
  return {
      {"unknown message", "DANCE", "session", Frame(Marker("DANCE") + Marker("END"))},
      {"unknown query", "QUERY QDREAMS", "queries",
       Frame(Marker("QUERY") + Marker("QDREAMS") + Marker("END"))},
      {"unknown setter", "SET SETDREAMS", "setters",
       Frame(Marker("SET") + Marker("SETDREAMS") + Marker("END"))},
      {"missing entry", "QUERY QWELLS without WELNAMES", "entries",
       Frame(Marker("QUERY") + Marker("QWELLS") + Text("QITEMS", "TEMPERATURE") + Marker("END"))},
      {"surplus entry", "CONTINUE with an entry behind END", "entries",
       Frame(Marker("CONTINUE") + Marker("END") + Marker("MORE"))},
      {"wrong kind", "CONTINUE_UNTIL with an integer as TIME", "entries",
       Frame(Marker("CONTINUE_UNTIL") + Entry("TIME", 1, "INTE", std::string(4, '\1')) +
             Marker("END"))},
      {"unknown kind", "CONTINUE_UNTIL with TIME of the kind BOOL", "entries",
       Frame(Marker("CONTINUE_UNTIL") + Entry("TIME", 1, "BOOL", "\1") + Marker("END"))},
      {"lists of different lengths", "SET SETWSTATUS with two values for one well", "setters",
       Frame(setStatus + Entry("VALUES", 2, "CSTR", Bytes({4}) + "OPEN" + Bytes({4}) + "OPEN") +
             Marker("END"))},
      {"entry cut off", "a frame that ends inside an entry", "entries", Frame(cut)},
      {"count beyond all memory", "an entry that claims 2^60 numbers", "entries",
       Frame(Marker("CONTINUE_UNTIL") +
             Entry("TIME", uint64_t{1} << 60, "DOUB", std::string(8, 0)))},
      {"chunk of no length", "a second chunk of length 0", "frames",
       Bytes({whole.size(), kSome}) + whole.substr(0, kSome) + Bytes({0}) + whole.substr(kSome)},
      {"chunk beyond its frame", "a chunk that is longer than its frame", "frames",
       Bytes({kSome, 2 * kSome}) + whole.substr(0, 2 * kSome)},
  };
}

void CheckSmallChunks(CheckedSession& session) {
  const std::string query = Query("IX_VERSION");
  std::string bytes = Bytes({query.size()});
  for (const char byte : query) bytes += Bytes({1}) + byte;
  Send(session, bytes);
  for (const char* due : {"REPLY", "READY"}) {
    const std::string name = ReceiveName(session);
    Require(name == due, "the message " + name);
  }
}

void CheckWrongVersion(CheckedSession& session) {
  Send(session, Frame(Marker("SETUP") + Text("VERSION", "V999") + Marker("END")));
  session.SetOver();
  try {
    MessageStream stream(session.Wire());
    IncomingMessage message = stream.ReceiveMessage();
    message.ExpectMarker("STARTED");
    Require(!message.ReadStrings("ERRORS").empty(), "STARTED without an error");
  } catch (const PeerGone&) {
    // As good as a word of its own.
  }
  CheckOrderlyEnd(session);
}

/// A simulator may pass over what it doesn't know, or refuse it; it mustn't make values up.
void CheckUnknownName(CheckedSession& session, const Strings& wells, const Strings& items) {
  try {
    const auto reply = session.Client().query_wells(wells, items);
    Require(reply.wells.empty() || reply.items.empty(),
            fmt::format("{} values of what isn't there", reply.values.RowCount()));
  } catch (const RuleBroken&) {
    throw;
  } catch (const NoAnswer&) {
    throw;
  } catch (const std::exception&) {
    CheckOrderlyEnd(session);
    session.SetOver();
  }
}

/// Bytes of which the rest never comes.
void CheckGone(CheckedSession& session, const std::string& bytes) {
  Send(session, bytes);
  CheckOrderlyEnd(session);
  session.SetOver();
}

void CheckShutdown(CheckedSession& session) {
  session.Client().shutdown();
  Require(session.Client().position() == AlgorithmicPosition::END_SIMULATE,
          "the position " + position_name(session.Client().position()));
  const HeldEnd end = session.AwaitEnd();
  session.SetOver();
  Require(!end.isCrash, "its end " + end.how);
}

}  // namespace

Rules RefusalRules() {
  using enum Stand;
  const std::string_view made = "numbers that are made up reach the report";
  Rules rules = {
      {"chunks of any length",
       "QUERY QRESVR_STR in chunks of one byte",
       "REPLY and READY",
       "a receiver takes chunks of any length",
       "frames",
       {"version"},
       CheckSmallChunks,
       kModelDefinition},
      {"unknown item",
       "QUERY QWELLS QITEMS{NO_SUCH_ITEM} WELNAMES{*}",
       "a reply without it, or a refusal",
       made,
       "queries",
       {"well numbers"},
       [](CheckedSession& session) { CheckUnknownName(session, {"*"}, {"NO_SUCH_ITEM"}); }},
      {"unknown well",
       "QUERY QWELLS QITEMS{BOTTOM_HOLE_PRESSURE} WELNAMES{NO SUCH WELL}",
       "a reply without it, or a refusal",
       made,
       "queries",
       {"well numbers"},
       [](CheckedSession& session) {
         CheckUnknownName(session, {"NO SUCH WELL"}, {"BOTTOM_HOLE_PRESSURE"});
       }},
      {"wrong version",
       "SETUP VERSION{V999}",
       "STARTED with an error, or the connection is closed",
       "a later protocol mustn't be half understood",
       "session",
       {"greeting"},
       CheckWrongVersion,
       kConnected},
  };
  for (Refusal& refusal : Refusals()) {
    rules.push_back({refusal.name,
                     refusal.sent,
                     kRefusalDue,
                     kRefusalReason,
                     refusal.section,
                     {"greeting"},
                     [bytes = std::move(refusal.bytes)](CheckedSession& session) {
                       CheckRefused(session, bytes);
                     },
                     kModelDefinition});
  }
  return rules;
}

Rules EndRules() {
  using enum Stand;
  const std::string_view due = "the program ends by itself";
  const std::string_view reason = "nobody else ends it: it would hold memory and licence for good";
  const std::string_view section = "how-the-driver-starts-a-simulator";
  const std::string endless = Bytes({uint64_t{1} << 62, uint64_t{1} << 62}) + std::string(100, 'x');
  return {
      {"shutdown",
       "SHUTDOWN",
       "FINISHED, or STEP POSITION{END_SIMULATE}; then the program ends",
       reason,
       "session",
       {"first step"},
       CheckShutdown},
      {"controller gone",
       "the connection is closed behind the greeting",
       due,
       reason,
       section,
       {"greeting"},
       [](CheckedSession& session) { CheckGone(session, ""); },
       kModelDefinition},
      {"controller gone in a step",
       "the connection is closed behind CONTINUE",
       due,
       reason,
       section,
       {"first step"},
       [](CheckedSession& session) { CheckGone(session, ""); }},
      {"frame beyond all memory",
       "the connection is closed within a frame that claims 2^62 bytes",
       due,
       "memory is taken as bytes arrive, not on a header's word",
       "frames",
       {"greeting"},
       [endless](CheckedSession& session) { CheckGone(session, endless); },
       kModelDefinition},
  };
}

}  // namespace gantry::fieldrun
