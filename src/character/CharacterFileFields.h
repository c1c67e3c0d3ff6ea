// What the lines of a character file stand for: the tags of a section in the order in which they are written,
// each with the property that it saves. Writer and reader share these tables.
#pragma once

#include <span>
#include <string_view>

#include "calc/clsBonus.h"
#include "character/CharacterRecords.h"
#include "character/SavedText.h"
#include "core/Text.h"
#include "library/clsSkillCosts.h"

namespace kvr {

class KVRCharacter;

namespace savedFields {

template <class Record>
struct Field {
  std::string_view tag;
  // Appends the tag to the line; nullptr for one that is only read.
  void (*write)(std::string_view tag, Record& record, savedText::SavedLines& lines);
  void (*read)(Record& record, std::string_view value);
};

std::span<const Field<KVRCharacter>> General();   // one tag a line
std::span<const Field<KVRCharacter>> Settings();  // one tag a line
std::span<const Field<clsBodyItem>> BodyPart();
std::span<const Field<clsCampaignInfo>> Campaign();
std::span<const Field<clsLogEntry>> LogEntry();
std::span<const Field<clsBonus>> Bonus();  // behind "ownerid"; values are exact
std::span<const Field<clsBasicDamage>> BasicDamage();
std::span<const Field<clsDamageBreak>> DamageBreak();
std::span<const Field<clsSkillCosts>> SkillType();
std::span<const Field<clsChangeItem>> Change();  // values are exact
std::span<const Field<clsRefItem>> Group();
std::span<const Field<clsCategory>> Cat();

template <class Record>
void WriteLine(std::span<const Field<Record>> fields, Record& record, savedText::SavedLines& lines) {
  for (const Field<Record>& field : fields) {
    if (field.write) field.write(field.tag, record, lines);
  }
  lines.EndLine();
}

// Reads the tags of a line into the record, in any order; unknown ones are ignored.
template <class Record>
void ReadLine(std::span<const Field<Record>> fields, std::string_view line, Record& record) {
  std::size_t next = 0;  // the writer's order makes the first test the right one
  savedText::ForEachTag(line, [&](std::string_view tag, std::string_view value) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
      const std::size_t at = (next + i) % fields.size();
      if (!EqualNoCase(fields[at].tag, tag)) continue;
      fields[at].read(record, value);
      next = at + 1;
      return;
    }
  });
}

}  // namespace savedFields
}  // namespace kvr
