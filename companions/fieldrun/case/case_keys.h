#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "described_toml/described_key.h"
#include "fieldrun/case/case_model.h"

namespace gantry::fieldrun {

using toml_reader::Key;
using toml_reader::KeyRow;
using toml_reader::KeyTable;
using toml_reader::Range;

/// What a section or a list of sections is made of.
template <class Part>
struct SectionSpec {
  using Type = Part;
  static constexpr bool kIsList = false;
};
template <class Spec>
struct SectionSpec<std::vector<Spec>> {
  using Type = Spec;
  static constexpr bool kIsList = true;
};

/// One section of a case file, or a list of sections: where it is kept, and its keys. These rows
/// are the only description of a case: by them it is read and checked, and its reference printed.
template <class Part>
struct CaseSection {
  using Spec = typename SectionSpec<Part>::Type;
  static constexpr bool kIsList = SectionSpec<Part>::kIsList;

  std::string_view name;
  std::string_view meaning;
  Part CaseModel::*part;
  KeyTable<Spec> keys;
};

/// In the order of the file.
using CaseParts =
    std::tuple<CaseSection<GeneralSpec>, CaseSection<SimulatorSpec>, CaseSection<TimeSpec>,
               CaseSection<NetworkSpec>, CaseSection<std::vector<TubingSpec>>,
               CaseSection<std::vector<WellSpec>>, CaseSection<std::vector<GroupSpec>>,
               CaseSection<std::vector<EventSpec>>>;
const CaseParts& CaseSections();

/// Does something with each section in the order of the file.
template <class Action>
void ForEachSection(Action action) {
  std::apply([&](const auto&... section) { (action(section), ...); }, CaseSections());
}

/// The kinds of a row here are WellKinds.
KeyTable<WellSpec> WellKeys();

/// The keys of a well and of a group that an event may change, under the same names.
KeyTable<WellSpec> ChangesOfWells();
KeyTable<GroupSpec> ChangesOfGroups();

template <class Spec>
bool HasKey(KeyTable<Spec> keys, std::string_view name) {
  return std::ranges::any_of(keys, [&](const auto& row) { return row.about.name == name; });
}

/// The whole reference of a case file, as plain text.
std::string CaseReference();

/// The same as a JSON schema (draft 7), as editors take it for TOML files.
std::string CaseSchema();

}  // namespace gantry::fieldrun
