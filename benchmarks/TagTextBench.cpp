// The text operations that everything rests on: a look-up in a tag list of 40 tags beside a hash map of the
// same names, and lower-casing the text of a large data file beside copying it.
#include <benchmark/benchmark.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "core/TagText.h"
#include "core/Text.h"
#include "core/modTags.h"

namespace {

struct Lookup {
  Lookup() {
    const char* const words[] = {"name",  "page",      "cat",       "cost",
                                 "level", "usernotes", "basevalue", "conditionallist"};
    for (int i = 0; i < 40; ++i) {
      names.push_back(words[i % 8] + (i < 8 ? std::string() : std::to_string(i)));
      map[names.back()] = "value of " + names.back();
      tags.Append(names.back(), map[names.back()]);
    }
  }
  bool Agree() const {
    for (const std::string& name : names)
      if (tags.Value(name) != map.at(name) || kvr::modTags::GetTagValue(name, tags.Text()) != map.at(name))
        return false;
    return tags.Value("none").empty();
  }

  std::vector<std::string> names;
  std::unordered_map<std::string, std::string> map;
  kvr::TagText tags;
};

void TagLookup(benchmark::State& state) {
  const Lookup lookup;
  if (!lookup.Agree()) return state.SkipWithError("the look-ups differ");
  for (auto _ : state)
    for (const std::string& name : lookup.names) benchmark::DoNotOptimize(lookup.tags.Value(name));
}
BENCHMARK(TagLookup)->Name("TagText look-up of 40 names/ours");

void MapLookup(benchmark::State& state) {
  const Lookup lookup;
  for (auto _ : state)
    for (const std::string& name : lookup.names)
      benchmark::DoNotOptimize(lookup.map.find(name)->second.data());
}
BENCHMARK(MapLookup)->Name("TagText look-up of 40 names/reference");

std::string LargeText() {
  std::string text;
  while (text.size() < 8'000'000)
    text += "Long Blade (Curved), DX/A, default(ST:DX - 5), page(K12), cat(Combat, Melee)\r\n";
  return text;
}

void LowerCase(benchmark::State& state) {
  const std::string text = LargeText();
  if (kvr::LCase(text).substr(0, 19) != "long blade (curved)") return state.SkipWithError("not lower-cased");
  for (auto _ : state) benchmark::DoNotOptimize(kvr::LCase(text));
}
BENCHMARK(LowerCase)->Name("LCase of 8 MB/ours")->Unit(benchmark::kMillisecond);

void Copy(benchmark::State& state) {
  const std::string text = LargeText();
  for (auto _ : state) {
    std::string copy(text);
    benchmark::DoNotOptimize(copy.data());
  }
}
BENCHMARK(Copy)->Name("LCase of 8 MB/reference")->Unit(benchmark::kMillisecond);

}  // namespace
