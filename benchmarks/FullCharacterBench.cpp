// A character as players have it: of ten traits six are skills on one attribute, two pieces of gear and one
// gives bonuses. All of it, one attribute raised, one skill added, and one skill with very many defaults.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <vector>

#include "BenchCharacter.h"
#include "core/Numbers.h"

namespace {

using namespace kvr;

constexpr int kSkillPoints[] = {0, 1, 2, 4, 8, 20};

class Adventurer : public BenchCharacter {
 public:
  explicit Adventurer(int count) {
    AddRules();
    wits = &Put(kStats, "name(Wits),symbol(WITS),up(10),down(-10),step(1),basevalue(10)");
    Put(kStats, "name(Might),symbol(MIGHT),up(10),down(-10),step(1),basevalue(10)");
    Put(kStats, "name(Damage Base),basevalue(ST:MIGHT)");
    Put(kStats, "name(Striking ST),basevalue(0)");
    const int skillCount = count * 6 / 10, pieceCount = count * 2 / 10;
    for (int i = 0; i < skillCount; ++i) AddSkill(i);
    for (int i = 0; i < pieceCount; ++i) AddPiece(i);
    // Two bonuses for five traits.
    const int giverCount = count - static_cast<int>(character.Items.Count());
    for (int i = 0; i < giverCount; ++i) {
      AddGiver((i + 1) * (count * 4 / 10) / giverCount - i * (count * 4 / 10) / giverCount);
    }
    for (clsItem& item : character.Items) character.AddBonusesFromOwner(item);
    character.CreateAllAffectsLinks();
    character.RecalculateAll();
  }

  // The level of every skill is what its points, its defaults and the bonuses on it come to, and every piece
  // has its price and damage.
  bool IsRight() {
    std::vector<double> bought;
    for (std::size_t i = 0; i < skills.size(); ++i) {
      const double level = BoughtLevel(i, bought);
      bought.push_back(level);
      const double bonus = kSkillPoints[i % 6] > 0 ? given_[i] : 0;
      if (skills[i]->BaseLevel() != level || skills[i]->Level() != level + bonus) return false;
    }
    return std::ranges::all_of(pieces, [](clsItem* piece) {
      return piece->TagItem("cost") == "45" && piece->TagItem("chardamage") == "1d+3|1d-1";
    });
  }

  static std::string SkillText(int i) {
    std::string text = "name(" + Numbered("Craft ", i) + "),type(WITS/A),cat(Trade, Hands),page(B" +
                       std::to_string(100 + i % 200) + "),default(ST:WITS-5";
    if (i % 5 != 0) text += ", SK:" + Numbered("Craft ", i - 1) + "-6";
    return text + ")";
  }

  clsItem* wits = nullptr;
  std::vector<clsItem*> skills, pieces;

 private:
  void AddRules() {
    auto type = std::make_unique<clsSkillCosts>();
    type->NewTagList("name(WITS/A),defaultstat(ST:WITS),baseadj(-2),costs(1/2/4/8),relname(WITS)");
    character.SkillTypes.push_back(std::move(type));
    clsBasicDamage row;
    row.ST = 10;
    row.THBase = row.SWBase = "1";
    row.THAdd = "-2";
    row.SWAdd = "2";
    character.BasicDamageList.push_back(row);
    character.RuleOf = 0;
  }
  void AddSkill(int i) {
    skills.push_back(&Put(kSkills, SkillText(i)));
    skills.back()->SetBasePoints(kSkillPoints[i % 6]);
  }
  void AddPiece(int i) {
    clsItem& piece = Put(kEquipment, "name(" + Numbered("Blade ", i) +
                                         "),basecost(10),baseweight(2),count(3),mode(swing|thrust),"
                                         "damage(sw+1|thr+1),damtype(cut|imp),reach(1|1-2),minst(9|9),"
                                         "skillused(SK:" +
                                         Numbered("Craft ", i) + "|SK:" + Numbered("Craft ", i + 1) + ")");
    auto mod = std::make_unique<clsMod>();
    mod->NewTagList("name(Fine),cost(+50%),level(1)");
    mod->IDKey = character.NewKey();
    mod->Owner = &piece;
    const std::string key = KeyTextOf(mod->IDKey);
    piece.Mods.Add(std::move(mod), key);
    pieces.push_back(&piece);
  }
  // Gives bonuses to skills in turn.
  void AddGiver(int bonuses) {
    given_.resize(skills.size());
    std::string gives;
    for (int i = 0; i < bonuses; ++i, next_ = (next_ + 7) % skills.size()) {
      gives += (i == 0 ? "+1 to SK:" : ", +1 to SK:") + Numbered("Craft ", static_cast<int>(next_));
      given_[next_] += 1;
    }
    Put(kAds,
        "name(" + Numbered("Knack ", givers_++) + "),cost(5/10),baselevel(1),level(1),gives(" + gives + ")");
  }
  // Points buy from Wits - 2; without any the better default is the level. No default here is worth points.
  double BoughtLevel(std::size_t i, const std::vector<double>& bought) const {
    const double start = wits->Score() - 2;
    const int points = kSkillPoints[i % 6];
    if (points > 0) return start + (points >= 8 ? 4 + (points - 8) / 4 : std::log2(points) + 1);
    const double attribute = wits->Score() - 5;
    const bool fromOther = i % 5 != 0 && kSkillPoints[(i - 1) % 6] > 0;
    return fromOther ? std::max(attribute, bought[i - 1] - 6) : attribute;
  }

