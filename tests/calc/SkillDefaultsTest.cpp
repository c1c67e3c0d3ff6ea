#include "calc/SkillDefaults.h"

#include <gtest/gtest.h>

#include "calc/SkillWorld.h"

namespace kvr {
namespace {

// Traits 2 to 7 beside the attribute Wits, which is 1: four skills, one without points, and an advantage.
struct DefaultWorld : SkillWorld {
  DefaultWorld() {
    Learned("name(Riding),type(IQ/E)", 1);                              // 2: level 10
    Learned("name(Guns),nameext(Long-Gun),type(IQ/E)", 4);              // 3: 12
    Learned("name(Sailing),type(IQ/E)", 2);                             // 4: 11
    PutSkill("name(Idle),type(IQ/E)");                                  // 5: no points
    Put(kAds, "name(Talent),cost(5/10),baselevel(3)").Calculate();      // 6
    Learned("name(Chess),type(IQ/E),optspec(1),nameext(Endgames)", 1);  // 7
  }
  clsItem& Learned(std::string_view tags, int points) {
    clsItem& skill = Put(kSkills, tags);
    skill.SetBasePoints(points);
    skill.Calculate();
    return skill;
  }
  // "KEY~tag and arithmetic" of each entry.
  std::string List(const std::string& tags) {
    std::string text;
    clsItem& skill = PutSkill("name(New),type(IQ/E)," + tags);
    for (const SkillDefault& entry : skill.privGetValidDefaultList()) {
      const std::string key = std::to_string(entry.idKey) + '?' + '?';
      EXPECT_EQ(entry.text.substr(0, key.size()), key);
      text += (text.empty() ? "" : "; ") + std::to_string(entry.idKey) + "~" + entry.text.substr(key.size());
    }
    return text;
  }
};

TEST(SkillDefaults, ListOfWhatMayBeUsed) {
  struct Case {
    const char* tags;
    const char* list;
  };
  const Case cases[] = {
      {"default(SK:Riding-5)", "2~-5"},
      {"default({SK:Guns (Long-Gun)}-3, SK:Riding::level-2, Sailing)", "3~-3; 2~level-2"},
      {"default(\"SK:Guns (Long-Gun)\"/2)", "3~/2"},
      {"default(SK_RL:Riding-1, SK:Riding pts, {SK:Riding pts}*2)", "2~level-1; 2~points; 2~points*2"},
      // Attributes by symbol, by name, with and without their prefix; what isn't there is left out.
      {"default(IQ-4, Wits, ST:IQ::level-1, ST:Wits-6)", "1~score-4; 1~score; 1~level-1; 1~score-6"},
      {"default(SK:Nobody-3, 6, (ST:IQ+4)/2-3, , AD:Talent-1)", "6~-1"},
      // No points of its own; for a technique that is enough.
      {"default(SK:Idle-2)", ""},
      {"type(Tech),sd(1),default(SK:Idle-2)", "5~-2"},
      // Another's optional specialty counts 2 less, also where only the skill is named.
      {"default(SK:Chess-1, {SK:Chess (Endgames)}/2)", "7~-1-2; 7~/2-2"},
      {"optspec(1),nameext(Endgames),default({SK:Chess (Endgames)}-1)", "7~-1"},
      // The words for prerequisites take the text around them along.
      {"needs(SK:Riding > 3, SK:Sailing | {SK:Guns (Long-Gun)}),default(PrereqList-3)", "2~-3; 4~-3; 3~-3"},
      {"needs(SK:Riding, SK:Sailing),default(ST:IQ-prereqlist-3, IQ-9)",
       "1~score-\"SK:Riding\"-3; 1~score-9; "
       "1~score-\"SK:Sailing\"-3"},
      {"needs(SK:Sailing, SK:Riding, SK:Idle),default(lowprereq-2, IQ-6)", "2~-2; 1~score-6"},
      {"needs(SK:Riding, {SK:Guns (Long-Gun)}, SK:Sailing),default(prereq-2)", "3~-2"},
      {"needs(SK:Guns (Long-Gun), SK:Sailing),default(prereq-2)", "3~-2"},
      {"needs(SK:Riding),default(prereqlist::level-3)", "2~level-3"},
      {"default({SK:Guns (Long-Gun)}::level-3)", "3~level-3"},
      {"needs(SK:Nobody),default(prereq-2, IQ-6)", "1~score-6"},
      {"default(prereqlist-2, IQ-6)", "1~score-6"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.tags);
    DefaultWorld world;
    EXPECT_EQ(world.List(c.tags), c.list);
  }
}

TEST(SkillDefaults, TheBestIsTaken) {
  struct Case {
    const char* defaults;
    std::int32_t level;
    const char* name;
    std::int32_t key;
  };
  const Case cases[] = {
      {"SK:Riding-5, SK:Sailing-4", 7, "Sailing", 4},
      // Of equals the first.
      {"SK:Riding-3, SK:Sailing-4", 7, "Riding", 2},
      {"SK:Sailing-4, SK:Riding-3", 7, "Sailing", 4},
      {"SK:Sailing/2", 6, "Sailing", 4},  // 5.5, half to even
      {"SK:Riding-20", -10, "Riding", 2},
      {"SK:Nobody", 0, "", 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.defaults);
    DefaultWorld world;
    std::string name = "?";
    std::int32_t key = -1;
    clsItem& skill = world.PutSkill("name(New),type(IQ/E),default(" + std::string(c.defaults) + ")");
    EXPECT_EQ(skill.privGetDefaultLevel(name, key), c.level);
    EXPECT_EQ(name, c.name);
    EXPECT_EQ(key, c.key);
  }
}

// A tag that can't be worked out is logged whenever it is read.
TEST(SkillDefaults, EachIsSolvedOnce) {
  DefaultWorld world;
  std::string defaults;
  for (int i = 0; i < 200; ++i) defaults += "SK:Riding::probe#-" + std::to_string(200 - i) + ",";
  world.character.FindItem("Riding", kSkills)->SetTagItem("probe#", "@sqr(0-1)");
  clsItem& many = world.Put(kSkills, "name(New),type(IQ/E),default(" + defaults + "SK:Riding-1)");
  many.Calculate();
  EXPECT_EQ(world.Logged("@sqr(0-1)"), 200);
  EXPECT_EQ(many.Level(), 9);
}

TEST(SkillDefaults, AnotherTechLevel) {
  struct Case {
    const char* own;
    const char* other;
    std::int32_t level;
  };
  // The other is at 12.
  const Case cases[] = {{"3", "3", 13}, {"3", "4", 11}, {"3", "5", 9},    {"4", "3", 7},
                        {"5", "3", 2},  {"6", "3", -3}, {"7", "3", -987}, {"3+1", "3^", 13}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.own) + " from " + c.other);
    SkillWorld world;
    clsItem& other = world.Put(kSkills, "name(Engines),type(IQ/E),tl(" + std::string(c.other) + ")");
    other.SetBasePoints(4);
    other.Calculate();
    ASSERT_EQ(other.Level(), 12);
    // What the namesake allows competes with the other defaults, here one far below it.
    clsItem& own =
        world.PutSkill("name(Engines),type(IQ/E),default(ST:IQ-2000),tl(" + std::string(c.own) + ")");
    std::string name;
    std::int32_t key = 0;
    EXPECT_EQ(own.privGetDefaultLevel(name, key), c.level);
    // Spent points change what the namesake allows, though no text names it.
    world.CalculateAll();
    const std::int32_t before = own.Level();
    other.SetScoreTo(14);
    EXPECT_EQ(own.Level() > before, c.level > 0) << own.Level();
  }
}

