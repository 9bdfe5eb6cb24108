// What the process with the dialogs may say to the host, or the host to it: frames over a local
// socket, and in them any of the records that go over the link, a dialog's template among them.
// What was taken out of a packet and is put into another comes out the same.
// Reads: src/toolkit/qt/link.cpp src/toolkit/qt/packet.h src/toolkit/qt/dialog_calls.h

#include <sys/socket.h>
#include <unistd.h>

#include "target.h"
#include "toolkit/qt/dialog_calls.h"
#include "toolkit/qt/link.h"

using namespace gantry::platform;
using namespace gantry::fuzz;

namespace {

template <class Record>
void TakeAgain(Packet& packet) {
  const auto taken = packet.Take<Record>();
  const Packet copy = Packet().Put(taken);
  Packet again(copy.Bytes());
  Require(Packet().Put(again.Take<Record>()).Bytes() == copy.Bytes());
}

constexpr void (*kRecords[])(Packet&) = {
    TakeAgain<TreePlace>,
    TakeAgain<DialogTemplate>,
    TakeAgain<std::vector<ControlRow>>,
    TakeAgain<std::vector<TreeItem>>,
    TakeAgain<std::vector<ListColumn>>,
    TakeAgain<std::vector<std::vector<std::string>>>,
    TakeAgain<std::vector<TreePlace>>,
    TakeAgain<FileRequest>,
    TakeAgain<std::optional<std::string>>,
    TakeAgain<PixelRect>,
    TakeAgain<Request>,
    TakeAgain<bool>,
};

Packet Serve(Packet& call) {
  kRecords[call.Take<uint8_t>() % std::size(kRecords)](call);
  return Packet();
}

}  // namespace

FUZZ_TARGET(dialog_link) {
  int ends[2] = {};
  if (input.size() > 32768) return;  // what the socket holds
  Require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0);
  const Descriptor peer(ends[1]);
  Link link(Descriptor{ends[0]}, Serve);
  Require(::send(peer.Number(), input.data(), input.size(), 0) ==
          static_cast<ssize_t>(input.size()));
  ::shutdown(peer.Number(), SHUT_WR);
  // The other end has said all that it ever says.
  MayRefuse<LinkFailure>([&] {
    link.ServeOne();
    link.Call(Packet());
  });
}
