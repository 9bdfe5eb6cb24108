#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/wire_entries.h"

namespace gantry::test {

/// One well of the simulated field, in the simulator's units. A producer's liquid is its potential
/// or what its constraints allow, whichever is less; all else follows from the liquid.
struct SimulatedWell {
  std::string name;
  std::string type = "PRODUCER";
  std::string status = "OPEN";
  double potential = 1000.0;  ///< liquid of a producer, the injected fluid of an injector
  double uptime = 1.0;
  std::map<std::string, double> constraints = {};

  double Flow() const;
  double Value(const std::string& item) const;
};

/// A field as a simulator knows it, in the simulator's units, and what it was told.
struct SimulatedField {
  std::string version = "2017.2";
  bool isMetric = true;
  Texts components = {"C1", "C2"};  ///< none for black oil
  std::string eosName = "PR";
  Numbers binaryInteraction = {0.5};
  std::map<std::string, Numbers> eosProperties = {{"Molecular weight", {1.0, 2.0}},
                                                  {"TCrit", {2.0, 3.0}},
                                                  {"PCrit", {3.0, 4.0}},
                                                  {"VCRIT", {4.0, 5.0}},
                                                  {"BP", {6.0, 7.0}},
                                                  {"Acentric factor", {5.0, 6.0}},
                                                  {"VSHIFT", {7.0, 8.0}},
                                                  {"OMEGAA", {8.0, 9.0}},
                                                  {"OMEGAB", {9.0, 10.0}},
                                                  {"unheard of", {10.0, 11.0}}};
  Ints startDate = {2019, 12, 31, 0, 0, 0};
  Ints date = {2020, 2, 29, 0, 0, 0};
  double days = 0.0;
  double endOfRun = 100.0;  ///< to be told to go beyond it ends the run where it stands
  std::vector<SimulatedWell> wells = {{"P1", "PRODUCER", "SHUT"},
                                      {"P2", "PRODUCER", "OPEN", 500.0},
                                      {"W1", "WATER_INJECTOR", "OPEN", 800.0},
                                      {"G1", "GAS_INJECTOR", "OPEN", 50000.0}};
  int requests = 0;
  Texts orders;  ///< what it was told but to set up, each as `Describe` writes it
  std::string position = "MODEL_DEFINITION";  ///< where a session finds it
  bool tellsOfAllWells = false;               ///< whichever it was asked for
  bool tellsItemsBackwards = false;
  std::map<std::string, std::string> toldAs;  ///< wells that it tells of under another name
  std::map<std::string, Entries> said;        ///< its answers to messages, in place of its own
  /// A number of a well, in place of `SimulatedWell::Value` where it is set.
  std::function<double(const SimulatedWell& well, const std::string& item)> valueOf;

  SimulatedWell& At(const std::string& name);

 private:
  size_t next_ = 0;  ///< of the wells, where the search begins: they are mostly asked for in turn
};

/// What the simulator of this field says to a request of the external-controller protocol.
std::vector<Entries> AnswerOnWire(SimulatedField& field, const Entries& request);

}  // namespace gantry::test