// A name may hold the tech level, as may those of its specialties.
TEST(SkillDefaults, ATechLevelInTheName) {
  const std::pair<const char*, const char*> cases[] = {
      {"name(Engines/TL4)", "name(Engines)"},
      {"name(Engines/TL3+1)", "name(Engines)"},
      {"name(Engines/TL3^),nameext(Steam)", "name(Engines),nameext(Steam)"}};
  for (const auto& [own, other] : cases) {
    SkillWorld world;
    world.Put(kSkills, std::string(other) + ",type(IQ/E),tl(3)").SetBasePoints(4);
    clsItem& skill = world.Put(kSkills, std::string(own) + ",type(IQ/E),tl(3)");
    world.CalculateAll();
    EXPECT_EQ(skill.TagItem("deflevel"), "13") << own;
    EXPECT_EQ(skill.Level(), 13) << own;
  }
}

TEST(SkillDefaults, CirclesAreCut) {
  SkillWorld world;
  clsItem& a = world.Put(kSkills, "name(Alpha),type(IQ/E),default(SK:Beta-1)");
  clsItem& b = world.Put(kSkills, "name(Beta),type(IQ/E),default(SK:Gamma-1)");
  clsItem& c = world.Put(kSkills, "name(Gamma),type(IQ/E),default(SK:Alpha-1, SK:Gamma+2)");
  world.CalculateAll();
  for (clsItem* skill : {&a, &b, &c}) EXPECT_EQ(skill->Level(), 0) << "nobody has points";
  a.SetBasePoints(8);
  b.SetBasePoints(1);
  c.SetBasePoints(1);
  world.CalculateAll();
  // Gamma rests on Alpha (13), Beta on Gamma; Alpha's way through Beta leads back to Alpha.
  EXPECT_EQ(a.Level(), 13);
  EXPECT_EQ(c.TagItem("deffrom"), "Alpha");
  EXPECT_EQ(b.TagItem("deffrom"), "Gamma");
  EXPECT_TRUE(a.FreeTagIsEmpty("deffrom"));
  EXPECT_FALSE(a.privSkillDefaultIsValid(b.IDKey));
  EXPECT_FALSE(a.privSkillDefaultIsValid(a.IDKey));
  EXPECT_FALSE(a.privSkillDefaultIsValid(999));
  EXPECT_FALSE(a.privSkillDefaultIsValid(0));
  const std::string before = c.TagList();
  world.character.RecalculateAll();
  EXPECT_EQ(c.TagList(), before);
  EXPECT_EQ(world.Logged("do not settle"), 0);
}

TEST(SkillDefaults, TheRuleOfLimitHoldsForAttributes) {
  SkillWorld world;
  world.wits->SetLevel(15);
  world.wits->Calculate();
  world.character.RuleOf = 20;
  EXPECT_EQ(world.PutSkill("name(New),type(IQ/E),default(ST:IQ-4)").TagItem("defpoints"), "0");
  EXPECT_EQ(world.PutSkill("name(New),type(Free),default(ST:IQ-4)").Level(), 21);
  std::string name;
  std::int32_t key = 0;
  EXPECT_EQ(world.PutSkill("name(New),type(IQ/E),default(ST:IQ-4)").privGetDefaultLevel(name, key), 16);
}

}  // namespace
}  // namespace kvr
