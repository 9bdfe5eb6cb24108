#include "model/field_peer.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>

#include "platform/sockets.h"

namespace gantry::test {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

struct Cut {};

std::string ReadPayload(tcp::socket& socket) {
  std::array<uint64_t, 2> head{};
  asio::read(socket, asio::buffer(head));
  std::string payload;
  for (uint64_t chunk = head[1]; payload.size() < head[0];) {
    std::string part(chunk, '\0');
    asio::read(socket, asio::buffer(part));
    payload += part;
    if (payload.size() < head[0]) asio::read(socket, asio::buffer(&chunk, sizeof chunk));
  }
  return payload;
}

const Texts& TextsOf(const Entries& message, const std::string& name) {
  const auto entry = std::ranges::find(message, name, &Entry::name);
  if (entry == message.end()) throw std::runtime_error("no entry " + name);
  return std::get<Texts>(entry->data);
}

}  // namespace

struct FieldPeer::Play {
  explicit Play(FieldPeer& owner)
      : field(owner), acceptor(context, tcp::endpoint(asio::ip::address_v4::loopback(), 0)) {}

  void AcceptNext() {
    acceptor.async_accept([this](const boost::system::error_code& error, tcp::socket client) {
      if (error) return;
      try {
        client.set_option(tcp::no_delay(true));
        for (;;) Serve(client, Decode(ReadPayload(client)));
      } catch (const std::exception&) {  // the client has gone
      } catch (const Cut&) {
      }
      client.close();
      AcceptNext();
    });
  }

  void Serve(tcp::socket& client, const Entries& message) {
    const bool isWrapped = message[0].name == "QUERY" || message[0].name == "SET";
    const std::string& name = message[isWrapped ? 1 : 0].name;
    if (field.onMessage) field.onMessage(name);
    const std::lock_guard guard(lock);
    if (name == cutAt) throw Cut();
    const auto say = [&client](const Entries& entries) {
      asio::write(client, asio::buffer(Frame(entries)));
    };
    for (const Entries& reply : Answer(name, message)) say(reply);
  }

  std::vector<Entries> Answer(const std::string& name, const Entries& message) {
    const Entries ready = {"READY", "END"};
    if (name == "SETUP") {
      return {{"STARTED", {"ERRORS", Texts{}}, "END"}, Position("MODEL_DEFINITION")};
    }
    if (message[0].name == "QUERY") return {AnswerQuery(name, message), ready};
    Note(name, message);
    if (name == "CONTINUE") return {Position("BEGIN_NEWTON")};
    if (name == "CONTINUE_UNTIL") return {RunUntil(std::get<Numbers>(message[1].data).front())};
    if (name == "SHUTDOWN") return {{"FINISHED", "END"}};
    if (name == "CREATE_FLDSRCEXT") return {{"REPLY", {"STRET", Ints{1}}, "END"}, ready};
    if (name == "SETWCONSTRAINTS") Constrain(message);
    return {ready};
  }

  void Note(const std::string& name, const Entries& message) {
    if (name == "SETWCONSTRAINTS" && sweepRungs > 0) {
      --sweepRungs;
      return;
    }
    const std::string text = Describe(message);
    orders.push_back(text.substr(0, text.rfind(" END ")));
  }

  Entries Position(const std::string& position) {
    return {"STEP",
            {"POSITION", Texts{position}},
            {"TIME", Numbers{field.days}},
            {"DATE", field.date},
            "END"};
  }

  Entries RunUntil(double target) {
    if (target > field.lastDay) return {"FINISHED", "END"};
    field.days = target;
    return Position("BEGIN_NEWTON");
  }

  PeerWell& Find(const std::string& name) {
    const auto well = std::ranges::find(field.wells, name, &PeerWell::name);
    if (well == field.wells.end()) throw std::runtime_error("no well " + name);
    return *well;
  }

  void Constrain(const Entries& message) {
    for (size_t i = 0; i + 2 < message.size(); ++i) {
      if (message[i].name != "WELLNAME") continue;
      PeerWell& well = Find(std::get<Texts>(message[i].data).front());
      const Numbers& values = std::get<Numbers>(message[i + 2].data);
      if (!values.empty()) well.rate = std::min(values.front(), well.greatestRate);
    }
  }

