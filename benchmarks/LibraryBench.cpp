// Loading generated data files into the library, beside reading and copying their lines; finding traits,
// beside a hash map with the ready key; and what a loaded library takes, as a multiple of its text
// ("memory").
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/ScriptedPrompts.h"
#include "core/clsFileReader.h"
#include "library/KVRSystem.h"

namespace {

using kvr::ItemType;

constexpr std::string_view kSyllables[] = {"ar", "bel", "cor", "dun", "el", "fa", "gor", "hin", "is", "ko"};

std::string Word(std::size_t seed) {
  std::string word;
  for (std::size_t n = seed; word.size() < 8; n = n / 10 + seed * 7) word += kSyllables[n % 10];
  word[0] = static_cast<char>(word[0] - 'a' + 'A');
  return word;
}

// A name that no other trait has, with an extension for every third.
std::string FullName(std::size_t i) {
  std::string name = Word(i) + " " + Word(i * 31 + 7) + " " + std::to_string(i);
  if (i % 3 == 0) name += " (" + Word(i + 5) + ")";
  return name;
}

ItemType TypeOf(std::size_t i) {
  return i % 4 == 0 ? kvr::kAds : i % 4 == 1 ? kvr::kSkills : kvr::kEquipment;
}

// About 400 bytes a line: formulas with quotes, lists, a description with commas.
std::string Line(std::size_t i) {
  constexpr std::string_view kSecond[] = {", 15", ", IQ/A", ", basecost(15)", ", baseweight(2)"};
  std::string line = FullName(i) + std::string(kSecond[i % 4]);
  line += ", cat(" + Word(i % 25) + ", " + Word(i % 13 + 100) + ")";
  line += ", page(" + std::to_string(i % 300) + "), tl(" + std::to_string(i % 9) + ")";
  line +=
      ", needs(ST:Wits >= " + std::to_string(i % 15) + ", AD:" + Word(i + 1) + " | SK:" + Word(i + 2) + ")";
  line += ", gives(+" + std::to_string(i % 5) + " to \"SK:" + Word(i + 3) + "\" when \"at sea\")";
  line += ", default(ST:Wits - 5, {SK:" + Word(i + 4) + " (Broad)} - 3), levelnames([One, Two, Three])";
  line += ", description(";
  while (line.size() < 392) line += Word(line.size() + i) + (line.size() % 3 == 0 ? ", " : " ");
  return line + ")";
}

class World {
 public:
  explicit World(std::size_t traits) : count(traits) {
    const auto folder = std::filesystem::temp_directory_path() /
                        ("kivera-bench-" + std::to_string(::getpid()) + "-" + std::to_string(traits));
    std::filesystem::create_directories(folder);
    const auto file = folder / (std::to_string(traits) + ".kdf");
    std::ofstream(file, std::ios::binary) << Text();
    path = kvr::Files::PathText(file);
    env.log.Start(true, "");
  }
  ~World() {
    std::error_code ignored;
    std::filesystem::remove_all(kvr::Files::Native(path).parent_path(), ignored);
  }
  std::unique_ptr<kvr::KVRSystem> Load() {
    auto system = std::make_unique<kvr::KVRSystem>(env);
    std::string program;
    system->LoadDataFile(path, program);
    return system;
  }

  std::size_t count;
  std::size_t bytes = 0;
  std::string path;
  kvr::ScriptedPrompts prompts;
  kvr::FrontEndEvents events;
  kvr::Environment env{prompts, events};

