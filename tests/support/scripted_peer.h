#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/wire_entries.h"

namespace gantry::test {

/// The simulator's end of one connection, on a real loopback socket and a thread of its own. It is
/// told a script first, and then plays it to the first client that comes:
///
///   ScriptedPeer peer;
///   peer.Expect({"CONTINUE", "END"}).Reply({"FINISHED", "END"}).Start();
///   ... a client on peer.Port() ...
///
/// At the end of the script it says no more (the client meets the end of the stream) and listens
/// until the client has closed. What the client says otherwise than expected, a script that the
/// client leaves unfinished and bytes beyond the script are failures of the test, reported by
/// `Finish` or else by the destructor. So the client must be gone, or be destroyed, by then:
/// declare the peer before the client.
class ScriptedPeer {
 public:
  using Answering = std::function<std::vector<Entries>(const Entries&)>;

  ScriptedPeer();
  ~ScriptedPeer();
  ScriptedPeer(const ScriptedPeer&) = delete;
  ScriptedPeer& operator=(const ScriptedPeer&) = delete;

  uint16_t Port() const;

  /// The next frame must hold these entries. Messages may be given as texts, as `Parse` reads them.
  ScriptedPeer& Expect(Entries entries);
  ScriptedPeer& Expect(const char* text) { return Expect(Parse(text)); }
  /// The next bytes on the wire must be these, frame headers and all.
  ScriptedPeer& ExpectBytes(std::string bytes);
  ScriptedPeer& Reply(const Entries& entries);
  ScriptedPeer& Reply(const char* text) { return Reply(Parse(text)); }
  ScriptedPeer& ReplyBytes(std::string bytes);
  /// The handshake up to the given position: what a client's `connect` meets.
  ScriptedPeer& Greet(const std::string& position = "MODEL_DEFINITION");
  /// A query or a setter that answers with `reply` (which may be empty: no reply) and "READY".
  ScriptedPeer& Answer(Entries request, const Entries& reply = {});
  ScriptedPeer& Answer(const char* request, const char* reply = "") {
    return Answer(Parse(request), Parse(reply));
  }
  /// In place of a script: every frame is given to `answer`, whose messages go back, of one client
  /// after another, until `Finish`. No message at all hangs up.
  void Serve(Answering answer);
  /// Closes the connection and waits for another one.
  ScriptedPeer& Reconnect();

  void Start();
  void Finish();

 private:
  struct Play;
  std::unique_ptr<Play> play_;
};

}  // namespace gantry::test