  std::vector<double> given_;
  std::size_t next_ = 0;
  int givers_ = 0;
};

void RecalculateFullCharacter(benchmark::State& state) {
  Adventurer hero(static_cast<int>(state.range(0)));
  if (!hero.IsRight()) state.SkipWithError("a level, price or damage is wrong");
  for (auto _ : state) hero.character.RecalculateAll();
  if (!hero.IsRight()) state.SkipWithError("a level, price or damage is wrong afterwards");
  state.counters["bonuses"] = static_cast<double>(hero.character.Bonuses.size());
  state.SetComplexityN(state.range(0));
}

// The counter tells how many traits were calculated for one change of the attribute.
void RaiseAttributeOfManySkills(benchmark::State& state) {
  Adventurer hero(static_cast<int>(state.range(0)));
  double score = 10;
  hero.wits->SetScoreTo(score = 13);
  if (!hero.IsRight()) state.SkipWithError("a level is wrong after the change");
  const long before = hero.events.suspended;
  for (auto _ : state) hero.wits->SetScoreTo(score = score == 13 ? 14 : 13);
  state.counters["calculated"] =
      static_cast<double>(hero.events.suspended - before) / static_cast<double>(state.iterations());
  state.counters["skills"] = static_cast<double>(hero.skills.size());
  if (!hero.IsRight()) state.SkipWithError("a level is wrong after many changes");
}

void AddOneSkill(benchmark::State& state) {
  Adventurer hero(static_cast<int>(state.range(0)));
  const std::string text = Adventurer::SkillText(static_cast<int>(hero.skills.size()) + 1);
  for (auto _ : state) {
    const auto begin = std::chrono::steady_clock::now();
    const std::int32_t key = hero.character.CreateNewItem(kSkills, text, "", "", -1, -1, -1);
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    if (key == 0) state.SkipWithError("not added");
    hero.character.RemoveItem(KeyTextOf(key));
  }
  if (!hero.IsRight()) state.SkipWithError("a level is wrong after skills came and went");
}

void SkillWithManyDefaults(benchmark::State& state) {
  Adventurer hero(500);
  std::string defaults;
  const auto count = static_cast<std::size_t>(state.range(0));
  for (std::size_t i = 0; i < count; ++i) {
    defaults += (i == 0 ? "SK:" : ", SK:") + Numbered("Craft ", static_cast<int>(i)) + "-3";
  }
  clsItem& skill = hero.Put(kSkills, "name(Polymath),type(WITS/A),default(" + defaults + ")");
  skill.Calculate();
  // The best has 20 points: 15 less 3, worth 8 points above the start at 8.
  if (skill.Level() != 12 || skill.DefPoints() != Currency(8)) state.SkipWithError("the level is wrong");
  for (auto _ : state) skill.Calculate();
  state.SetComplexityN(state.range(0));
}

BENCHMARK(RecalculateFullCharacter)
    ->Arg(500)
    ->Arg(1500)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK(RaiseAttributeOfManySkills)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(AddOneSkill)->Arg(500)->Arg(5000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SkillWithManyDefaults)->Arg(50)->Arg(100)->Arg(200)->Unit(benchmark::kMicrosecond)->Complexity();

}  // namespace
