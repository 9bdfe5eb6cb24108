#pragma once

#include "remote/wire_bytes.h"
#include "support/scripted_peer.h"

namespace gantry::test {

/// What a controller hears and says next, each behind its length: ">> 4 4" and "<< 4 30.25 0".
inline void Script(ScriptedPeer& peer, const Texts& lines) {
  for (const std::string& line : lines) {
    const std::string bytes = Text(Elements(line.substr(2)));
    line[0] == '>' ? peer.ExpectBytes(bytes) : peer.ReplyBytes(bytes);
  }
}

}  // namespace gantry::test
