// Reading format 2, the much older character file: its traits are made anew from their tag lists and their
// old tags converted. What is known of the format, and how the rest is taken, is told in
// docs/formats/character-file-2.md.
#include "character/CharacterFileFields.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/clsFileReader.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr {

namespace {

enum class OldSection {
  None,
  System,
  SystemNotes,
  General,
  Points,
  Race,
  Stats,
  Protection,
  Misc,
  Advantages,
  Disadvantages,
  Quirks,
  Powers,
  Skills,
  Spells,
  Packages,
  PackageItems,
};

struct OldSectionRow {
  std::string_view head;
  OldSection section;
  ItemType traits;
};

constexpr OldSectionRow kOldSections[] = {
    {"[system]", OldSection::System, kNoType},       {"[systemnotes]", OldSection::SystemNotes, kNoType},
    {"[general]", OldSection::General, kNoType},     {"[points]", OldSection::Points, kNoType},
    {"[race]", OldSection::Race, kNoType},           {"[stats]", OldSection::Stats, kStats},
    {"[pd/dr]", OldSection::Protection, kNoType},    {"[misc]", OldSection::Misc, kNoType},
    {"[advantages]", OldSection::Advantages, kAds},  {"[disadvantages]", OldSection::Disadvantages, kDisads},
    {"[quirks]", OldSection::Quirks, kQuirks},       {"[powers]", OldSection::Powers, kPerks},
    {"[skills]", OldSection::Skills, kSkills},       {"[spells]", OldSection::Spells, kSpells},
    {"[packages]", OldSection::Packages, kPackages}, {"[packageitems]", OldSection::PackageItems, kNoType},
};

const OldSectionRow* FindOldSection(std::string_view line) {
  if (!line.starts_with('[')) return nullptr;
  for (const OldSectionRow& row : kOldSections) {
    if (EqualNoCase(line, row.head)) return &row;
  }
  return nullptr;
}

class OldCharacterReader {
 public:
  explicit OldCharacterReader(KVRCharacter& character) : c_(character) {}

  void ReadLine(std::string_view line);
  void Finish();

 private:
  void ReadGeneral(std::string_view line);
  void ReadProtection(std::string_view line);

