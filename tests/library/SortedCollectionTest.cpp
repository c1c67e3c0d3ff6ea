// The sorted collection against a plain map, through long runs of random operations.
#include "library/SortedCollection.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace kvr {
namespace {

struct Thing {
  std::string name;
  int number = 0;
};
std::weak_ordering SortOrder(const Thing& a, const Thing& b) {
  if (auto order = LCase(a.name) <=> LCase(b.name); order != 0) return order;
  return a.number <=> b.number;
}

using Things = SortedCollection<Thing>;

std::unique_ptr<Thing> Make(std::string name, int number = 0) {
  return std::make_unique<Thing>(Thing{std::move(name), number});
}

TEST(SortedCollection, TellsOfKeysThatExistOrAreMissing) {
  Things things;
  EXPECT_TRUE(things.Add(Make("Foo"), "Foo"));
  EXPECT_EQ(things.Error(), 0);
  EXPECT_FALSE(things.Add(Make("foo", 2), "FOO"));
  EXPECT_EQ(things.Error(), 457);
  EXPECT_EQ(things.Item("fOO")->number, 0);
  EXPECT_EQ(things.Item("bar"), nullptr);
  EXPECT_EQ(things.Error(), 5);
  auto other = Make("Foo", 3);
  EXPECT_EQ(things.AddOrFind(other, "foo"), things.Item("foo"));
  EXPECT_EQ(other->number, 3) << "a refused item stays with the caller";
  EXPECT_THROW(things.Item(std::size_t{0}), KVRError);
  EXPECT_THROW(things.Item(std::size_t{2}), KVRError);
}

TEST(SortedCollection, ListsWithoutOwning) {
  Thing b{"b", 1}, a{"a", 2};
  SortedCollection<Thing, Thing*> list;
  list.Add(&b, "k1");
  list.Add(&a, "k2");
  EXPECT_EQ(&list.Item(std::size_t{1}), &a);
  EXPECT_EQ(list.Take("k2"), &a);
  EXPECT_EQ(list.Position(b), 1u);
  EXPECT_EQ(list.Position(a), 0u);
}

void ExpectSame(const Things& things, const std::map<std::string, int>& model) {
  ASSERT_EQ(things.Count(), model.size());
  std::size_t position = 0;
  auto wanted = model.begin();
  for (const Thing& thing : things) {
    ASSERT_EQ(thing.name, wanted->first);
    ASSERT_EQ(things.KeyAt(++position), wanted->first);
    ASSERT_EQ(things.PositionOfKey(wanted->first), position);
    ASSERT_EQ(things.Position(thing), position);
    ++wanted;
  }
}

// Names in lower case, so that the map has the same order. Looking by position in the middle of it makes the
// collection sort and close its gaps at every possible moment.
TEST(SortedCollection, AgreesWithAMapThroughRandomOperations) {
  std::mt19937 random(7);
  for (int round = 0; round < 30; ++round) {
    Things things;
    std::map<std::string, int> model;
    for (int step = 0; step < 400; ++step) {
      const std::string name = "n" + std::to_string(random() % 60);
      switch (random() % 5) {
        case 0:
        case 1:
          ASSERT_EQ(things.Add(Make(name), name), model.emplace(name, 0).second);
          break;
        case 2:
          ASSERT_EQ(things.Remove(name), model.erase(name) == 1);
          break;
        case 3:
          if (model.empty()) break;
          {
            const std::size_t i = random() % model.size();
            auto place = std::next(model.begin(), static_cast<std::ptrdiff_t>(i));
            ASSERT_EQ(things.Item(i + 1).name, place->first);
            things.RemoveAt(i + 1);
            model.erase(place);
          }
          break;
        default:
          if (random() % 4 == 0) ExpectSame(things, model);
      }
      ASSERT_EQ(things.Count(), model.size());
    }
    ExpectSame(things, model);
    Things moved = std::move(things);
    ExpectSame(moved, model);
  }
}

}  // namespace
}  // namespace kvr
