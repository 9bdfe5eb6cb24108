#include "client/name_index.h"

#include <gtest/gtest.h>

#include "client/well_lookup.h"

namespace gantry {
namespace {

TEST(NameIndex, FindsTheFirstOfEqualNamesInListsOfAnySize) {
  std::vector<std::string> names;
  for (int i = 0; i < 5000; ++i) names.push_back("W" + std::to_string(i % 4000));
  NameIndex grown;
  for (const std::string& name : names) grown.Add(name);
  for (const NameIndex& index : {NameIndex(names), grown}) {
    for (size_t i = 0; i < 4000; ++i) ASSERT_EQ(index.Find(names[i]), i);
    EXPECT_EQ(index.Find("W4000"), std::nullopt);
    EXPECT_EQ(index.Find(""), std::nullopt);
  }
  EXPECT_EQ(NameIndex().Find("W1"), std::nullopt);
}

TEST(WellLookup, FindsTheFirstEqualWellOfEachReply) {
  using Names = std::vector<std::string>;
  using Places = std::vector<size_t>;
  const Names asked = {"A", "B", "A"};
  WellLookup lookup(asked);
  EXPECT_EQ(lookup.PlacesIn(asked), (Places{0, 1, 0}));
  EXPECT_EQ(lookup.PlacesIn(Names{"B", "B", "A", "A"}), (Places{2, 0, 2}));
  EXPECT_EQ(lookup.PlacesIn(Names{"A"}), (Places{0, WellLookup::kMissing, 0}));
  EXPECT_EQ(lookup.PlacesIn(asked), (Places{0, 1, 0}));
}

}  // namespace
}  // namespace gantry
