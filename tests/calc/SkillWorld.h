// A record world with skill types and the attributes that they rest on.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "character/RecordWorld.h"
#include "core/Files.h"

namespace kvr {

// The bytes of a data file of the program.
inline std::string ShippedDataFile(const std::string& name) {
  const auto bytes = Files::ReadWhole(Files::PathText(KIVERA_SOURCE_DIR "/data/data files/" + name));
  EXPECT_TRUE(bytes) << name;
  return bytes.value_or("");
}

struct SkillWorld : RecordWorld {
  SkillWorld() {
    character.RuleOf = 0;
    for (std::string_view type : {
             "name(IQ/E),defaultstat(ST:IQ),baseadj(-1),costs(1/2/4/8),relname(IQ)",
             "name(IQ/H),defaultstat(ST:IQ),baseadj(-2),costs(1/2/4/8/12)",
             "name(M/H),defaultstat(ST:IQ),baseadj(-2),costs(.5/1/2/4),relname(IQ)",
             "name(Free),defaultstat(ST:IQ),baseadj(-4),costs(2/4),zeropointsokay(yes)",
             "name(Deep),defaultstat(ST:IQ),baseadj(-6),costs(1/2),subzero(yes)",
             "name(Tech),defaultstat(%default),costs(1/2),subzero(1),relname(def)",
             "name(Combo),defaultstat(%combo),baseadj(-2),costs(1/2),subzero(1)",
         }) {
      AddType(type);
    }
    wits = &Put(kStats, "name(Wits),symbol(IQ),basevalue(10),step(1),up(20),down(-20)");
    wits->Calculate();
  }
  void AddType(std::string_view tagList) {
    auto type = std::make_unique<clsSkillCosts>();
    type->NewTagList(tagList);
    character.SkillTypes.push_back(std::move(type));
  }
  // A calculated skill.
  clsItem& PutSkill(std::string_view tagList, ItemType type = kSkills) {
    clsItem& skill = Put(type, tagList);
    skill.Calculate();
    return skill;
  }
  void CalculateAll() {
    character.CreateAllAffectsLinks();
    character.RecalculateAll();
  }

  clsItem* wits;
};

}  // namespace kvr
