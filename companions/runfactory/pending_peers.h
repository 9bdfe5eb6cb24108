#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <string>
#include <vector>

#include <poll.h>

#include "platform/posix/descriptor.h"
#include "runfactory/dialogue.h"
#include "runfactory/log.h"

namespace gantry::cluster {

using Clock = std::chrono::steady_clock;

/// Those who have connected and haven't yet said what they want. Each has so much time for the
/// whole of its dialogue, and none keeps the others waiting. When too many are silent at once the
/// oldest gives way.
class PendingPeers {
 public:
  /// Takes over a peer whose dialogue has come to its end.
  using Complete = std::function<void(platform::Descriptor socket, const Dialogue& dialogue)>;

  PendingPeers(const Log& log, int seconds, Complete complete);

  /// Accepts whoever waits at the listener.
  void Accept(int listener);
  void Clear() { peers_.clear(); }

  void Watch(std::vector<pollfd>& watched) const;
  /// `events` are those of `Watch`, in its order.
  void Serve(const pollfd* events);
  /// Drops those whose time is up; the result is when to come again.
  Clock::time_point Expire(Clock::time_point now);

 private:
  struct Peer {
    platform::Descriptor socket;
    std::string address;
    Clock::time_point deadline;
    Dialogue dialogue;
  };

  /// False when the peer is to be forgotten.
  bool Hear(Peer& peer);

  const Log& log_;
  std::chrono::seconds patience_;
  Complete complete_;
  std::list<Peer> peers_;
};

/// Sends a short text to a peer that hasn't been sent much yet, without waiting.
void SendBriefly(int socket, std::string_view bytes);

}  // namespace gantry::cluster
