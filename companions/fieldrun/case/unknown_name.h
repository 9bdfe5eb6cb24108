#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "described_toml/near_word.h"

namespace gantry::fieldrun {

/// What to say of a name that none of a case's tubings, wells or groups has, with the one that was
/// probably meant: `there is no well "p1"; did you mean "P1"?`.
template <class Spec>
std::string UnknownName(std::string_view what, const std::string& name,
                        const std::vector<Spec>& specs) {
  std::vector<std::string_view> names;
  for (const Spec& spec : specs) names.push_back(spec.name);
  return "there is no " + std::string(what) + " \"" + name + "\"" +
         toml_reader::DidYouMean(name, names);
}

}  // namespace gantry::fieldrun
