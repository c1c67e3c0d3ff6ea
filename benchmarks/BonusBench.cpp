// Bonuses of many traits: making their links, calculating with them, and one trait that comes and goes.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "BenchCharacter.h"

namespace {

using namespace kvr;

// A tenth of the traits are attributes, the others advantages. Two of five advantages give to one attribute,
// one in a hundred to a category that holds one advantage in a hundred.
class Givers : public BenchCharacter {
 public:
  explicit Givers(int count) : statCount_(count / 10) {
    for (int i = 0; i < statCount_; ++i) {
      Put(kStats, "name(" + Numbered("Vigour ", i) + "),symbol(" + Numbered("VG", i) +
                      "),up(10),down(-10),step(1),basevalue(10)");
    }
    for (int i = 0; i < count - statCount_; ++i) AddAdvantage(i);
    for (clsItem& item : character.Items) character.AddBonusesFromOwner(item);
    character.CreateAllAffectsLinks();
    character.RecalculateAll();
  }

  // Every giver has two levels, and all that is given stands on the attributes.
  bool IsRight() const {
    double given = 0;
    for (const clsItem& stat : character.ItemsByType[kStats]) given += stat.Score() - 10;
    return given == 2 * givers_;
  }

 private:
  void AddAdvantage(int i) {
    std::string gives;
    if (i % 5 < 2) {
      gives = ",gives(+1 to ST:" + Numbered("Vigour ", i % statCount_) + ")";
      ++givers_;
    } else if (i % 100 == 2) {
      gives = ",gives(+1pts to ADCAT:" + Numbered("Order ", i / 100) + ")";
    }
    Put(kAds, "name(" + Numbered("Gift ", i) + "),cost(5/10),baselevel(2),level(2),cat(" +
                  (i % 100 == 7 ? Numbered("Order ", i / 100) : "Mental, Social") + ")" + gives);
  }

  int statCount_;
  double givers_ = 0;
};

void LinkAllBonuses(benchmark::State& state) {
  Givers givers(static_cast<int>(state.range(0)));
  if (!givers.IsRight()) state.SkipWithError("a score is wrong");
  for (auto _ : state) givers.character.CreateAllAffectsLinks();
  givers.character.RecalculateAll();
  if (!givers.IsRight()) state.SkipWithError("a score is wrong behind new links");
  state.SetComplexityN(state.range(0));
}

void RecalculateAllBonuses(benchmark::State& state) {
  Givers givers(static_cast<int>(state.range(0)));
  if (!givers.IsRight()) state.SkipWithError("a score is wrong");
  for (auto _ : state) givers.character.RecalculateAll();
  if (!givers.IsRight()) state.SkipWithError("a score is wrong behind many calculations");
  state.SetComplexityN(state.range(0));
}

void BonusComesAndGoes(benchmark::State& state) {
  Givers givers(static_cast<int>(state.range(0)));
  KVRCharacter& character = givers.character;
  const std::string list =
      "name(Passing Gift),cost(5/10),gives(+3 to ST:" + Numbered("Vigour ", 0) + ",-3 to VG00000)";
  for (auto _ : state) {
    character.RemoveItem(KeyTextOf(character.CreateNewItem(kAds, list, "", "", -1, -1, -1)));
  }
  if (!givers.IsRight()) state.SkipWithError("a score is wrong behind a trait that has gone");
}

BENCHMARK(LinkAllBonuses)->Arg(500)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(RecalculateAllBonuses)
    ->Arg(500)
    ->Arg(5000)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK(BonusComesAndGoes)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);

}  // namespace
