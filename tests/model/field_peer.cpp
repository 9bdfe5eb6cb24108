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

double ValueOf(const FieldPeer& field, const SimulatedWell& well, const std::string& item) {
  if (field.variables.contains(item)) return field.variables.at(item);
  if (item.starts_with("TOTAL_MOLE_FRACTION[")) {
    return 1.0 / static_cast<double>(field.components.size());
  }
  const auto told = [&well](const char* order) {
    const auto rate = well.constraints.find(order);
    return rate == well.constraints.end() ? 0.0 : std::min(rate->second, well.potential);
  };
  const double produced = told("LIQUID_PRODUCTION_RATE");
  const std::map<std::string, double> values = {
      {"OIL_PRODUCTION_RATE", 0.8 * produced},
      {"WATER_PRODUCTION_RATE", 0.2 * produced},
      {"GAS_PRODUCTION_RATE", 0.5 * produced},
      {"WATER_INJECTION_RATE", told("WATER_INJECTION_RATE")},
      {"GAS_INJECTION_RATE", told("GAS_INJECTION_RATE")},
      {"UPTIME_FRACTION", 1.0},
      {"BOTTOM_HOLE_PRESSURE", 3014.696 - produced},
      {"GAS_DENSITY", 0.0763},
      {"OIL_DENSITY", 62.43 * OilGravityAt(produced)},
      {"WATER_DENSITY", 62.43}};
  const auto value = values.find(item);
  return value == values.end() ? 100.0 : value->second;
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
    if (name == "QWELLS_STR" && Describe(message).find("QITEMS{TYPE} ") != std::string::npos) {
      BeginSweep();
    }
    if (name != "SETUP" && message[0].name != "QUERY") Note(name, message);
    field.eosProperties = {{"Molecular weight", Numbers(field.components.size(), 16.0)}};
    return AnswerOnWire(field, message);
  }

  void Note(const std::string& name, const Entries& message) {
    if (name == "SETWCONSTRAINTS" && sweepRungs > 0) {
      --sweepRungs;
      return;
    }
    const std::string text = Describe(message);
    orders.push_back(text.substr(0, text.rfind(" END ")));
  }

  /// A sweep forces the wells open, asks for their types, and constrains them ten times.
  void BeginSweep() {
    sweepRungs = 10;
    if (!orders.empty() && orders.back().starts_with("SET SETWSTATUS")) orders.pop_back();
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

FieldPeer::FieldPeer() : play_(std::make_unique<Play>(*this)) {
  isMetric = false;
  components.clear();
  eosName = "PENG_ROBINSON";
  binaryInteraction.clear();
  startDate = date = {2015, 1, 1, 0, 0, 0};
  endOfRun = 1e9;
  valueOf = [this](const auto& well, const auto& item) { return ValueOf(*this, well, item); };
}

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

void FieldPeer::ChangeWells(const std::function<void(std::vector<SimulatedWell>&)>& change) {
  const std::lock_guard guard(play_->lock);
  change(wells);
}

void FieldPeer::CutAt(const std::string& message) {
  const std::lock_guard guard(play_->lock);
  play_->cutAt = message;
}

}  // namespace gantry::test
