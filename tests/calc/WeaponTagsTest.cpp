#include <gtest/gtest.h>

#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

// A weapon among two skills and two attributes.
struct WeaponWorld : RecordWorld {
  WeaponWorld() {
    Put(kStats, "name(ST),symbol(ST),score(12)");
    Put(kStats, "name(DX),symbol(DX),score(11)");
    Put(kSkills, "name(Blade),nameext(Long),level(14),baselevel(14),parryat(@int(%level/2)+3)");
    Put(kSkills, "name(Blade),nameext(Short),level(9),baselevel(9),parryat(@int(%level/2)+3)");
    Put(kSkills, "name(Dart),level(0)");
  }
  clsItem& Weapon(std::string_view tags, std::string_view gives = "") {
    clsItem& weapon = Put(kEquipment, "name(Arm),count(1)," + std::string(tags));
    clsItem& giver = Put(kAds, "name(Giver),level(1),gives(" + std::string(gives) + ")");
    character.AddBonusesFromOwner(giver);
    weapon.Calculate();
    return weapon;
  }
};

TEST(WeaponTags, ValuesOfEachMode) {
  struct Case {
    const char *tags, *gives, *tag, *value;
  };
  const Case cases[] = {
      {"reach(1,2)", "", "charreach", "1,2"},
      {"reach(C,1)", "+1 to EQ:Arm::reach", "charreach", "C,2"},
      {"reach(1, 2*)", "+1 to EQ:Arm::reach", "charreach", "2,3*"},
      {"reach(1-5)", "", "charreach", "1-5"},
      {"parry(0U|+1|No)", "+1 to EQ:Arm::parry", "charparry", "1U|+2|No"},
      {"acc(2|)", "+1 to EQ:Arm::acc", "characc", "3|"},
      {"damage(1d|2d)", "+1 to EQ:Arm::acc", "characc", "1|1"},
      {"dr(4*)", "x2 to EQ:Arm::dr, +1 to EQ:Arm::dr", "chardr", "10*"},
      {"weight(1)", "+2 to EQ:Arm::db", "chardb", "2"},
      {"rangemax(ST:ST*1.5|ST:DX/3)", "", "charrangemax", "18|3.6667"},
      {"rangehalfdam(me::minst*10|me::minst*10),minst(8|ST:ST)", "", "charrangehalfdam", "80|120"},
      {"minst(10)", "-2 to EQ:Arm::minst", "charminst", "8"},
      {"shots(1(2)|T(1))", "", "charshots", "1(2)|T(1)"},
      {"damtype(cut|imp)", "+\" burn\" to EQ:Arm::damtype$", "chardamtype", "cut burn|imp burn"},
      {"rof($if(ST:ST > 11 then \"3~\" else \"1\"))", "", "charrof", "3~"},
      {"rcl(2)", "", "charrcl", "2"},
      {"radius(1d+2)", "+1 to EQ:Arm::radius", "charradius", "2d+2"},
      {"radius(%count*2)", "", "charradius", "2"},
      {"armordivisor(2)", "x2 to EQ:Arm::armordivisor", "chararmordivisor", "4"},
      {"break(1)", "+1 to EQ:Arm::break", "charbreak", "2"},
      {"effectivest(ST:ST+1)", "", "chareffectivest", "13"},
      {"effectivest(me::chareffectivest+1)", "", "chareffectivest", "1"},
      {"reach(|)", "", "charreach", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.tags) + " / " + c.gives);
    WeaponWorld world;
    clsItem& weapon = world.Weapon(c.tags, c.gives);
    EXPECT_EQ(weapon.FreeTag(c.tag), c.value) << world.Log();
    const std::string before = weapon.TagListNoFill();
    weapon.Calculate();
    EXPECT_EQ(weapon.TagListNoFill(), before);
  }
}

TEST(WeaponTags, SkillUsed) {
  struct Case {
    const char *tags, *gives, *used;
  };
  const Case cases[] = {
      {"skillused({SK:Blade (Long)}),parry(0)", "", "Blade (Long) 14 10"},
      {"skillused(SK:Blade),parry(-1)", "", "Blade (Long) 14 9"},
      {"skillused({SK:Blade (Short)}, {SK:Blade (Long)}-4),parry(0)", "", "Blade (Long) 10 8"},
      {"skillused({SK:Blade (Short)}, {SK:Blade (Long)}-5),parry(0)", "", "Blade (Short) 9 7"},
      {"skillused(Dart),reach(1)", "", "  "},
      {"skillused(Dart, DX-4),reach(1)", "", "DX 7 "},
      {"skillused(SK:Unknown),default(ST:DX-5),parry(0)", "", "DX 6 "},
      {"default(ST:DX-5)", "", "  "},
      {"skillused({SK:Blade (Long)}|SK:Unknown),parry(0|0)", "", "Blade (Long)| 14| 10|"},
      {"skillused(SK:Blade),parry(No)", "", "Blade (Long) 14 "},
      {"skillused(SK:Blade),parry(0)", "+2 to EQ:Arm::skillscore, -1 to EQ:Arm::parryscore",
       "Blade (Long) 16 9"},
      {"skillused(SK:Blade),parry(0)", "+2 to {SK:Blade (Long)}::parryat", "Blade (Long) 14 12"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.tags) + " / " + c.gives);
    WeaponWorld world;
    clsItem& weapon = world.Weapon(c.tags, c.gives);
    world.character.FindItem("Blade (Long)", kSkills)->privCalcWeaponTags();
    weapon.Calculate();
    EXPECT_EQ(std::string(weapon.FreeTag("charskillused")) + " " +
                  std::string(weapon.FreeTag("charskillscore")) + " " +
                  std::string(weapon.FreeTag("charparryscore")),
              c.used);
  }
}

