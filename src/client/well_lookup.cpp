#include "client/well_lookup.h"

#include <algorithm>

#include "client/name_index.h"

namespace gantry {

namespace {

std::vector<size_t> FirstPlaces(std::span<const std::string> names,
                                std::span<const std::string> list) {
  const NameIndex index(list);
  std::vector<size_t> places;
  places.reserve(names.size());
  for (const std::string& name : names) {
    places.push_back(index.Find(name).value_or(WellLookup::kMissing));
  }
  return places;
}

}  // namespace

WellLookup::WellLookup(std::span<const std::string> asked)
    : asked_(asked), placesInAsked_(FirstPlaces(asked, asked)) {}

const std::vector<size_t>& WellLookup::PlacesIn(std::span<const std::string> replied) {
  if (std::ranges::equal(asked_, replied)) return placesInAsked_;
  placesInReply_ = FirstPlaces(asked_, replied);
  return placesInReply_;
}

}  // namespace gantry