  double ValueOf(const PeerWell& well, const std::string& item) const {
    if (const auto found = field.variables.find(item); found != field.variables.end()) {
      return found->second;
    }
    const bool produces = well.type == "PRODUCER";
    const double produced = produces ? well.rate : 0.0;
    if (item == "OIL_PRODUCTION_RATE") return 0.8 * produced;
    if (item == "WATER_PRODUCTION_RATE") return 0.2 * produced;
    if (item == "GAS_PRODUCTION_RATE") return 0.5 * produced;
    if (item == "WATER_INJECTION_RATE") return well.type == "WATER_INJECTOR" ? well.rate : 0.0;
    if (item == "GAS_INJECTION_RATE") return well.type == "GAS_INJECTOR" ? well.rate : 0.0;
    if (item == "UPTIME_FRACTION") return 1.0;
    if (item == "BOTTOM_HOLE_PRESSURE") return 3014.696 - produced;
    if (item == "GAS_DENSITY") return 0.0763;
    if (item == "OIL_DENSITY") return 62.43 * OilGravityAt(produced);
    if (item == "WATER_DENSITY") return 62.43;
    if (item.starts_with("TOTAL_MOLE_FRACTION[")) {
      return 1.0 / static_cast<double>(field.components.size());
    }
    return 100.0;
  }

  Entries AnswerQuery(const std::string& name, const Entries& message) {
    if (name == "QRFLUIDMODEL") return FluidModel();
    const Texts& items = TextsOf(message, "QITEMS");
    if (name == "QRESVR_STR" || name == "QRESVR") return AnswerReservoir(items);
    Texts names = TextsOf(message, "WELNAMES");
    if (names == Texts{"*"} || field.tellsOfAllWells) {
      names.clear();
      for (const PeerWell& well : field.wells) names.push_back(well.name);
    }
    if (items == Texts{"TYPE"}) BeginSweep();
    Entries reply = {"REPLY", {"QITEMS", items}};
    for (const std::string& wellName : names) {
      const PeerWell& well = Find(wellName);
      reply.push_back({"WELLNAME", Texts{wellName}});
      if (name == "QWELLS")
        reply.push_back({"VALUES", NumbersOf(well, items)});
      else
        reply.push_back({"VALUES", WordsOf(well, items)});
    }
    reply.emplace_back("END");
    return reply;
  }

  /// A sweep forces the wells open, asks for their types, and constrains them ten times.
  void BeginSweep() {
    sweepRungs = 10;
    if (!orders.empty() && orders.back().starts_with("SET SETWSTATUS")) orders.pop_back();
  }

  Numbers NumbersOf(const PeerWell& well, const Texts& items) const {
    Numbers values;
    for (const std::string& item : items) values.push_back(ValueOf(well, item));
    return values;
  }

  static Texts WordsOf(const PeerWell& well, const Texts& items) {
    Texts words;
    for (const std::string& item : items) words.push_back(item == "TYPE" ? well.type : well.status);
    return words;
  }

  Entries AnswerReservoir(const Texts& items) const {
    Entries reply = {"REPLY"};
    for (const std::string& item : items) {
      reply.push_back({"QITEM", Texts{item}});
      if (item == "START_DATE")
        reply.push_back({"VALUES", field.startDate});
      else
        reply.push_back({"VALUES", Texts{ReservoirWord(item)}});
    }
    reply.emplace_back("END");
    return reply;
  }

  std::string ReservoirWord(const std::string& item) const {
    if (item == "IX_VERSION") return "2017.2";
    if (item == "UNIT_SYSTEM") return "ECLIPSE_FIELD";
    return field.components.empty() ? "BLACK_OIL" : "COMPOSITIONAL";
  }

  Entries FluidModel() const {
    const Numbers weights(field.components.size(), 16.0);
    return {"REPLY",
            {"FLUIDMODELDNAME", Texts{"Fluid"}},
            {"EOSNAME", Texts{field.eosName}},
            {"NCOMPS", field.components},
            {"BIC", field.binaryInteraction},
            {"EOSPROPNAME", Texts{"Molecular weight"}},
            {"VALUES", weights},
            "END"};
  }

  FieldPeer& field;
  platform::SocketLibrary library;
  asio::io_context context;
  tcp::acceptor acceptor;
  std::thread thread;
  std::mutex lock;
  Texts orders;
  std::string cutAt;
  int sweepRungs = 0;
};

FieldPeer::FieldPeer() : play_(std::make_unique<Play>(*this)) {}

FieldPeer::~FieldPeer() {
  play_->context.stop();
  if (play_->thread.joinable()) play_->thread.join();
}

uint16_t FieldPeer::Port() const { return play_->acceptor.local_endpoint().port(); }

void FieldPeer::Start() {
  play_->AcceptNext();
  play_->thread = std::thread([play = play_.get()] { play->context.run(); });
}

Texts FieldPeer::TakeOrders() {
  const std::lock_guard guard(play_->lock);
  return std::exchange(play_->orders, {});
}

void FieldPeer::ChangeWells(const std::function<void(std::vector<PeerWell>&)>& change) {
  const std::lock_guard guard(play_->lock);
  change(wells);
}

void FieldPeer::CutAt(const std::string& message) {
  const std::lock_guard guard(play_->lock);
  play_->cutAt = message;
}

}  // namespace gantry::test
