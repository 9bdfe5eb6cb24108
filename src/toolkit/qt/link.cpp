#include "toolkit/qt/link.h"

#include <algorithm>

#include <sys/socket.h>

namespace gantry::platform {

namespace {

void SendAll(int socket, const char* bytes, size_t size) {
  const auto send = [socket](const char* next, size_t left) {
    return ::send(socket, next, left, MSG_NOSIGNAL);
  };
  if (MoveAll(bytes, size, send)) return;
  throw LinkFailure("The other end of the link takes nothing any more");
}

}  // namespace

Packet Link::Call(const Packet& call) {
  Send(Kind::kCall, call);
  while (true) {
    Kind kind{};
    Packet packet = Receive(kind);
    if (kind == Kind::kAnswer) return packet;
    Send(Kind::kAnswer, serve_(packet));
  }
}

void Link::ServeOne() {
  Kind kind{};
  Packet call = Receive(kind);
  Send(Kind::kAnswer, serve_(call));
}

void Link::Send(Kind kind, const Packet& packet) {
  const Head head{packet.Bytes().size(), kind};
  SendAll(socket_.Number(), reinterpret_cast<const char*>(&head), sizeof head);
  SendAll(socket_.Number(), packet.Bytes().data(), packet.Bytes().size());
}

Packet Link::Receive(Kind& kind) {
  constexpr size_t kStep = 1 << 16;  // no more memory at a time than has nearly come
  Head head{};
  ReceiveInto(reinterpret_cast<char*>(&head), sizeof head);
  kind = head.kind;
  std::string bytes;
  while (bytes.size() < head.size) {
    const size_t had = bytes.size();
    bytes.resize(had + std::min<size_t>(head.size - had, kStep));
    ReceiveInto(bytes.data() + had, bytes.size() - had);
  }
  return Packet(std::move(bytes));
}

void Link::ReceiveInto(char* place, size_t size) {
  const auto receive = [this](char* next, size_t left) {
    return ::recv(socket_.Number(), next, left, 0);
  };
  if (!MoveAll(place, size, receive)) throw LinkFailure("The other end of the link has gone");
}

}  // namespace gantry::platform
