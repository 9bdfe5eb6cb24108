// A frame from a peer. Every entry is read by its own header; a message that has been read whole
// must come out byte for byte when it is written again. The input's first byte decides whether the
// rest is a whole frame ("F") or the payload of one.
// Reads: src/client/message_stream.cpp

#include "client/message_stream.h"
#include "support/memory_connection.h"
#include "support/wire_entries.h"
#include "target.h"

using namespace gantry::fuzz;

namespace {

using gantry::Header;
using gantry::HeaderType;
using gantry::IncomingMessage;
using gantry::OutgoingMessage;

void Copy(const Header& header, IncomingMessage& from, OutgoingMessage& to) {
  const std::string name(header.name);
  switch (header.type) {
    case HeaderType::MESS:
      to.AppendMarker(name, header.count);
      break;
    case HeaderType::INTE:
      to.AppendInts(name, from.ReadInts(header));
      break;
    case HeaderType::DOUB:
      to.AppendDoubles(name, from.ReadDoubles(header));
      break;
    case HeaderType::CSTR:
      to.AppendStrings(name, from.ReadStrings(header));
      break;
  }
}

/// The whole message, written again.
std::string ReadAndWrite(const std::string& frame) {
  gantry::test::MemoryConnection in(frame), out;
  gantry::MessageStream from(in), to(out);
  IncomingMessage message = from.ReceiveMessage();
  OutgoingMessage copy = to.CreateOutgoingMessage();
  for (;;) {
    try {
      message.EndOfMessage();
      break;
    } catch (const std::length_error&) {
      Copy(message.ReadHeader(), message, copy);
    }
  }
  copy.Send();
  return out.outgoing;
}

void Check(const std::string& input) {
  const bool isFrame = input.starts_with('F');
  const std::string bytes = input.substr(std::min<size_t>(1, input.size()));
  const std::string frame = isFrame ? bytes : gantry::test::FrameOf(bytes);
  const std::string written = ReadAndWrite(frame);
  Require(isFrame || written == frame);
}

}  // namespace

FUZZ_TARGET(codec) {
  // The codec refuses with length_error and invalid_argument; a frame may end too early.
  MayRefuse<std::logic_error, boost::system::system_error>([&] { Check(std::string(input)); });
}
