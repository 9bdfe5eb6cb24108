#pragma once

#include "remote/wire_bytes.h"
#include "support/scripted_peer.h"

namespace gantry::test {

/// What a peer hears next, by the mark '>', or says.
inline void Script(ScriptedPeer& peer, char mark, const std::string& bytes) {
  mark == '>' ? peer.ExpectBytes(bytes) : peer.ReplyBytes(bytes);
}

/// What a controller hears and says next, each behind its length: ">> 4 4" and "<< 4 30.25 0".
inline void Script(ScriptedPeer& peer, const Texts& lines) {
  for (const std::string& line : lines) Script(peer, line[0], Text(Elements(line)));
}

}  // namespace gantry::test
