#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace gantry::cluster {

/// What a driver asks for.
struct RunRequest {
  int32_t scenario = 0;
  std::string directory;  ///< as the driver's case holds it
  std::string baseName;
  int32_t parallel = 1;
  int32_t versionCode = 0;
  std::string user;
  bool logging = false;
};

/// The factory's side of the dialogue, fed with whatever bytes have come
/// (docs/remote-protocol.md). Nothing is kept beyond what a line may hold.
class Dialogue {
 public:
  enum class State {
    kGoingOn,
    kComplete,  ///< `Request` holds what was asked for, or `Refusal` what is wrong with it
    kDeclined,  ///< the driver doesn't speak this version
    kBroken,    ///< the peer is no driver; `Fault` says why
  };

  /// What the factory says first.
  static std::string Greeting();

  State Take(std::string_view bytes);

  const RunRequest& Request() const { return request_; }
  /// A one-line reason why the request can't be met; empty when it can.
  const std::string& Refusal() const { return refusal_; }
  const std::string& Fault() const { return fault_; }

 private:
  struct Line;
  static const Line kLines[];

  void TakeLine();
  State Break(std::string fault);

  State state_ = State::kGoingOn;
  std::string received_;  ///< of the line that is going on, its length included
  size_t line_ = 0;
  RunRequest request_;
  std::string refusal_;
  std::string fault_;
};

/// A text in the dialogue's frame.
std::string FramedText(std::string_view text);

}  // namespace gantry::cluster
