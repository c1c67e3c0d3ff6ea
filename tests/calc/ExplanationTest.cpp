#include "calc/Explanation.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "calc/SkillWorld.h"

namespace kvr {
namespace {

// One trait of each kind, each with all that can go into its numbers.
struct ExplainedWorld : SkillWorld {
  ExplainedWorld() {
    character.Name = "Orla";
    character.RuleOf = 13;
    character.Campaign.BasePoints = 150;
    character.BasicDamageList = {{9, "1", "-2", "1", "-1"}, {99, "2", "0", "3", "1"}};
    wits->SetLevel(4);
    Put(kStats, "name(Striking ST),basevalue(0),step(1)");
    Put(kStats, "name(Damage Base),basevalue({ST:Wits}-2),step(1),up(10)");
    Put(kStats, "name(Light Encumbrance),basevalue(40)");
    Put(kStats, "name(No Encumbrance),basevalue(20)");
    Put(kStats, "name(Pace),basevalue(ST:IQ/2),step(.5),up(5/10),maxscore(ST:IQ-4.4),round(-1)");
    Put(kAds,
        "name(Keen),baselevel(5),cost(5/10),upto(4),control_upto(3),power#(me::level*@max(2, "
        "ST:IQ)),rank$($if(ST:IQ > 9 then \"Sir\" else \"\")),"
        "gives(+1 to SK:Watch upto 2, +1 to ST:Pace, x2 to \"EQ:Bag::weight\", +1 to SK:Watch::parryat)");
    clsItem& beam = Put(kAds, "name(Beam),baselevel(3),formula(%level * 10 + ST:IQ),cost(10/20)");
    PutMod(beam, "name(Slow),level(2),cost(-10%/-25%)");
    PutMod(PutMod(beam, "name(Wide),level(1),cost(+20%)"), "name(Weak),level(1),cost(-50%)");
    PutMod(beam, "name(Late),level(1),cost(-90%),tier(1)");
    clsItem& form = Put(kPackages, "name(Form)");
    clsItem& glow = Put(kPerks, "name(Glow),cost(1),baselevel(1),parentkey(" + form.KeyText() + ")");
    form.SetTagItem("childkeylist", glow.KeyText());
    Put(kSkills, "name(Lore),type(IQ/E),basepoints(8)");
    Put(kSkills,
        "name(Watch),type(IQ/H),basepoints(4),default({ST:IQ}-5, SK:Gone-2, SK:Lore-2),upto(15),"
        "parryat(%level/2+3)");
    Put(kSkills, "name(Guess),type(IQ/H),default(SK:Lore-4)");
    Put(kSpells, "name(Spark),type(IQ/H),bonuslevels(1)");
    Put(kSkills,
        "name(Twin),type(Combo),basepoints(2),combodeffrom({SK:Lore}, {SK:Watch}),comboattacks(1,2)");
    clsItem& bag = Put(kEquipment, "name(Bag),basecost(5*2),baseweight(2),count(3),upto(2)");
    PutMod(bag, "name(Fine),level(1),cost(+1 CF)");
    clsItem& rope =
        Put(kEquipment, "name(Rope),basecost(3),baseweight(1.5),count(1),parentkey(" + bag.KeyText() + ")");
    bag.SetTagItem("childkeylist", rope.KeyText());
    Put(kEquipment,
        "name(Axe),count(1),mode(Cut|Cast),damage(sw+1|2d),minst(ST:IQ-3|),parry(-1|No),"
        "skillused(SK:Watch|)");
    for (clsItem& item : character.Items) character.AddBonusesFromOwner(item);
    CalculateAll();
    // What a calculation cuts it keeps as cut, so the limits have something to do only now.
    Named("Pace").SetLevel(6);
    Named("Keen").SetBaseLevel(5);
    Named("Spark").SetBasePoints(Currency::FromText(".5"));
    Named("Bag").SetTagItem("count", "3");
  }
  clsItem& Named(std::string_view name) { return *character.FindItem(name, kNoType); }
  std::string Explained(std::string_view name, std::string_view tag) {
    clsItem* item = character.FindItem(name, kNoType);
    std::string text;
    for (const std::string& line : item ? ExplainTag(*item, tag) : ExplainTag(character, tag))
      text += line + "\n";
    return text;
  }
};

TEST(Explanation, WholeTreesOfEachKindOfTrait) {
  struct Case {
    const char *trait, *tag;  // "-" for the character
    const char* tree;
  };
  const Case cases[] = {
      {"Pace", "score", R"(score of Pace: 12
  starts at: 7 = ST:IQ/2
    ST:IQ = 14
  Keen gives +3 by "+1 to ST:Pace"
  highest score: 9.6 = ST:IQ-4.4
    ST:IQ = 14
  limited to 9.6 by maxscore(ST:IQ-4.4)
  5 levels of 0.5: +2.5
  rounded to 12
)"},
      {"Pace", "points", R"(points of Pace: 25
  highest score: 9.6 = ST:IQ-4.4
    ST:IQ = 14
  limited to 9.6 by maxscore(ST:IQ-4.4)
  5 levels of 0.5: +2.5
  level 5 of up(5/10) costs 25
)"},
      {"Keen", "level", R"(level of Keen: 3
  upto: 4
  control_upto: 3
  levels bought: 5
  limited to 3 by upto(4), control_upto(3)
)"},
      {"Keen", "points", R"(points of Keen: 15
  level 3 costs: 15 = 5/10
)"},
      {"Keen", "power#", R"(power# of Keen: 42
  me::level*@max(2, ST:IQ) = 42
    @max(2, ST:IQ) = 14
      ST:IQ = 14
    me::level = 3
)"},
      {"Keen", "rank$", R"(rank$ of Keen: Sir
  $if(ST:IQ > 9 then "Sir" else "") = Sir
    ST:IQ > 9 = -1
      ST:IQ = 14
)"},
      {"Beam", "points", R"(points of Beam: 8
  level 3 costs: 44 = 3 * 10 + ST:IQ
    ST:IQ = 14
  Slow is worth: -25%
    level 2 of cost(-10%/-25%)
  Wide with the modifiers on it: +10%
    Weak (-50%): -10 of 20
  before modifiers: 44
  Slow (-25%): -11 of 44
  Wide (+10%): +4.4 of 44
  rounded to 38
  Late (-90%): -34.2 of 38
  limited to -80% in all
  rounded to 8
)"},
      {"Form", "points", R"(points of Form: 1
  level 0 costs: 0
  its children: 1
    Glow: 1
)"},
      {"Watch", "level", R"(level of Watch: 17
  upto: 15
  points spent: 4
  no default from SK:Gone-2
  default from Wits: 8
    limited to 13 by the rule of 13
    13-5 = 8
  default from Lore: 15 = 17-2
  rests on: 14 = ST:IQ
  IQ/H starts at: 12 (-2)
  from 4 points (IQ/H): +3 on 12
  in use: Lore at 15
  that is worth 4 points
  from 8 points (IQ/H): +4 on 12
  level 16 is past upto(15)
  points spent in its place: 4
  from 8 points (IQ/H): +4 on 12
  limited to 15 by upto(15)
  Keen gives +2 by "+1 to SK:Watch upto 2", limited to 2, else 3
)"},
      {"Watch", "points", R"(points of Watch: 4
  upto: 15
  points spent: 4
  level 16 is past upto(15)
  points spent in its place: 4
)"},
      {"Watch", "parry", R"(parry of Watch: 14.5
  Keen gives +3 by "+1 to SK:Watch::parryat"
  parry: 14.5
    %level/2+3 = 11.5
      %level = 17
)"},
      {"Watch", "stat", R"(stat of Watch
  rests on: 14 = ST:IQ
  IQ/H starts at: 12 (-2)
)"},
      {"Watch", "deffrom", R"(deffrom of Watch: Lore
  no default from SK:Gone-2
  default from Wits: 8
    limited to 13 by the rule of 13
    13-5 = 8
  default from Lore: 15 = 17-2
  in use: Lore at 15
  that is worth 4 points
)"},
      {"Watch", "step", R"(step of Watch: +3
  level 17 against IQ at 14
)"},
      {"Guess", "level", R"(level of Guess: 13
  points spent: 0
  default from Lore: 13 = 17-4
  rests on: 14 = ST:IQ
  IQ/H starts at: 12 (-2)
  0 points buy no level
  in use: Lore at 13
  that is worth 1 point
  from 1 point (IQ/H): +1 on 12
)"},
      {"Spark", "level", R"(level of Spark: 14
  points spent: 0.5
  a spell takes a whole point: 1
  rests on: 14 = ST:IQ
  IQ/H starts at: 12 (-2)
  from 1 point (IQ/H): +1 on 12
  no default in use
  the player gives +1
)"},
      {"Twin", "level", R"(level of Twin: 15
  points spent: 2
  Lore: 17
  Watch: 15
    counts for 2 attacks
  the lowest of them: 15
  Combo starts at: 13 (-2)
  from 2 points (Combo): +2 on 13
)"},
      {"Bag", "cost", R"(cost of Bag: 43
  one piece: 10 = 5*2
  before modifiers: 10
  Fine (+1 CF): +10 of 10
  quantity: x2
  with Rope: 3
)"},
      {"Bag", "weight", R"(weight of Bag: 44
  bonuses on weight
    Keen gives x8 by "x2 to "EQ:Bag::weight""
  one piece: 2
  quantity: x2
  with Rope: 1.5
  weight with its bonuses: 44
)"},
      {"Bag", "count", R"(count of Bag: 2
  quantity: 3
  limited to 2 by upto(2)
)"},
      {"Axe", "damage", R"(damage of Axe: 3d+2|2d
  Cut: 3d+2 = sw+1
    strength for damage: 12
      ST:Striking ST = 0
      ST:Damage Base = 12
    swing at 12: 3d+1
  Cast: 2d
    strength for damage: 12
      ST:Striking ST = 0
      ST:Damage Base = 12
)"},
      {"Axe", "minst", R"(minst of Axe: 11|
  Cut: 11 = ST:IQ-3
    ST:IQ = 14
  Cast
)"},
      {"Axe", "charparryscore", R"(charparryscore of Axe: 13.5|
  Cut
    Watch: 17
    used: Watch at 17
    parry of the weapon: -1
    parry with it: 13.5
      Keen gives +3 by "+1 to SK:Watch::parryat"
      17/2+3 = 11.5
  Cast
)"},
      {"-", "totalcost", R"(totalcost of Orla: 118
  attributes: 80
    Wits: 80
  advantages: 23
    Beam: 8
    Keen: 15
  skills: 14
    Lore: 8
    Twin: 2
    Watch: 4
  templates: 1
    Form: 1
)"},
      {"-", "unspentpoints", R"(unspentpoints of Orla: 32
  points to begin with: 150
  points of the campaign: 0
  spent: 118
)"},
      {"-", "currentload", R"(currentload of Orla: 44
  Bag: 44
)"},
      {"-", "enclevel", R"(enclevel of Orla: 5
  load: 44
  No Encumbrance up to 20
  Light Encumbrance up to 40
)"},
      {"-", "basesw", R"(basesw of Orla: 3d+1
  Damage Base: 12
  swing by the table: 3d+1
)"},
      {"Axe", "notes", R"(notes of Axe
  nothing is calculated for this tag; it stands as it was written
)"},
  };
  for (const Case& c : cases) {
    ExplainedWorld world;
    EXPECT_EQ(world.Explained(c.trait, c.tag), c.tree);
  }
}

TEST(Explanation, LinesOfWhatIsRarer) {
  struct Case {
    ItemType type;
    const char *tags, *mod, *tag, *line;
  };
  const Case cases[] = {
      {kStats, "basevalue(10),step(1),level(-9),down(-10/-20),minscore(5)", "", "score",
       "raised to 5 by minscore(5)"},
      {kStats, "basevalue(10),minscore(ST:IQ-4)", "", "score", "lowest score: 6 = ST:IQ-4"},
      {kAds, "cost(5),baselevel(3)", "", "level", "limited to 1: there is only one cost"},
      {kAds, "cost(5/10),baselevel(1),downto(2)", "", "level", "raised to 2 by downto(2)"},
      {kAds, "cost(5/10),baselevel(1),control_downto(ST:IQ-8)", "", "level", "control_downto: 2 = ST:IQ-8"},
      {kAds, "cost(5/10),baselevel(1),bonuslevels(1)", "", "level", "the player gives +1"},
      {kAds, "cost(5/10),keep(1)", "", "level", "in lockstep with Wits: 0"},
      {kQuirks, "cost(-1),baselevel(1)", "", "points", "level 1 costs: -1"},
      {kAds, "cost(10),baselevel(1)", "level(1),cost(*3)", "points", "M (*3): makes 30 of 10"},
      {kAds, "cost(10),baselevel(1)", "level(1),cost(+5)", "points", "M (+5): makes 15"},
      {kAds, "cost(15),baselevel(1),roundlastonly(yes)", "level(1),cost(-50%)", "points", "rounded to 8"},
      {kAds, "cost(10),baselevel(1)", "level(5),upto(2),cost(-10%/-20%)", "points",
       "limited to level 2 by upto(2)"},
      {kSkills, "type(IQ/H),basepoints(8),upto(2 pts)", "", "points", "limited to 2 points by upto(2 pts)"},
      {kSkills, "type(IQ/H),downto(1 pts)", "", "level", "raised to 1 point by downto(1 pts)"},
      {kSkills, "type(IQ/H),basepoints(2),control_upto(ST:IQ+1)", "", "level", "control_upto: 11 = ST:IQ+1"},
      {kSkills, "type(IQ/H),basepoints(1),bonuspoints(3)", "", "level", "the player gives +3 points"},
      {kSkills, "type(IQ/H),basepoints(4),blockat(%level/2+3)", "", "block", "block: 8.5 = %level/2+3"},
      {kSkills, "type(IQ/H),basepoints(4),parryat(9),parryatbonus(ST:IQ-9)", "", "parry",
       "parryatbonus: 1 = ST:IQ-9"},
      {kSkills, "type(Tech),basepoints(2),default(ST:IQ-3)", "", "level", "from 2 points (Tech): +2 on 7"},
      {kSkills, "type(Tech),default(ST:IQ-3)", "", "deffrom", "in use: Wits at 7"},
      {kEquipment, "basecost(7),count(1),damage(1d),mode(Jab),effectivest(ST:IQ+1)", "", "effectivest",
       "Jab: 11 = ST:IQ+1"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.tags) + " " + c.mod);
    SkillWorld world;
    world.wits->SetTagItem("lockstep", "yes");
    clsItem& item = world.Put(c.type, "name(T)," + std::string(c.tags));
    if (*c.mod != 0) world.PutMod(item, "name(M)," + std::string(c.mod));
    std::vector<std::string> lines = ExplainTag(item, c.tag);
    for (std::string& line : lines) line = Trim(line);
    EXPECT_EQ(std::ranges::count(lines, c.line), 1) << testing::PrintToString(lines);
  }
}

TEST(Explanation, LinesOfSumsAndChildren) {
  ExplainedWorld world;
  const auto lineStands = [&](std::string_view trait, std::string_view tag, const std::string& line) {
    const std::string tree = world.Explained(trait, tag);
    EXPECT_NE(tree.find("  " + line + "\n"), std::string::npos) << tree;
  };
  clsItem& forms = world.Put(kAds, "name(Shapes),childprofile(1),owns(yes)");
  const auto putIn = [&](const std::string& tags) {
    clsItem& inner = world.Put(kPerks, tags);
    inner.Calculate();
    return inner.KeyText();
  };
  const std::string fox = putIn("name(Fox),cost(20),baselevel(1)"),
                    owl = putIn("name(Owl),cost(11),baselevel(1)");
  const std::string claw = putIn("name(Claw),cost(4),baselevel(1),owned(yes)");
  forms.SetTagItem("childkeylist", fox + "," + owl);
  forms.SetTagItem("pkids", claw.substr(1));
  // A fifth of 11, rounded up, beside all of the 20.
  lineStands("Shapes", "points",
             "of these forms the dearest costs all of its points, each other one a fifth: 23");
  lineStands("Shapes", "points", "its component Claw: 4");
  lineStands("-", "statcost", "Wits: 80");
  lineStands("-", "dollarcost", "Bag: 43");
  lineStands("-", "totalweight", "Bag: 44");
  lineStands("-", "baseth", "thrust by the table: 2d");
  clsItem& giver =
      world.Put(kAds, "name(Help),level(1),gives(+1 to SK:Blank, +.5 to SK:Bow, +2 to EQ:Rod::damage)");
  world.character.AddBonusesFromOwner(giver);
  for (clsItem* target : {&world.Put(kSkills, "name(Blank),type(IQ/H)"),
                          &world.Put(kSkills, "name(Bow),type(IQ/H),basepoints(1)"),
                          &world.Put(kEquipment, "name(Rod),count(1),mode(Poke),damage(1d)")}) {
    world.character.CreateAffectsLinks(*target);
  }
  lineStands("Blank", "level", "bonuses give no level to a skill that was not learned");
  lineStands("Bow", "level", "rounded to 0");
  lineStands("Rod", "damage", "with its bonuses: 1d+2");
  clsItem& grit = world.Put(kStats, "name(Grit),basevalue(10),step(1),level(2),up(10),inplaymult(2)");
  world.character.SetInPlay(true);
  grit.SetTagItem("frozencost", "5");
  lineStands("Grit", "points", "in play: x2, less what it cost before: 5");
  world.character.CharTagList = ",baseswdice(ST:IQ),";
  lineStands("-", "basesw", "baseswdice: 14 = ST:IQ");
}

TEST(Explanation, LeavesTheCharacterAsItWas) {
  ExplainedWorld world;
  world.CalculateAll();
  const auto everything = [&] {
    std::string text;
    for (clsItem& item : world.character.Items) {
      text += item.TagList();
      for (const std::string& line : item.BonusList) text += line;
    }
    return text;
  };
  const std::string before = everything();
  const std::string first = world.Explained("Watch", "level");
  for (clsItem& item : world.character.Items) ExplainTag(item, "level");
  ExplainTag(world.character, "totalcost");
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(world.Explained("Watch", "level"), first) << "answers that are kept hide nothing";
  EXPECT_EQ(world.character.Solving.record, nullptr);
}

TEST(Explanation, OfFormulasWithoutEndIsBounded) {
  ExplainedWorld world;
  clsItem& keen = world.Named("Keen");
  keen.SetTagItem("loop#", "me::loop# + ST:IQ");
  keen.SetTagItem("long#", [] {
    std::string sum = "ST:IQ";
    for (int i = 0; i < 50000; ++i) sum += "+ST:IQ";
    return sum;
  }());
  EXPECT_LT(ExplainTag(keen, "loop#").size(), 1000U);
  const std::vector<std::string> lines = ExplainTag(keen, "long#");
  EXPECT_LT(lines.size(), 20000U);
  EXPECT_EQ(lines.back(), "  ...");
  EXPECT_EQ(world.Explained("Keen", "none#"),
            "none# of Keen\n  nothing is calculated for this tag; it stands as "
            "it was written\n");
}

}  // namespace
}  // namespace kvr
