// Prerequisites: the check of a whole character, and the filter over the library that a list runs.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "BenchCharacter.h"
#include "character/modNeeds.h"

namespace {

using namespace kvr;

// Skills that need one another, a level, one of two, or a formula; each tenth needs what nobody has, and
// three behind it fail with it; another tenth has a taboo.
class NeedyCharacter : public BenchCharacter {
 public:
  static std::string NeedsOf(int i, int count) {
    const std::string before = "SK:" + Numbered("Art ", (i + count - 1) % count);
    switch (i % 10) {
      case 0:
        return ",needs(SK:Nobody's Art)";
      case 1:
      case 2:
        return ",needs(" + before + " >= 10)";
      case 3:
        return ",needs(" + before + ", (SK:Lost Art | SK:" + Numbered("Art ", (i * 7) % count) + "))";
      case 4:
        return ",taboo(SK:" + Numbered("Art ", (i + 4) % count) + ")";
      case 5:
        return ",needs(@max(ST:Wit, 3) >= 10)";
      default:
        return "";
    }
  }
  explicit NeedyCharacter(int count) {
    Put(kStats, "name(Wit),score(12)");
    for (int i = 0; i < count; ++i) {
      Put(kSkills, "name(" + Numbered("Art ", i) +
                       "),level(12),points(2),page(B123),tl(4),cat(Crafts, Arts)" + NeedsOf(i, count) +
                       ",usernotes(As the campaign has it: none of this is read)");
    }
  }
};

void CheckAll(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  NeedyCharacter needy(count);
  std::size_t lines = 0;
  for (auto _ : state) lines = needy.character.NeedsCheckAll(true).size();
  // A line for the trait and one for each way to help it, of which one in ten has two.
  std::size_t failed = 0, broken = 0;
  for (const clsItem& item : needy.character.Items) {
    failed += item.NeedsCheck() != 0;
    broken += item.TabooFailed() != 0;
  }
  const std::size_t tens = static_cast<std::size_t>(count) / 10;
  if (failed != 4 * tens || broken != tens || lines != 2 * failed + tens + broken)
    state.SkipWithError("the report is wrong");
  state.SetComplexityN(state.range(0));
}

class NeedyLibrary : public NeedyCharacter {
 public:
  explicit NeedyLibrary(int count) : NeedyCharacter(500) {
    for (int i = 0; i < count; ++i) {
      clsSystemItem& record = system.NewItem();
      record.ItemType = kSkills;
      record.NewTagList("name(" + Numbered("Craft ", i) + "),type(IQ/H),page(B123),tl(4),default(SK:" +
                        Numbered("Art ", i % 500) + "-4, ST:Wit-6),cat(Crafts)" + NeedsOf(i, 500 + i % 3) +
                        ",description(What it is good for, where it is learned, and what a master of it can "
                        "do that others can't.)");
      system.AddOrReplaceItem(record, "Crafts");
    }
  }
};

void LibraryFilter(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  NeedyLibrary library(count);
  long allowed = 0;
  for (auto _ : state) {
    allowed = 0;
    for (const clsSystemItem& record : library.system.Items)
      allowed += modNeeds::MayBeTaken(library.character, record);
  }
  long expected = 0;
  for (const clsSystemItem& record : library.system.Items)
    expected += modNeeds::WhyNot(library.character, record).empty();
  if (allowed != expected || allowed <= count / 2 || allowed >= count)
    state.SkipWithError("the filter is wrong");
  state.SetComplexityN(state.range(0));
}

BENCHMARK(CheckAll)->Arg(500)->Arg(2000)->Arg(8000)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(LibraryFilter)->Arg(20000)->Arg(80000)->Unit(benchmark::kMillisecond)->Complexity();

}  // namespace
