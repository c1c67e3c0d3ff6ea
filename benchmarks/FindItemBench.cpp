// Finding the traits of a character by type, name and extension, beside a hash map with the ready key.
#include <benchmark/benchmark.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "BenchCharacter.h"

namespace {

using namespace kvr;

class Crowd : public BenchCharacter {
 public:
  explicit Crowd(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      const std::string name = Numbered("Craft of Stone ", static_cast<int>(i));
      const bool hasExt = i % 3 == 0;
      Put(TypeOf(i), "name(" + name + ")" + (hasExt ? ",nameext(Broad)" : ""));
      names.push_back(hasExt ? name + " (Broad)" : name);
      keys.push_back(std::to_string(TypeOf(i)) + names.back());
    }
    for (clsItem& item : character.Items) map[std::to_string(item.ItemType) + item.FullName()] = &item;
  }
  static ItemType TypeOf(std::size_t i) { return i % 2 == 0 ? kSkills : kEquipment; }
  bool Agree() const {
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (character.FindItem(names[i], TypeOf(i)) != map.at(keys[i])) return false;
      if (character.FindItem(names[i], kSpells)) return false;
    }
    return map.size() == names.size();
  }

  std::vector<std::string> names, keys;
  std::unordered_map<std::string, clsItem*> map;
};

// The traits in an order of their own, as formulas look for them.
template <class Find>
void LookUp(benchmark::State& state, Find&& find) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const Crowd crowd(count);
  if (!crowd.Agree()) return state.SkipWithError("a trait is not found");
  std::size_t i = 0;
  for (auto _ : state) {
    i = (i + 97) % count;
    benchmark::DoNotOptimize(find(crowd, i));
  }
}

void FindOurs(benchmark::State& state) {
  LookUp(state, [](const Crowd& crowd, std::size_t i) {
    return crowd.character.FindItem(crowd.names[i], Crowd::TypeOf(i));
  });
}
void FindReference(benchmark::State& state) {
  LookUp(state, [](const Crowd& crowd, std::size_t i) { return crowd.map.find(crowd.keys[i])->second; });
}

BENCHMARK(FindReference)->Name("CharacterFindItem/reference")->Arg(500)->Arg(5'000);
BENCHMARK(FindOurs)->Name("CharacterFindItem/ours")->Arg(500)->Arg(5'000);

}  // namespace
