// Defaults of skills: what a skill may be used from without points of its own.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvr {

// One default that may be used: "17??level-5" is the tag `level` of the trait 17 less 5; without a tag it is
// the score of an attribute and the base level of anything else.
struct SkillDefault {
  std::string text;
  std::int32_t idKey = 0;
};

// What stands before the arithmetic of a default or an attribute: "{SK:Blade (Short)}" of "{SK:Blade
// (Short)}-2".
std::string_view HeadReference(std::string_view entry);

class clsItem;

// The name of the trait that a calculated skill is used from, or that its own points build on; "" for none. A
// default below the start value of the skill type, which gives no free points, is in no tag.
std::string DefaultInUse(clsItem& item);

}  // namespace kvr
