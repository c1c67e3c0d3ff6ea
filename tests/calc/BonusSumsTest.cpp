#include <gtest/gtest.h>

#include "calc/CalcSteps.h"
#include "character/RecordWorld.h"

namespace kvr {
namespace {

// A skill on which one giver's bonuses stand.
struct SumWorld : RecordWorld {
  clsItem& giver = Put(kAds, "name(Giver),nameext(Old),level(1)");
  clsItem& skill = Put(kSkills, "name(Climbing),points(4),baselevel(11)");

  void Give(std::string_view gives, std::string_view conditional = "") {
    giver.SetTagItem("gives", gives);
    giver.SetTagItem("conditional", conditional);
    character.AddBonusesFromOwner(giver);
    character.AddConditionalsFromOwner(giver);
  }
};

TEST(BonusSums, EachTakesItsOwn) {
  SumWorld world;
  world.Give(
      "+1 to SK:Climbing, =2 to skills, -.5 to SK:Climbing, +3pts to SK:Climbing, x2pts to SK:Climbing, "
      "=x1.5 to "
      "SK:Climbing::points, x3 to SK:Climbing, +4 to SK:Climbing::parry, x5 to SK:Climbing::Parry, +7 to "
      "SK:Climbing::blockat, +\"a\" to SK:Climbing::notes$, =\"b\" to SK:Climbing::notes$, x\"2\" to "
      "SK:Climbing::notes$, =*3 to SK:Climbing::notes$, +0 to SK:Climbing");
  clsItem& skill = world.skill;
  EXPECT_EQ(skill.CalcApplicableSysBonus(), 2.5);
  EXPECT_EQ(skill.CalcApplicableSysPoints(), Currency(3));
  EXPECT_EQ(skill.CalcApplicablePointMult(), 3);
  EXPECT_EQ(skill.CalcApplicableLevelMult(), 3);
  EXPECT_EQ(skill.CalcApplicableTargetTagBonus("parry"), 4);
  EXPECT_EQ(skill.CalcApplicableTargetTagMult("PARRY"), 5);
  EXPECT_EQ(skill.CalcApplicableTargetTagBonus("rof"), 0);
  EXPECT_EQ(skill.CalcApplicableTargetTagMult("rof"), 1);
  EXPECT_EQ(skill.CalcApplicableTargetTagBonusString("notes"), "+ab");
  EXPECT_EQ(skill.CalcApplicableTargetTagMultString("notes"), "2*3");
  const std::vector<std::string> lines = {
      "+1 from 'Giver (Old)'",    "+2 from 'Giver (Old)'",    "-0.5 from 'Giver (Old)'",
      "+3pts from 'Giver (Old)'", "x2pts from 'Giver (Old)'", "x1.5pts from 'Giver (Old)'",
      "x3 from 'Giver (Old)'",    "+4 from 'Giver (Old)'",    "x5 from 'Giver (Old)'"};
  ASSERT_GE(skill.BonusList.size(), lines.size());
  EXPECT_EQ(std::vector(skill.BonusList.begin(), skill.BonusList.begin() + 9), lines);
  EXPECT_TRUE(skill.GetBonusAffectsFlag("blockat"));
  EXPECT_FALSE(skill.GetBonusAffectsFlag("reach"));
}

TEST(BonusSums, ABonusGivesNoLevelToAnUnlearnedSkill) {
  SumWorld world;
  world.Give("+1 to SK:Climbing, +2 to SP:Climbing", "+1 to SK:Climbing");
  clsItem& spell = world.Put(kSpells, "name(Climbing)");
  world.character.CreateAffectsLinks(spell);
  world.skill.SetPoints(0);
  EXPECT_EQ(world.skill.CalcApplicableSysBonus(), 1) << "a level is left";
  world.skill.SetBaseLevel(0);
  world.skill.BonusList.clear();
  EXPECT_EQ(world.skill.CalcApplicableSysBonus(), 0);
  EXPECT_EQ(world.skill.ConditionalApplicableSysBonus(), 0);
  EXPECT_TRUE(world.skill.BonusList.empty() && world.skill.ConditionalList.empty());
  EXPECT_EQ(spell.CalcApplicableSysBonus(), 2);
}

TEST(BonusSums, LinesOfConditionalsAndOfAuthors) {
  SumWorld world;
  world.Give("+1 to SK:Climbing::parry when roped listas \"%VALUE% of %name% on %targetname%::%targettag%\"",
             "+2 to SK:Climbing when roped, x2pts to SK:Climbing, +1pts to SK:Climbing, x3 to SK:Climbing, "
             "-1 to SK:Climbing::parry when wet, +\"loud\" to SK:Climbing::notes$");
  world.skill.CalcApplicableTargetTagBonus("parry");
  EXPECT_EQ(world.skill.TagItem("bonuslist"), "1 of Giver on climbing::parry when roped");
  EXPECT_EQ(world.skill.ConditionalApplicableSysBonus(), 2);
  EXPECT_EQ(world.skill.ConditionalApplicableSysPoints(), Currency(1));
  EXPECT_EQ(world.skill.ConditionalApplicablePointMult(), 2);
  EXPECT_EQ(world.skill.ConditionalApplicableLevelMult(), 3);
  EXPECT_EQ(
      world.skill.TagItem("conditionallist"),
      "+2 from 'Giver (Old)' when roped, +1pts from 'Giver (Old)', x2pts from 'Giver (Old)', x3 from 'Giver "
      "(Old)'");
  EXPECT_EQ(world.skill.CalcApplicableSysBonus(), 0);
  world.skill.ConditionalList.clear();
  ListTagConditionals(world.skill);
  EXPECT_EQ(world.skill.TagItem("conditionallist"),
            "-1 from 'Giver (Old)' when wet, +loud from 'Giver (Old)'");
}

}  // namespace
}  // namespace kvr
