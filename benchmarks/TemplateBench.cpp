// Adding a template that brings many traits, with directives, levels and modifiers; removing it; and giving
// the whole of it back by a cancel at the end.
#include <benchmark/benchmark.h>

#include "BenchCharacter.h"

namespace {

using namespace kvr;

class TemplateWorld : public BenchCharacter {
 public:
  explicit TemplateWorld(int count) {
    env.Config.AutoAddNeeds = 0;
    std::string brought;
    for (int i = 0; i < count; ++i) {
      AddRecord(kAds,
                "name(" + Numbered("Gift ", i) +
                    "),cost(5/10/15),cat(Mental, Social),page(B123),mainwin(3),"
                    "tint(#choice(red, green, blue)%choice%),levelnames([none], slight, strong, great)," +
                    (i % 10 == 0 ? "gives(+1 to ST:" + Numbered("Own Trait ", 1 + i / 10 % 9) + ")," : "") +
                    (i % 5 == 0 ? "formula(ST:Vigour * 2)," : "") + "upto(3)");
      brought += (i ? ", {AD:" : "{AD:") + Numbered("Gift ", i) +
                 (i % 4 == 0 ? " = 2 with {Sturdy, +10%}" : "") + " respond green}";
    }
    AddRecord(kPackages, "name(Whole),owns(yes),locks(yes),adds(" + brought + ")");
    AddRecord(kPackages, "name(Canceled),owns(yes),adds(" + brought + "),select1(list(AD:Gift 00000x))");
    for (int i = 0; i < 100; ++i) {
      Put(i < 10 ? kStats : kAds,
          "name(" + (i == 0 ? "Vigour" : Numbered("Own Trait ", i)) +
              "),cost(5),step(1),basevalue(10),up(10),down(-10),baselevel(1),needs(AD:Elsewhere),page(B7)");
    }
    character.CreateAllAffectsLinks();
    character.RecalculateAll();
  }
  ~TemplateWorld() { character.TerminateItems(); }

  std::int32_t Add(const char* name) {
    const std::int32_t id =
        character.AddItemFromSystem(system.FindItem(name, kPackages)->CollectionKey(), "", 0, 0, 0);
    env.log.Clear();
    return id;
  }
  bool Brought(int count) {
    const clsItem* first = character.FindItem("Gift 00000", kAds);
    return first && first->Level() == 2 && first->Mods.Count() == 1 && first->FreeTag("tint") == "green" &&
           character.Count(kAds) == 90 + count;
  }

 private:
  void AddRecord(ItemType type, const std::string& tags) {
    clsSystemItem& item = system.NewItem();
    item.NewTagList(tags);
    item.ItemType = type;
    item.IDKey = system.NewKey();
    system.AddOrReplaceItem(item, "");
  }
};

void AddTemplate(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    {
      TemplateWorld world(count);
      state.ResumeTiming();
      const bool added = world.Add("Whole") != 0;
      state.PauseTiming();
      if (!added || !world.Brought(count)) return state.SkipWithError("the template didn't bring its traits");
    }
    state.ResumeTiming();
  }
  state.SetComplexityN(count);
}

void CancelTemplate(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  TemplateWorld world(count);
  world.character.CalcPointCosts();
  const std::string before = world.character.FileText();
  for (auto _ : state) {
    if (world.Add("Canceled") != 0) return state.SkipWithError("nothing was cancelled");
  }
  if (world.character.FileText() != before) state.SkipWithError("the character isn't what it was");
  state.SetComplexityN(count);
}

void RemoveTemplate(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    {
      TemplateWorld world(count);
      const std::int32_t id = world.Add("Whole");
      state.ResumeTiming();
      world.character.RemoveItem(KeyTextOf(id));
      state.PauseTiming();
      if (world.character.Items.Count() != 100) return state.SkipWithError("traits stayed behind");
    }
    state.ResumeTiming();
  }
  state.SetComplexityN(count);
}

BENCHMARK(AddTemplate)->Arg(50)->Arg(200)->Arg(800)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(RemoveTemplate)->Arg(50)->Arg(200)->Arg(800)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(CancelTemplate)->Arg(50)->Arg(200)->Arg(800)->Unit(benchmark::kMillisecond)->Complexity();

}  // namespace
