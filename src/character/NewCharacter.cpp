// What a new character begins with: its own copies of the library's tables, all attributes, and a body.
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modLogging.h"

namespace kvr {
namespace {

// So that everything that expects an attribute finds one, whatever the data.
constexpr std::string_view kNoDataStat =
    "idkey(1)|,name(NO DATA),cat(),basevalue(0),mainwin(1),display(no),syslevels(0),basescore(0),bonuslist(),"
    "needscheck(-1),taboofailed(0)";

// The body of a library that describes none. A location word is looked for in the group, so "Limbs" reaches
// arms and legs and "All" every part.
struct DefaultPart {
  std::string_view name, group;
  bool display;
};
constexpr DefaultPart kDefaultBody[] = {
    {"Head", "Head, All", false},
    {"Eyes", "Head, Eyes, All", true},
    {"LeftEye", "Head, LeftEye, Eyes, All", false},
    {"RightEye", "Head, RightEye, Eyes, All", false},
    {"Neck", "Neck, Body, Full Suit, All", true},
    {"Skull", "Head, Skull, All", true},
    {"Face", "Head, Face, All", true},
    {"Torso", "Torso, Body, Full Suit, All", true},
    {"Groin", "Groin, Body, Full Suit, All", true},
    {"Arms", "Arms, Limbs, Full Suit, All", true},
    {"LeftArm", "LeftArm, Arms, Limbs, Full Suit, All", false},
    {"RightArm", "RightArm, Arms, Limbs, Full Suit, All", false},
    {"Hands", "Hands, Full Suit, All", true},
    {"LeftHand", "LeftHand, Hands, Full Suit, All", false},
    {"RightHand", "RightHand, Hands, Full Suit, All", false},
    {"Legs", "Legs, Limbs, Full Suit, All", true},
    {"LeftLeg", "LeftLeg, Legs, Limbs, Full Suit, All", false},
    {"RightLeg", "RightLeg, Legs, Limbs, Full Suit, All", false},
    {"Feet", "Feet, Full Suit, All", true},
    {"LeftFoot", "LeftFoot, Feet, Full Suit, All", false},
    {"RightFoot", "RightFoot, Feet, Full Suit, All", false},
    {"Body", "Body, Full Suit, All", false},
    {"Full Suit", "Full Suit, All", false},
    {"All", "All", false},
};

clsBodyItem MakeDefaultPart(const DefaultPart& row) {
  clsBodyItem part;
  part.Name = row.name;
  part.Group = row.group;
  part.Display = part.Expanded = row.display;
  if (row.name == "Skull") part.BaseDR = part.DR = "2";
  return part;
}

}  // namespace

void KVRCharacter::InitStartupValues() {
  InitSkillTypes();
  InitBasicDamageList();
  InitDamageBreaks();
  InitCats();
  InitGroups();
  InitStats();
}

void KVRCharacter::InitSkillTypes() {
  SkillTypes.clear();
  SkillTypes.reserve(system_.SkillTypes.size());
  for (const auto& type : system_.SkillTypes) SkillTypes.push_back(std::make_unique<clsSkillCosts>(*type));
}

void KVRCharacter::InitBasicDamageList() {
  BasicDamageList = system_.BasicDamageList;
}

void KVRCharacter::InitDamageBreaks() {
  DamageBreaks = system_.DamageBreaks;
}

// The library's, and those that the traits already here bring.
void KVRCharacter::InitCats() {
  Cats.Clear();
  for (const clsCategory& cat : system_.Cats) {
    Cats.Add(std::make_unique<clsCategory>(cat), clsSortedCatCollection::KeyOf(cat));
  }
  for (const clsItem& item : Items) CheckForNewCats(item.FreeTag("cat"), item.ItemType);
}

void KVRCharacter::InitGroups() {
  Groups.Clear();
  for (const clsRefItem& member : system_.Groups) {
    Groups.Add(std::make_unique<clsRefItem>(member), clsSortedRefCollection::GroupKeyOf(member));
  }
}

void KVRCharacter::InitStats() {
  TraceScope trace("KVRCharacter:InitStats");
  std::vector<std::string> keys = system_.ReturnItemCollectionKeys(kStats);
  if (keys.empty()) {
    AddItemFromSaved(kStats, kNoDataStat);
    LastKey = std::max(LastKey, 1);
  }
  for (const std::string& key : keys) AddItemFromSystem(key);
  InitTechLevel();
  RecalculateAll();
}

void KVRCharacter::InitTechLevel() {
  clsItem* techLevel = FindItem("Tech Level", kStats);
  if (!techLevel) return;
  techLevel->SetTagItem("basevalue", NumberText(env_.Config.DefaultTL));
  techLevel->Calculate();
  LogFailure(env_.log, [&] { TL = CInt(techLevel->Score()); });
}

void KVRCharacter::InitBodyParts() {
  Body.Clear();
  for (const clsBodyItem& part : system_.BodyParts) {
    if (part.Cat == BodyType && !Body.Add(part)) env_.log.LogRed("clsBody: Error 457 (" + part.Name + ")");
  }
  if (!Body.Parts().empty()) return;
  for (const DefaultPart& row : kDefaultBody) Body.Add(MakeDefaultPart(row));
}

}  // namespace kvr
