#pragma once

#include <map>
#include <string>
#include <vector>

#include "client/message_stream.h"

namespace gantry::bench {

/// How large a model is to be.
struct ModelSize {
  int wells = 0;
  int components = 0;
};

/// The simulator's side of the wire for a model of any size: eight wells in ten produce, two inject
/// water, and every hundredth of a compositional model injects gas. It answers what a run of the
/// module asks, with rates that follow the constraints; there is no physics behind it.
class SyntheticSimulator {
 public:
  explicit SyntheticSimulator(ModelSize size);

  /// Answers one message, and gives the word that told what it was. "SHUTDOWN" is left to the
  /// caller to answer.
  std::string AnswerOne(MessageStream& stream);

 private:
  using Answer = void (SyntheticSimulator::*)(MessageStream&, IncomingMessage&);
  static const std::map<std::string, Answer, std::less<>> kAnswers;

  void Setup(MessageStream& stream, IncomingMessage& message);
  void Continue(MessageStream& stream, IncomingMessage& message);
  void ContinueUntil(MessageStream& stream, IncomingMessage& message);
  void QueryWells(MessageStream& stream, IncomingMessage& message);
  void QueryWellWords(MessageStream& stream, IncomingMessage& message);
  void QueryReservoir(MessageStream& stream, IncomingMessage& message);
  void QueryReservoirWords(MessageStream& stream, IncomingMessage& message);
  void QueryFluid(MessageStream& stream, IncomingMessage& message);
  void SetConstraints(MessageStream& stream, IncomingMessage& message);
  void CreateSource(MessageStream& stream, IncomingMessage& message);
  void AcceptSetter(MessageStream& stream, IncomingMessage& message);
  void Shutdown(MessageStream& stream, IncomingMessage& message);

  void SendStep(MessageStream& stream, const char* position) const;
  double ValueOf(const std::string& item, size_t well) const;
  std::string WordOf(const std::string& item, size_t well) const;

  struct Well {
    std::string name;
    const char* type;
    double rate;  ///< the first value of the present constraint
  };
  ModelSize size_;
  std::vector<Well> wells_;
  std::map<std::string, size_t, std::less<>> positions_;
  double time_ = 0.0;
};

}  // namespace gantry::bench
