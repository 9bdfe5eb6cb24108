#include "support/scripted_peer.h"

#include <array>
#include <chrono>
#include <stdexcept>
#include <thread>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <gtest/gtest.h>

#include "platform/sockets.h"

namespace gantry::test {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

constexpr std::chrono::seconds kLongestWaitForClient{20};

[[noreturn]] void Fail(const std::string& text) { throw std::runtime_error(text); }

std::string ReadBytes(tcp::socket& socket, uint64_t length) {
  std::string bytes(length, '\0');
  asio::read(socket, asio::buffer(bytes));
  return bytes;
}

std::string ReadPayload(tcp::socket& socket) {
  std::array<uint64_t, 2> head{};
  asio::read(socket, asio::buffer(head));
  std::string payload;
  uint64_t chunk = head[1];
  while (payload.size() < head[0]) {
    payload += ReadBytes(socket, chunk);
    if (payload.size() < head[0]) asio::read(socket, asio::buffer(&chunk, sizeof chunk));
  }
  return payload;
}

}  // namespace

struct ScriptedPeer::Play {
  using Step = std::function<void(tcp::socket&)>;

  Play() : acceptor(context, tcp::endpoint(asio::ip::address_v4::loopback(), 0)), socket(context) {}

  void Accept() {
    boost::system::error_code outcome = asio::error::would_block;
    acceptor.async_accept(socket, [&](const boost::system::error_code& error) { outcome = error; });
    context.restart();
    context.run_for(kLongestWaitForClient);
    if (outcome) Fail("no client came: " + outcome.message());
    socket.set_option(tcp::no_delay(true));
  }

  /// One client after the other, until the acceptor is closed.
  void AcceptNext() {
    acceptor.async_accept([this](const boost::system::error_code& error, auto client) {
      if (error) return;
      boost::system::error_code gone;
      client.set_option(tcp::no_delay(true), gone);
      Answer(client);
      client.close();
      AcceptNext();
    });
  }

  void Answer(tcp::socket& client) const {
    try {
      for (;;) {
        const std::vector<Entries> messages = answer(Decode(ReadPayload(client)));
        if (messages.empty()) return;
        for (const Entries& message : messages) asio::write(client, asio::buffer(Frame(message)));
      }
    } catch (const boost::system::system_error&) {
      // The client has gone, which it may do at any time.
    }
  }

  void Serve() {
    AcceptNext();
    context.run();
  }

  void PlayScript() {
    Accept();
    for (; step < steps.size(); ++step) steps[step](socket);
    HearTheClientOut();
  }

  /// Half-closes and takes what the client still says, which must be nothing.
  void HearTheClientOut() {
    boost::system::error_code ended;
    socket.shutdown(tcp::socket::shutdown_send, ended);
    std::array<char, 4096> surplus{};
    const size_t count = socket.read_some(asio::buffer(surplus), ended);
    if (count > 0) {
      Fail("the client said more than the script: " + std::string(surplus.data(), count));
    }
  }

  void Run() {
    try {
      answer ? Serve() : PlayScript();
    } catch (const std::exception& error) {
      failure = "step " + std::to_string(step + 1) + " of " + std::to_string(steps.size()) + ": " +
                error.what();
    }
    boost::system::error_code ignored;
    socket.close(ignored);
    acceptor.close(ignored);
  }

  platform::SocketLibrary library;
  asio::io_context context;
  tcp::acceptor acceptor;
  tcp::socket socket;
  std::vector<Step> steps;
  size_t step = 0;
  ScriptedPeer::Answering answer;
  std::string failure;
  std::thread thread;
};

ScriptedPeer::ScriptedPeer() : play_(std::make_unique<Play>()) {}

ScriptedPeer::~ScriptedPeer() { Finish(); }

uint16_t ScriptedPeer::Port() const { return play_->acceptor.local_endpoint().port(); }

ScriptedPeer& ScriptedPeer::Expect(Entries entries) {
  play_->steps.emplace_back([entries = std::move(entries)](tcp::socket& socket) {
    const std::string payload = ReadPayload(socket);
    if (payload == Payload(entries)) return;
    Fail("expected " + Describe(entries) + "\n  received " + Describe(Decode(payload)));
  });
  return *this;
}

ScriptedPeer& ScriptedPeer::ExpectBytes(std::string bytes) {
  play_->steps.emplace_back([bytes = std::move(bytes)](tcp::socket& socket) {
    if (ReadBytes(socket, bytes.size()) != bytes) Fail("other bytes than expected");
  });
  return *this;
}

ScriptedPeer& ScriptedPeer::Reply(const Entries& entries) { return ReplyBytes(Frame(entries)); }

ScriptedPeer& ScriptedPeer::ReplyBytes(std::string bytes) {
  play_->steps.emplace_back([bytes = std::move(bytes)](tcp::socket& socket) {
    asio::write(socket, asio::buffer(bytes));
  });
  return *this;
}

ScriptedPeer& ScriptedPeer::Greet(const std::string& position) {
  return Expect("SETUP VERSION{V2} END").Reply("STARTED ERRORS{} END").Reply(Step(position));
}

ScriptedPeer& ScriptedPeer::Answer(Entries request, const Entries& reply) {
  Expect(std::move(request));
  if (!reply.empty()) Reply(reply);
  return Reply({"READY", "END"});
}

void ScriptedPeer::Serve(Answering answer) { play_->answer = std::move(answer); }

ScriptedPeer& ScriptedPeer::Reconnect() {
  play_->steps.emplace_back([play = play_.get()](tcp::socket& socket) {
    socket.close();
    play->Accept();
  });
  return *this;
}

void ScriptedPeer::Start() {
  play_->thread = std::thread([play = play_.get()] { play->Run(); });
}

void ScriptedPeer::Finish() {
  if (!play_->thread.joinable()) return;
  if (play_->answer) asio::post(play_->context, [play = play_.get()] { play->acceptor.close(); });
  play_->thread.join();
  if (!play_->failure.empty()) ADD_FAILURE() << "scripted peer, " << play_->failure;
}

}  // namespace gantry::test