 private:
  std::string Text() {
    std::string text = "Version=3\r\n";
    constexpr std::string_view kHeads[] = {"[ADVANTAGES]\r\n", "[SKILLS]\r\n", "[EQUIPMENT]\r\n"};
    constexpr ItemType kTypes[] = {kvr::kAds, kvr::kSkills, kvr::kEquipment};
    for (std::size_t section = 0; section < 3; ++section) {
      text += kHeads[section];
      text += "<General>\r\n";
      for (std::size_t i = 0; i < count; ++i)
        if (TypeOf(i) == kTypes[section]) text += Line(i) + "\r\n";
    }
    bytes = text.size();
    return text;
  }
};

World& WorldOf(std::size_t traits) {
  static std::map<std::size_t, std::unique_ptr<World>> worlds;
  auto& world = worlds[traits];
  if (!world) world = std::make_unique<World>(traits);
  return *world;
}

bool LoadsRight(World& world) {
  const auto system = world.Load();
  if (system->Items.Count() != world.count) return false;
  for (std::size_t i = 0; i < world.count; i += 97) {
    const kvr::clsSystemItem* item = system->FindItem(FullName(i), TypeOf(i));
    if (!item || item->TagItem("page") != std::to_string(i % 300) || !item->Category().ends_with("General"))
      return false;
  }
  return true;
}

void LoadOurs(benchmark::State& state) {
  World& world = WorldOf(static_cast<std::size_t>(state.range(0)));
  if (!LoadsRight(world)) return state.SkipWithError("the library differs from its file");
  for (auto _ : state) benchmark::DoNotOptimize(world.Load());
  malloc_trim(0);
  const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
  const auto system = world.Load();
  const std::size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
  state.counters["memory"] = static_cast<double>(after - before) / static_cast<double>(world.bytes);
  state.counters["per_trait"] =
      benchmark::Counter(static_cast<double>(world.count),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void LoadReference(benchmark::State& state) {
  World& world = WorldOf(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    kvr::clsFileReader file;
    if (!file.FileOpen(world.path)) return state.SkipWithError("no file");
    std::vector<std::string> lines;
    while (!file.FileEOF()) lines.emplace_back(file.FileNextLine());
    benchmark::DoNotOptimize(lines.data());
  }
}

// The look-ups go through the traits in an order of their own, as formulas do.
template <class Find>
void LookUp(benchmark::State& state, std::size_t count, Find&& find) {
  std::size_t i = 0;
  for (auto _ : state) {
    i = (i + 7919) % count;
    benchmark::DoNotOptimize(find(i));
  }
}

struct LookUpData {
  std::size_t count = 20'000;
  std::unique_ptr<kvr::KVRSystem> system = WorldOf(count).Load();
  std::vector<std::string> names, keys;
  std::unordered_map<std::string, const kvr::clsSystemItem*> map;

  LookUpData() {
    for (std::size_t i = 0; i < count; ++i) {
      names.push_back(FullName(i));
      const kvr::clsSystemItem* item = system->FindItem(names[i], TypeOf(i));
      keys.push_back(item->CollectionKey());
      map.emplace(keys[i], item);
    }
  }
  bool Agree() const {
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t position = system->ItemPositionByNameAndExt(names[i], TypeOf(i));
      if (position == 0 || &system->Items.Item(position) != map.at(keys[i])) return false;
    }
    return true;
  }
};

const LookUpData& Names() {
  static const LookUpData data;
  return data;
}

void FindItemOurs(benchmark::State& state) {
  const LookUpData& data = Names();
  if (!data.Agree()) return state.SkipWithError("a trait is not found");
  LookUp(state, data.count, [&](std::size_t i) { return data.system->FindItem(data.names[i], TypeOf(i)); });
}

void PositionOurs(benchmark::State& state) {
  const LookUpData& data = Names();
  LookUp(state, data.count,
         [&](std::size_t i) { return data.system->ItemPositionByNameAndExt(data.names[i], TypeOf(i)); });
}

void LookUpReference(benchmark::State& state) {
  const LookUpData& data = Names();
  LookUp(state, data.count, [&](std::size_t i) { return data.map.find(data.keys[i])->second; });
}

BENCHMARK(LoadReference)
    ->Name("LibraryLoad/reference")
    ->Arg(2'000)
    ->Arg(20'000)
    ->Arg(200'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(LoadOurs)
    ->Name("LibraryLoad/ours")
    ->Arg(2'000)
    ->Arg(20'000)
    ->Arg(200'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(LookUpReference)->Name("FindItem/reference");
BENCHMARK(FindItemOurs)->Name("FindItem/ours");
BENCHMARK(LookUpReference)->Name("ItemPositionByNameAndExt/reference");
BENCHMARK(PositionOurs)->Name("ItemPositionByNameAndExt/ours");

}  // namespace
