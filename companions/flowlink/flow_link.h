#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "flowlink/flow_process.h"

namespace gantry::flowlink {

/// A well as the deck has it in the report step that comes next.
struct DeckWell {
  bool isDrilled = false;
  bool isProducer = true;
  std::string status;                    ///< flow's word
  std::map<std::string, double> limits;  ///< by flow's names, in the deck's units; 0 for none
};

/// The end of a report step, where the run stands until it is told to go on. All lists are in the
/// order of the wells.
struct FlowStop {
  double days = 0.0;
  bool isLast = false;
  std::vector<DeckWell> wells;
  std::vector<std::vector<double>> values;  ///< of each well, in the order of the vectors asked for
};

/// The dialogue with the script inside flow. An operation that flow doesn't survive, or that its
/// answer doesn't fit, throws `LinkFault` with the reason.
class FlowLink {
 public:
  /// Waits for the first stop.
  FlowLink(FlowProcess& process, const std::vector<std::string>& vectors, const std::string& units,
           int secondsForQuestion);

  const std::vector<std::string>& Wells() const { return wells_; }
  const std::array<int32_t, 6>& StartDate() const { return start_; }
  const FlowStop& Stop() const { return stop_; }

  /// What the wells would do under these keywords, without going on.
  std::vector<std::vector<double>> Ask(const std::string& keywords);
  /// Runs the next report step under these keywords.
  void Advance(const std::string& keywords);
  /// Lets flow end the run here and close its files. Ahead of the deck's end flow calls this a
  /// failure of its own, so that its status tells nothing.
  void Finish();

 private:
  class Message;
  void Send(const std::string& order, const std::string& keywords);
  Message Receive();
  void AwaitStop();

  FlowProcess& process_;
  size_t vectorCount_;
  std::vector<std::string> wells_;
  std::array<int32_t, 6> start_{};
  FlowStop stop_;
};

}  // namespace gantry::flowlink