  KVRCharacter& c_;
  OldSection section_ = OldSection::None;
  ItemType traits_ = kNoType;
  bool inPlay_ = false;
  std::size_t packageItems_ = 0;
};

void OldCharacterReader::ReadLine(std::string_view line) {
  if (const OldSectionRow* row = FindOldSection(line)) {
    section_ = row->section;
    traits_ = row->traits;
    return;
  }
  if (Trim(line).empty()) return;
  if (traits_ != kNoType) {
    c_.AddItemFromSavedKVR2(traits_, line);
    return;
  }
  switch (section_) {
    case OldSection::General:
    case OldSection::Race:
    case OldSection::Misc:
      return ReadGeneral(line);
    case OldSection::Points:
      return c_.AddCampaignFromSaved(line);
    case OldSection::Protection:
      return ReadProtection(line);
    case OldSection::PackageItems:
      ++packageItems_;
      return;
    default:
      return;
  }
}

void OldCharacterReader::ReadGeneral(std::string_view line) {
  savedText::ForEachTag(line, [&](std::string_view tag, std::string_view value) {
    value = Trim(value);
    if (EqualNoCase(tag, "description")) {
      c_.Description = savedText::LineBreaksFromMarks(value);
    } else if (EqualNoCase(tag, "notes")) {
      c_.Notes = savedText::LineBreaksFromMarks(value);
    } else if (EqualNoCase(tag, "charinplay")) {
      inPlay_ = IsSet(value);
    } else if (EqualNoCase(tag, "charname")) {
      c_.Name = value;
    } else if (EqualNoCase(tag, "playername")) {
      c_.Player = value;
    } else if (EqualNoCase(tag, "portraitfile")) {
      c_.Portrait = c_.Env().Folders.ExpandPath(kDocuments, kNoFolder, value);
    } else if (EqualNoCase(tag, "race") && !value.empty()) {
      c_.Race = value;
    } else if (EqualNoCase(tag, "height")) {
      c_.Height = value;
    } else if (EqualNoCase(tag, "weight")) {
      c_.Weight = value;
    } else if (EqualNoCase(tag, "age")) {
      c_.Age = value;
    } else if (EqualNoCase(tag, "appearance")) {
      c_.Appearance = value;
    }
  });
}

// "name(arms),pd(1),dr(2)", "otherpd(..)", "otherdr(..)".
void OldCharacterReader::ReadProtection(std::string_view line) {
  constexpr std::string_view kParts[] = {"head", "body", "arms", "legs", "hands", "feet"};
  std::size_t at = std::size(kParts);
  savedText::ForEachTag(line, [&](std::string_view tag, std::string_view value) {
    value = Trim(value);
    clsBodyItem* part = at < std::size(kParts) && !value.empty() ? c_.Body.Part(kParts[at]) : nullptr;
    if (EqualNoCase(tag, "name")) {
      at = static_cast<std::size_t>(std::find_if(std::begin(kParts), std::end(kParts),
                                                 [&](auto name) { return EqualNoCase(name, value); }) -
                                    std::begin(kParts));
    } else if (EqualNoCase(tag, "pd") && at < std::size(kParts)) {
      c_.PD[at] = value;
      if (part) part->DB = value;
    } else if (EqualNoCase(tag, "dr") && at < std::size(kParts)) {
      c_.DR[at] = value;
      if (part) part->DR = value;
    } else if (EqualNoCase(tag, "otherpd")) {
      c_.OtherPD = value;
    } else if (EqualNoCase(tag, "otherdr")) {
      c_.OtherDR = value;
    }
  });
}

void OldCharacterReader::Finish() {
  if (packageItems_ > 0) {
    c_.Env().log.LogRed(
        std::to_string(packageItems_) +
        " lines of [PackageItems] were left out; the traits themselves stand in their own sections.");
  }
  c_.Campaign.Calculate();
  c_.RecalculateLoaded();
  if (inPlay_) c_.SetInPlay(true);
}

using Tags = std::vector<modTags::TagItem>;

// "base/count", "base" alone where there is no count; "" for neither.
std::string JoinedCost(std::string_view base, std::string_view count) {
  if (count.empty()) return std::string(base);
  return std::string(base) + "/" + std::string(count);
}

void MoveTag(const Tags& old, std::string_view from, clsItem& item, std::string_view to) {
  const std::string_view value = modTags::ValueOf(old, from);
  if (!value.empty()) item.SetTagItem(to, value);
}

// A number that doesn't parse is its leading number, or 0.
void MoveNumber(const Tags& old, std::string_view from, clsItem& item, std::string_view to) {
  const std::string_view value = modTags::ValueOf(old, from);
  if (!value.empty()) item.SetTagItem(to, NumberText(Currency::FromVal(value)));
}
void MoveLevel(const Tags& old, std::string_view from, clsItem& item, std::string_view to) {
  const std::string_view value = modTags::ValueOf(old, from);
  if (!value.empty()) item.SetTagItem(to, std::to_string(savedText::ToLong(value)));
}

void ConvertStat(const Tags& old, clsItem& item) {
  const std::string& name = item.LCaseName();
  if (name == "st" || name == "dx" || name == "iq" || name == "ht") {
    for (std::string_view tag : {"mainwin", "up", "down", "levels"}) MoveTag(old, tag, item, tag);
    MoveNumber(old, "points", item, "points");
  }
  if (IsSet(modTags::ValueOf(old, "doubleinplay"))) item.SetTagItem("inplaymult", "2");
  item.DeleteTag("doubleinplay");
  MoveLevel(old, "levels", item, "level");  // what was bought of an attribute is its level
}

void ConvertTags(const Tags& old, clsItem& item) {
  if (item.ItemType == kStats) ConvertStat(old, item);
  if (modTags::ValueOf(old, "display") == "0") item.SetTagItem("display", "no");
  if (item.ItemType == kSpells) {
    MoveTag(old, "college", item, "cat");
    item.DeleteTag("college");
  }
  if (item.ItemType == kSkills || item.ItemType == kSpells) MoveNumber(old, "points", item, "basepoints");
  const std::string cost = JoinedCost(modTags::ValueOf(old, "basecost"), modTags::ValueOf(old, "costcnt"));
  if (!cost.empty()) item.SetTagItem("cost", cost);
  item.DeleteTag("basecost");
  item.DeleteTag("costcnt");
  MoveLevel(old, "level", item, item.ItemType == kStats ? "level" : "baselevel");
}

// An entry of `currentmods` as a modifier's tag list.
std::string ConvertedMod(std::string_view entry) {
  const Tags old = modTags::ReturnTagItems(entry);
  const std::string cost = JoinedCost(modTags::ValueOf(old, "basemod"), modTags::ValueOf(old, "modcnt"));
  std::string list;
  for (const modTags::TagItem& tag : old) {
    if (tag.name.empty() || tag.name == "basemod" || tag.name == "modcnt" || tag.name == "curmod" ||
        tag.name == "roundup") {
      continue;
    }
    if (!list.empty()) list += ',';
    std::string value(tag.value);
    modTags::RepairParens(value);
    list += (tag.name == "count" ? "level" : tag.name) + "(" + value + ")";
  }
  if (!cost.empty()) list += ",cost(" + cost + ")";
  return list;
}

}  // namespace

clsItem* KVRCharacter::AddItemFromSavedKVR2(ItemType type, std::string_view line) {
  std::string repaired;
  if (!modTags::ParensBalance(line)) line = repaired = savedText::RepairTagText(line);
  const Tags old = modTags::ReturnTagItems(line);
  if (modTags::ValueOf(old, "name").empty()) {
    env_.log.LogRed("Left out, since it has no name: " + std::string(line.substr(0, 80)));
    return nullptr;
  }
  clsItem* item = ItemByKey(CreateNewItem(type, line, "", "", -1, -1, 0));
  if (!item) return nullptr;
  ConvertTags(old, *item);
  item->DeleteTag("currentmods");
  const std::string_view mods = modTags::ValueOf(old, "currentmods");
  if (!Trim(mods).empty()) {
    for (std::string_view entry : modNewParser::ParseSplitChars(mods, "|", modNewParser::kTags)) {
      const std::string list = ConvertedMod(modTools::StripBraces(entry));
      if (!list.empty()) CreateNewMod(*item, list, "KVR2");
    }
  }
  ClearTokensForItem(*item);
  PushTrickle(*item);
  return item;
}

bool KVRCharacter::FileReadKVR2(std::string_view path) {
  const TraceScope trace("KVRCharacter:FileReadKVR2");
  env_.log.LogLine("Loading character '" + std::string(path) + "'...");
  clsFileReader reader;
  if (!reader.FileOpen(path)) {
    env_.log.LogRed("'" + std::string(path) + "' could not be read: " + reader.Error());
    return false;
  }
  InitStats();
  OldCharacterReader sections(*this);
  while (!reader.FileEOF()) {
    const std::string_view line = reader.FileNextLine();
    LogFailure(env_.log, [&] { sections.ReadLine(line); });
  }
  LogFailure(env_.log, [&] { sections.Finish(); });
  Dirty = true;
  env_.log.LogLine(
      "Character loaded. Since this was a KVR 2 character, you should probably do a Resynchronize also.");
  return true;
}

}  // namespace kvr
