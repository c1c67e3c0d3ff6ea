// Recalculation of a character whose traits read one another: all of it, one change in it, and the links.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "BenchCharacter.h"

namespace {

using namespace kvr;

// One attribute for every 24 advantages. An advantage costs twice its attribute, and in groups of five one
// more than the advantage before it.
class LinkedTraits : public BenchCharacter {
 public:
  explicit LinkedTraits(int count) {
    for (int i = 0; i < count; ++i)
      i % 25 == 0 ? AddStat(i / 25) : AddAdvantage(i - i / 25 - 1, (count + 24) / 25);
    character.CreateAllAffectsLinks();
    character.RecalculateAll();
  }

  // Every advantage has the cost that its attribute and its place in the group give.
  bool IsRight() const {
    std::vector<double> costs;
    for (std::size_t i = 0; i < advantages.size(); ++i) {
      double own = 2 * stats[i % stats.size()]->Score();
      costs.push_back(i % 5 == 0 ? own : own + costs[i - 1] + 1);
      if (advantages[i]->Points().ToDouble() != costs[i]) return false;
    }
    return true;
  }

  std::vector<clsItem*> stats, advantages;

 private:
  static std::string Usual() {
    return ",cat(Mental, Social),page(B123),tl(4),mainwin(3),levelnames([none], slight, strong, "
           "great),usernotes(As"
           " the campaign has it: nothing of this is read by any formula, it only lies in the text)";
  }
  void AddStat(int i) {
    stats.push_back(&Put(kStats, "name(" + Numbered("Vigour ", i) + "),symbol(" + Numbered("VG", i) +
                                     "),up(10),down(-10),step(1),basevalue(10)" + Usual()));
  }
  void AddAdvantage(int i, int statCount) {
    std::string formula = "ST:" + Numbered("VG", i % statCount) + " * 2";
    if (i % 5 != 0) formula += " + {AD:" + Numbered("Gift ", i - 1) + "::points} + 1";
    advantages.push_back(&Put(kAds, "name(" + Numbered("Gift ", i) + "),cost(5/10),baselevel(1),formula(" +
                                        formula + ")" + Usual()));
  }
};

void RecalculateAll(benchmark::State& state) {
  LinkedTraits traits(static_cast<int>(state.range(0)));
  if (!traits.IsRight()) state.SkipWithError("a cost is wrong");
  for (auto _ : state) traits.character.RecalculateAll();
  state.SetComplexityN(state.range(0));
}

void OneLevelChange(benchmark::State& state) {
  LinkedTraits traits(static_cast<int>(state.range(0)));
  clsItem& stat = *traits.stats.front();
  stat.SetScoreTo(13);
  if (!traits.IsRight()) state.SkipWithError("a cost is wrong after the change");
  double score = 13;
  for (auto _ : state) stat.SetScoreTo(score = score == 13 ? 14 : 13);
  if (!traits.IsRight()) state.SkipWithError("a cost is wrong after many changes");
}

void LinkAll(benchmark::State& state) {
  LinkedTraits traits(static_cast<int>(state.range(0)));
  for (auto _ : state) traits.character.CreateAllAffectsLinks();
  state.SetComplexityN(state.range(0));
}

void LinkOne(benchmark::State& state) {
  LinkedTraits traits(static_cast<int>(state.range(0)));
  clsItem& item = *traits.advantages[traits.advantages.size() / 2];
  for (auto _ : state) traits.character.CreateAffectsLinks(item);
}

BENCHMARK(RecalculateAll)->Arg(500)->Arg(2000)->Arg(8000)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(OneLevelChange)->Arg(500)->Arg(2000)->Arg(8000)->Unit(benchmark::kMillisecond);
BENCHMARK(LinkAll)->Arg(500)->Arg(2000)->Arg(8000)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(LinkOne)->Arg(500)->Arg(2000)->Arg(8000)->Unit(benchmark::kMillisecond);

}  // namespace
