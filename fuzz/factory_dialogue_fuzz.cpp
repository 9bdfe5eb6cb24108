// What anybody may say to the run factory: in one piece and byte by byte it must come to the same.
// Reads: companions/runfactory/dialogue.cpp

#include "runfactory/dialogue.h"
#include "target.h"

FUZZ_TARGET(factory_dialogue) {
  using gantry::cluster::Dialogue;
  using gantry::fuzz::Require;
  Dialogue whole;
  const Dialogue::State state = whole.Take(input);
  Dialogue slow;
  for (const char& byte : input) slow.Take({&byte, 1});
  Require(slow.Take({}) == state && slow.Refusal() == whole.Refusal());
  Require(slow.Fault() == whole.Fault());
  Require(slow.Request().directory == whole.Request().directory);
}
