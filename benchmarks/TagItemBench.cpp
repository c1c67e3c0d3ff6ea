// Reading tags of a trait with 40 tags, beside a look-up of the same names in a hash map.
#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <unordered_map>

#include "character/clsItem.h"

namespace {

constexpr std::size_t kTags = 40;

// Names as data files have them; the values are short, as most are.
std::string TagName(std::size_t i) {
  constexpr std::array<const char*, 8> kWords = {"cost",      "upto",       "page",  "cat",
                                                 "basevalue", "levelnames", "gives", "tl"};
  return kWords[i % kWords.size()] + (i < kWords.size() ? std::string() : std::to_string(i));
}

struct Data {
  std::array<std::string, kTags> names;
  std::unordered_map<std::string, std::string> map;
  kvr::clsItem item;

  Data() {
    std::string list = "name(Sample)";
    for (std::size_t i = 0; i < kTags; ++i) {
      names[i] = TagName(i);
      map[names[i]] = "value " + std::to_string(i);
      list += "," + names[i] + "(" + map[names[i]] + ")";
    }
    item.NewTagList(list);
  }
  bool Agree() {
    for (const std::string& name : names) {
      if (item.TagItem(name) != map[name]) return false;
    }
    return map.size() == kTags;
  }
};

// Runs `read` over the names in turn.
template <class Read>
void Measure(benchmark::State& state, Read&& read) {
  Data data;
  if (!data.Agree()) state.SkipWithError("the trait and the map differ");
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(read(data, data.names[i]));
    i = i + 1 < kTags ? i + 1 : 0;
  }
}

void TagItem(benchmark::State& state) {
  Measure(state, [](Data& data, const std::string& name) { return data.item.TagItem(name); });
}
void FreeTag(benchmark::State& state) {
  Measure(state, [](Data& data, const std::string& name) { return data.item.FreeTag(name); });
}
void MapFind(benchmark::State& state) {
  Measure(state, [](Data& data, const std::string& name) { return data.map.find(name); });
}

// TagItem hands out a copy of the value, FreeTag a view; the map's find copies nothing.
BENCHMARK(TagItem)->Name("TagItem of 40/ours");
BENCHMARK(MapFind)->Name("TagItem of 40/reference");
BENCHMARK(FreeTag)->Name("FreeTag of 40/ours");
BENCHMARK(MapFind)->Name("FreeTag of 40/reference");

}  // namespace