TEST(WeaponTags, GoWhenTheirSourcesGo) {
  WeaponWorld world;
  clsItem& weapon = world.Weapon("damage(2d),reach(1),parry(0),skillused(SK:Blade)");
  for (const char* tag : {"damage", "reach", "parry", "skillused"}) weapon.DeleteTag(tag);
  weapon.Calculate();
  for (const char* tag :
       {"chardamage", "charreach", "charparry", "charskillused", "charskillscore", "charparryscore"})
    EXPECT_FALSE(weapon.FreeTags().Find(tag)) << tag;
  world.env.Config.NoCalcSecondaryFeatures = -1;
  weapon.SetTagItem("reach", "2");
  weapon.Calculate();
  EXPECT_FALSE(weapon.FreeTags().Find("charreach"));
}

TEST(WeaponTags, AThousandModes) {
  WeaponWorld world;
  std::string damage = "sw", minst = "1";
  for (int i = 2; i <= 1000; ++i) {
    damage += "|" + std::to_string(i) + "d+me::minst";
    minst += "|" + std::to_string(i);
  }
  clsItem& weapon = world.Weapon("damage(" + damage + "),minst(" + minst + ")");
  EXPECT_EQ(weapon.DamageModesCount(), 1000u);
  EXPECT_EQ(weapon.DamageModeDamage(1000), "1000d+1000");
}

TEST(WeaponModes, AreReadOneByOne) {
  RecordWorld world;
  clsItem& bow =
      world.Put(kEquipment, "name(Bow),mode(Shot|Blow),damage(thr|sw-2),chardamage(1d),acc(3),reach(|1)");
  EXPECT_EQ(bow.DamageModesCount(), 2u);
  EXPECT_EQ(bow.DamageModeName(2), "Blow");
  EXPECT_EQ(bow.DamageModeDamage(1), "1d");
  EXPECT_EQ(bow.DamageModeDamage(2), "sw-2");
  EXPECT_EQ(bow.DamageModeTagItem(3, "damage"), "");
  EXPECT_EQ(bow.DamageModeTagItemCount("reach"), 1u);
  EXPECT_EQ(bow.DamageModeTagItemAt("reach"), 2u);
  EXPECT_EQ(bow.DamageModeTagItemAt("reach", 3), 0u);
  bow.DamageModeTagItemSet(3, "acc", "1");
  EXPECT_EQ(bow.FreeTag("acc"), "3||1");
  EXPECT_EQ(world.Put(kEquipment, "name(Rope),parryat(3)").DamageModesCount(), 0u);
}

TEST(WeaponModes, AreAddedAndChanged) {
  RecordWorld world;
  clsItem& spear = world.Put(kEquipment, "name(Spear),mode(Thrust|Two Hands),damage(thr+2|thr+3),reach(1|2)");
  spear.AddNewMode("Thrown (Far), damage(%copyprev), acc(2), reach(%calcme)");
  EXPECT_EQ(spear.FreeTag("mode"), "Thrust|Two Hands|Thrown (Far)");
  EXPECT_EQ(spear.FreeTag("damage"), "thr+2|thr+3|thr+3");
  EXPECT_EQ(spear.FreeTag("reach"), "1|2|");
  EXPECT_EQ(spear.FreeTag("acc"), "||2");
  spear.AddNewMode("mode(TWO HANDS),damage(%copyfirst),parry(0)");
  EXPECT_EQ(spear.FreeTag("mode"), "Thrust|Two Hands|Thrown (Far)");
  EXPECT_EQ(spear.FreeTag("damage"), "thr+2|thr+2|thr+3");
  EXPECT_EQ(spear.FreeTag("parry"), "|0");
  clsItem& rock = world.Put(kEquipment, "name(Rock)");
  rock.AddNewMode("name(Thrown),damage(thr)");
  clsItem& staff = world.Put(kEquipment, "name(Staff),mode(Swing),damage(sw),notes(Ash wood),points(3)");
  staff.AddNewMode("mode(Thrust),damage(thr),notes(two hands),points(9),parentkey(k1)");
  EXPECT_EQ(staff.TagItem("notes"), "Ash wood|two hands");
  EXPECT_EQ(staff.DamageModeTagItem(2, "notes"), "two hands");
  EXPECT_EQ(staff.Points(), Currency(3));
  EXPECT_EQ(staff.ParentKey(), "");
  EXPECT_EQ(rock.FreeTag("mode"), "Thrown");
}

}  // namespace
}  // namespace kvr
