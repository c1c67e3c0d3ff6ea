// What a trait changes in the tags of others (`mergetags`, `replacetags`) and in the texts of the character
// itself (`race` and the like). Each change is recorded, so that removing the trait takes it back.
#include "character/TagChanges.h"

#include "character/ItemFields.h"
#include "character/TemplateEntries.h"
#include "core/modNewParser.h"
#include "core/modTools.h"

namespace kvr {

namespace {

struct TagEffect {
  std::string_view tag, op;
  clsItem::SegmentChange (clsItem::*change)(std::string_view);
};
constexpr TagEffect kMerge{"mergetags", "insert", &clsItem::TagListSegmentInsert};
constexpr TagEffect kReplace{"replacetags", "replace", &clsItem::TagListSegmentReplace};

// "in SK:Sword with a(1), b(2), in all SK:Axe with c(3)": the pieces behind each "in ", which counts at the
// beginning of a list entry only.
std::vector<std::string_view> PiecesOf(std::string_view text) {
  std::vector<std::string_view> pieces;
  const char* begin = nullptr;
  const auto close = [&](const char* end) {
    if (!begin) return;
    std::string_view piece = Trim(std::string_view(begin, static_cast<std::size_t>(end - begin)));
    if (piece.ends_with(',')) piece.remove_suffix(1);
    pieces.push_back(Trim(piece));
  };
  modNewParser::ForEachToken(text, ',', modNewParser::kNames, [&](std::string_view token) {
    constexpr std::string_view kIn = "in ";
    const std::string_view entry = Trim(token);
    if (!StartsWithNoCase(entry, kIn)) return;
    close(entry.data());
    begin = entry.data() + kIn.size();
  });
  close(text.data() + text.size());
  return pieces;
}

// "all SK:Sword" is every trait of that name; else the one of that full name.
std::vector<clsItem*> TargetsOf(KVRCharacter& character, std::string_view text) {
  constexpr std::string_view kAll = "all ";
  const bool all = StartsWithNoCase(text, kAll);
  if (all) text.remove_prefix(kAll.size());
  const templateEntries::TraitReference wanted = templateEntries::ReadReference(text);
  std::vector<clsItem*> targets;
  if (!all) {
    if (clsItem* item = templateEntries::FindOn(character, wanted)) targets.push_back(item);
    return targets;
  }
  for (std::size_t at = 1; (at = character.ItemPositionByNameOnly(wanted.name, wanted.type, at)) != 0; ++at) {
    targets.push_back(&character.Items.Item(at));
  }
  return targets;
}

// One piece "[all] reference with tags".
void ChangeTags(KVRCharacter& character, const clsItem& source, const TagEffect& effect,
                std::string_view target, std::string_view tags) {
  ActivityLog& log = character.Env().log;
  const std::vector<clsItem*> targets = TargetsOf(character, target);
  if (targets.empty()) log.LogRed("Target not found: " + std::string(target));
  for (clsItem* item : targets) {
    character.NoteFormerState(*item);
    character.PushRecalcItems(*item);
    const clsItem::SegmentChange change = (item->*effect.change)(tags);
    bool records = false;
    for (const auto& [tag, former] : change.oldValues) {
      character.ChangeLog.push_back(
          {std::string(effect.op), item->IDKey, source.IDKey, tag, former, StoredTagText(*item, tag)});
      records = records || MakesRecords(tag);
    }
    if (!change.complete) log.LogRed("Possible error with line: " + std::string(tags));
    if (!change.oldValues.empty()) SpreadTagChange(*item, records);
  }
}

void ChangeTagsOfOthers(KVRCharacter& character, clsItem& item, const TagEffect& effect) {
  const std::string text = item.TagItem(effect.tag);
  if (Trim(text).empty()) return;
  ActivityLog& log = character.Env().log;
  // One message for both tags.
  const auto complain = [&] { log.LogRed("Bad MergeTags: " + text); };
  const std::vector<std::string_view> pieces = PiecesOf(text);
  if (pieces.empty()) return complain();
  for (std::string_view piece : pieces) {
    const auto [target, tags, found] = templateEntries::SplitAtWord(piece, " with ");
    if (!found) return complain();
    const std::string_view bare = modTools::StripQuotesAndBraces(tags);
    LogFailure(log, [&, target = target] { ChangeTags(character, item, effect, target, bare); });
  }
}

// A text of the character itself that the trait's tag decides.
void ChangeOwnText(clsItem& item, std::string_view tag, std::string_view ownTag,
                   std::string KVRCharacter::*text) {
  const std::string value = item.TagItem(tag);
  if (value.empty()) return;
  KVRCharacter& character = *item.Owner;
  character.NoteFormerTexts();
  character.ChangeLog.push_back({"replace", 0, item.IDKey, std::string(ownTag), character.*text, value});
  character.SetTagItem(ownTag, value);
}

}  // namespace

std::string StoredTagText(const clsItem& item, std::string_view tag) {
  const ItemField* field = ItemFields::Find(tag);
  return field ? ItemFields::Read(item, *field) : std::string(item.FreeTag(tag));
}

bool MakesRecords(std::string_view tag) {
  return EqualNoCase(tag, "gives") || EqualNoCase(tag, "conditional") || EqualNoCase(tag, "taboo");
}

void SpreadTagChange(clsItem& item, bool remakeRecords) {
  KVRCharacter& character = *item.Owner;
  if (remakeRecords) {
    character.RemoveBonusesFromOwner(item);
    character.RemoveConditionalsFromOwner(item);
    character.RemoveTaboosFromOwner(item);
    character.AddBonusesFromOwner(item);
    character.AddConditionalsFromOwner(item);
    character.AddTaboosFromOwner(item);
  }
  character.ClearTokensForItem(item);
  character.CreateAffectsLinks(item);
  character.SetRefreshList(item.ItemType);
  item.Calculate();
  character.PushTrickle(item);
}

void KVRCharacter::HandleMergeTags(clsItem& item) {
  TraceScope trace("KVRCharacter:HandleMergeTags");
  ChangeTagsOfOthers(*this, item, kMerge);
}

void KVRCharacter::HandleReplaceTags(clsItem& item) {
  TraceScope trace("KVRCharacter:HandleReplaceTags");
  ChangeTagsOfOthers(*this, item, kReplace);
}

void KVRCharacter::HandleRace(clsItem& item) {
  ChangeOwnText(item, "race", "race", &KVRCharacter::Race);
}

void KVRCharacter::HandleBodyType(clsItem& item) {
  if (item.FreeTagIsEmpty("bodytype")) return;
  ChangeOwnText(item, "bodytype", "bodytype", &KVRCharacter::BodyType);
  InitBodyParts();
}

void KVRCharacter::HandleCharWeight(clsItem& item) {
  ChangeOwnText(item, "charweight", "weight", &KVRCharacter::Weight);
}

void KVRCharacter::HandleCharHeight(clsItem& item) {
  ChangeOwnText(item, "charheight", "height", &KVRCharacter::Height);
}

void KVRCharacter::HandleAge(clsItem& item) {
  ChangeOwnText(item, "age", "age", &KVRCharacter::Age);
}

void KVRCharacter::HandleAppearance(clsItem& item) {
  ChangeOwnText(item, "appearance", "appearance", &KVRCharacter::Appearance);
}

}  // namespace kvr
