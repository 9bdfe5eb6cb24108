#include "runfactory/pending_peers.h"

#include <array>
#include <cerrno>

#include <arpa/inet.h>
#include <fmt/format.h>
#include <sys/socket.h>

namespace gantry::cluster {

namespace {

constexpr size_t kMostPeers = 256;

std::string Describe(const sockaddr_in& address) {
  std::array<char, INET_ADDRSTRLEN> text{};
  ::inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
  return fmt::format("{}:{}", text.data(), ntohs(address.sin_port));
}

}  // namespace

void SendBriefly(int socket, std::string_view bytes) {
  // What doesn't fit, or can't be sent, shows to the peer as the end of the connection.
  platform::WithoutInterrupts(
      [&] { return ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT); });
}

PendingPeers::PendingPeers(const Log& log, int seconds, Complete complete)
    : log_(log), patience_(seconds), complete_(std::move(complete)) {}

void PendingPeers::Accept(int listener) {
  for (;;) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    platform::Descriptor socket(::accept4(listener, reinterpret_cast<sockaddr*>(&address), &size,
                                          SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!socket.IsOpen()) {
      const bool isOutOfPlaces = errno == EMFILE || errno == ENFILE;
      if (!isOutOfPlaces || peers_.empty()) return;
      peers_.pop_front();
      continue;
    }
    if (peers_.size() >= kMostPeers) {
      log_.Write(peers_.front().address + " gives way: too many are silent");
      peers_.pop_front();
    }
    SendBriefly(socket.Number(), Dialogue::Greeting());
    peers_.push_back({std::move(socket), Describe(address), Clock::now() + patience_, {}});
  }
}

void PendingPeers::Watch(std::vector<pollfd>& watched) const {
  for (const Peer& peer : peers_) watched.push_back({peer.socket.Number(), POLLIN, 0});
}

void PendingPeers::Serve(const pollfd* events) {
  for (auto peer = peers_.begin(); peer != peers_.end(); ++events) {
    const bool stays = events->revents == 0 || Hear(*peer);
    peer = stays ? std::next(peer) : peers_.erase(peer);
  }
}

bool PendingPeers::Hear(Peer& peer) {
  std::array<char, 4096> block{};
  const ssize_t count = ::recv(peer.socket.Number(), block.data(), block.size(), 0);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return true;
  if (count <= 0) {
    log_.Write(peer.address + " has gone before it said what it wants");
    return false;
  }
  switch (peer.dialogue.Take({block.data(), static_cast<size_t>(count)})) {
    case Dialogue::State::kGoingOn:
      return true;
    case Dialogue::State::kComplete:
      complete_(std::move(peer.socket), peer.dialogue);
      return false;
    case Dialogue::State::kDeclined:
      log_.Write(peer.address + " is a driver of another version");
      return false;
    case Dialogue::State::kBroken:
      log_.Write(peer.address + " is dropped: " + peer.dialogue.Fault());
      return false;
  }
  return false;
}

Clock::time_point PendingPeers::Expire(Clock::time_point now) {
  while (!peers_.empty() && peers_.front().deadline <= now) {
    log_.Write(peers_.front().address + " is dropped: it says nothing");
    peers_.pop_front();
  }
  return peers_.empty() ? Clock::time_point::max() : peers_.front().deadline;
}

}  // namespace gantry::cluster
