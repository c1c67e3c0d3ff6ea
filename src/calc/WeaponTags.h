// One calculation of the tags that describe a weapon in the hands of its character: for each mode the formula
// of a tag is solved, the bonuses on the tag are added, and the result goes to the tag's twin ("reach" to
// "charreach").
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "calc/DamageText.h"
#include "character/clsItem.h"

namespace kvr {

class WeaponTags {
 public:
  explicit WeaponTags(clsItem& item) : item_(item) {}

  // Whether the text holds a tag that this calculation works with.
  static bool Appear(const TagText& tags);
  // All of them in their order.
  void Calculate();
  modMain::DamageRules RulesOfDamage(std::size_t mode);

 private:
  // The bonuses on one tag, summed up once: each sum lists its lines.
  struct TagBonus {
    bool isTarget = false;
    double adder = 0, multiplier = 1;
    std::string adderText, multiplierText;
  };
  struct Row {
    const char* procedure;
    std::string_view source, target;
    std::string_view explained;  // both tags
  };
  static constexpr std::size_t kRows = 17;
  static const std::array<Row, kRows> kTable;
  // What a row is while it is worked with.
  struct RowState {
    bool isRead = false, isRunning = false;
    std::string list;
    std::vector<std::string_view> values;  // of the list
    std::optional<TagBonus> bonus;
  };
  // The best of the skills that a mode may be used with.
  struct SkillUsed {
    clsItem* trait = nullptr;
    double level = 0;
  };

  static std::size_t RowOf(std::string_view tag);
  RowState& State(std::size_t row);
  const TagBonus& BonusOn(std::size_t row);
  TagBonus ReadBonus(std::string_view tag);
  void CalcRow(std::size_t row);
  std::size_t ModesCount();
  std::string ModeName(std::size_t mode) const;
  // The calculated value of a row in one mode.
  std::string Value(std::size_t row, std::size_t mode);
  std::string WorkedOut(std::size_t row, std::size_t mode);
  std::string OwnValue(std::string_view tag, std::size_t mode);
  bool SubstituteInSource(std::string& value, std::string_view tag, std::size_t mode);
  // True if there was something to put in.
  bool SubstituteOwnMode(std::string& text, std::size_t mode);
  double Basis(std::size_t mode);

  // SkillUsed.cpp
  void CalcSkillUsed();
  SkillUsed SkillFor(std::string_view skills);
  SkillUsed BestSkill(std::string_view list);
  SkillUsed SkillOfEntry(std::string_view entry);
  // "" where the mode or the skill can't parry.
  std::string ParryScore(const SkillUsed& skill, std::size_t mode, const TagBonus& bonus);
  static double WithBonus(double value, const TagBonus& bonus) {
    return (value + bonus.adder) * bonus.multiplier;
  }

  clsItem& item_;
  std::array<RowState, kRows> states_;
  std::vector<std::string_view> reading_;  // tags whose own values are being put in
  int reads_ = 0;
};

}  // namespace kvr
