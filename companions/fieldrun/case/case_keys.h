#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "fieldrun/case/case_model.h"

namespace gantry::fieldrun {

/// What one key of a case file may hold. The tables below are the only description of the keys:
/// the reader parses and checks by them, and the reference is printed from them.
struct KeyDescription {
  std::string_view name;
  std::string_view meaning;
  Quantity quantity = Quantity::kNone;
  bool isRequired = false;
  double low = -1e300;            ///< smallest number, in field units
  double high = 1e300;            ///< largest number
  double usualLow = -1e300;       ///< a smaller number can hardly be meant, and is warned of
  double usualHigh = 1e300;       ///< nor a larger one
  std::string_view choices = "";  ///< words divided by '|'; a choice is kept as its position
  std::string_view fallback =
      "";  ///< what stands in when the key is missing, as the reference says
};

/// A key with a number as its target and with choices takes either; a word stands for 0.
template <class Spec>
struct KeyRow {
  KeyDescription about;
  std::variant<std::string Spec::*, double Spec::*, int Spec::*, bool Spec::*,
               std::optional<double> Spec::*, std::optional<int> Spec::*,
               std::optional<Date> Spec::*, std::vector<double> Spec::*,
               std::vector<std::string> Spec::*>
      target;
};

template <class Spec>
using KeyTable = std::span<const KeyRow<Spec>>;

/// One section of a case file, as the reference shows it.
struct SectionDescription {
  std::string_view name;
  std::string_view meaning;
  bool isList = false;
};

KeyTable<GeneralSpec> GeneralKeys();
KeyTable<SimulatorSpec> SimulatorKeys();
KeyTable<TimeSpec> TimeKeys();
KeyTable<NetworkSpec> NetworkKeys();
KeyTable<TubingSpec> TubingKeys();
KeyTable<WellSpec> WellKeys();
KeyTable<GroupSpec> GroupKeys();

/// In the order of the file: case, simulator, time, network, tubing, well, group.
std::span<const SectionDescription> CaseSections();

/// Does something with each section in the order of the file: its description and its keys.
template <class Action>
void ForEachSection(Action action) {
  const auto sections = CaseSections();
  action(sections[0], GeneralKeys());
  action(sections[1], SimulatorKeys());
  action(sections[2], TimeKeys());
  action(sections[3], NetworkKeys());
  action(sections[4], TubingKeys());
  action(sections[5], WellKeys());
  action(sections[6], GroupKeys());
}

/// The names of the choices of a key, by position.
std::vector<std::string_view> SplitChoices(std::string_view choices);

/// The whole reference of a case file, as plain text.
std::string CaseReference();

/// The same as a JSON schema (draft 7), as editors take it for TOML files.
std::string CaseSchema();

}  // namespace gantry::fieldrun
