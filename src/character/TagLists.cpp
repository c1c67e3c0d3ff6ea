// The whole tag list of a trait, changes of several tags at once, the list of children, and the reset.
#include "character/ItemFields.h"
#include "character/KVRCharacter.h"
#include "character/modLists.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"

namespace kvr {
namespace {

// Of several bytes, where it is no ")" after all.
std::string_view WithoutLastCharacter(std::string_view text) {
  while (!text.empty() && (text.back() & 0xC0) == 0x80) text.remove_suffix(1);
  return text.substr(0, text.empty() ? 0 : text.size() - 1);
}

// Calls f(tag, value) for each piece "tag(value)". The last character of a piece is taken for its ")" unseen;
// a piece without "(" is no tag.
template <class F>
void ForEachTag(std::string_view text, F&& f) {
  modNewParser::ForEachToken(text, ',', modNewParser::kParens, [&](std::string_view piece) {
    piece = Trim(piece);
    std::size_t open = piece.find('(');
    if (open == npos) return;
    f(Trim(piece.substr(0, open)), WithoutLastCharacter(piece.substr(open + 1)));
  });
}

void AppendTag(std::string& list, std::string_view tag, std::string_view value) {
  list.append(",").append(tag).append("(").append(value).append(")");
}

// Shown is what a trait is when it says nothing, so only "not shown" is kept.
void DropPositiveDisplay(std::string& list) {
  std::string_view display = modTags::GetTagValue("display", list);
  if (EqualNoCase(display, "yes") || display == "-1") modTags::DeleteTagFromTagList(list, "display");
}

// Of categories each counts by itself: a doubled one would show the trait twice.
std::string MergedIntoList(std::string_view tag, std::string list, std::string_view entry) {
  if (tag == "cat") {
    const auto cats = modNewParser::ParseSplitChars(entry, ",", modNewParser::kNames);
    for (auto cat = cats.rbegin(); cat != cats.rend(); ++cat) modLists::InsertItemIntoList(*cat, list);
    return list;
  }
  modLists::InsertItemIntoListAlt(entry, list, tag == "initmods" ? "|" : ", ");
  return list;
}

}  // namespace

void clsItem::NewTagList(std::string_view text) {
  std::string list;
  list.reserve(text.size() + 1);
  ForEachTag(text, [&](std::string_view tag, std::string_view value) {
    if (const ItemField* field = ItemFields::Find(tag)) {
      ItemFields::WriteTolerantly(*this, *field, value);
    } else {
      AppendTag(list, tag, value);
    }
  });
  DropPositiveDisplay(list);
  tags_.Assign(std::move(list));
}

std::string clsItem::TagList() const {
  std::string list = tags_.Text();
  for (const ItemField& field : ItemFields::kTable) {
    ItemFields::Append(list, *this, field, ItemFields::NumberForm::Plain);
  }
  return list;
}

std::string clsItem::TagListForSaving() const {
  std::string list = tags_.Text();
  for (const ItemField& field : ItemFields::kTable) {
    if (field.rules & ItemField::kNotSaved) continue;
    ItemFields::Append(list, *this, field, ItemFields::NumberForm::KeepDecimal);
  }
  return list;
}

bool clsItem::RefusesName(std::string_view tag, std::string_view request) const {
  if (tag != "name" && tag != "nameext") return false;
  if (Owner) {
    std::string line = "Request to ";
    line.append(request).append(" Name or NameExt of item '").append(FullName()).append("' refused.");
    Owner->Env().log.LogLine(line);
  }
  return true;
}

clsItem::SegmentChange clsItem::TagListSegmentReplace(std::string_view segment) {
  SegmentChange change;
  for (const modTags::TagItem& tag : modTags::ReturnTagItems(segment)) {
    if (tag.name.empty()) continue;
    if (RefusesName(tag.name, "replace")) {
      change.complete = false;
      continue;
    }
    change.oldValues.emplace_back(tag.name, StoredTag(tag.name));
    SetTagItem(tag.name, tag.value);
  }
  return change;
}

clsItem::SegmentChange clsItem::TagListSegmentInsert(std::string_view segment) {
  SegmentChange change;
  for (const modTags::TagItem& tag : modTags::ReturnTagItems(segment)) {
    if (tag.name.empty()) continue;
    if (RefusesName(tag.name, "insert into")) {
      change.complete = false;
      continue;
    }
    std::string old = StoredTag(tag.name);
    std::string merged = MergedIntoList(tag.name, old, tag.value);
    // An entry that was there already is no change of this segment, and must not be undone with it.
    if (merged == old) continue;
    change.oldValues.emplace_back(tag.name, std::move(old));
    SetTagItem(tag.name, merged);
  }
  return change;
}

void clsItem::AppendToTagList(std::string_view segment) {
  std::string list = tags_.Text();
  ForEachTag(segment, [&](std::string_view tag, std::string_view value) {
    if (!tag.empty() && !value.empty()) AppendTag(list, tag, value);
  });
  tags_.Assign(std::move(list));
}

// A plain search of text, kept on purpose: "k1" counts as being in "k11" and is not added then. Whoever makes
// a child asks HasChild afterwards.
void clsItem::AddChild(std::string_view key) {
  if (key.empty()) return;
  if (Trim(childKeyList_).empty()) {
    childKeyList_ = key;
    return;
  }
  std::string entry = "," + std::string(key);
  if (("," + childKeyList_).find(entry) == std::string::npos) childKeyList_ += entry;
}

void clsItem::RemoveChild(std::string_view key) {
  std::string others;
  bool found = false, first = true;
  modNewParser::ForEachToken(childKeyList_, ',', modNewParser::kPlain, [&](std::string_view entry) {
    if (!found && entry == key) {
      found = true;
      return;
    }
    if (!first) others += ',';
    others += entry;
    first = false;
  });
  if (found) childKeyList_ = std::move(others);
}

bool clsItem::HasChild(std::string_view key) const {
  bool found = false;
  modNewParser::ForEachToken(childKeyList_, ',', modNewParser::kPlain,
                             [&](std::string_view entry) { found = found || entry == key; });
  return found;
}

// Leaves IDKey, Flag and the skill type as they are.
void clsItem::Clear() {
  TerminateMods();
  Owner = nullptr;
  ItemType = kNoType;
  AffectedItems.clear();
  AffectedBonuses.clear();
  AffectedConditionals.clear();
  AppliedBonuses.clear();
  AppliedConditionals.clear();
  BonusList.clear();
  ConditionalList.clear();
  for (const ItemField& field : ItemFields::kTable) {
    if (field.tag != "type") ItemFields::WriteTolerantly(*this, field, "");
  }
  maneuver_ = 0;
  mitigatedByModifier_ = false;
  tags_.Assign("");
}

void clsItem::CopyData(const clsItem& from) {
  Flag = from.Flag;
  BonusList = from.BonusList;
  ConditionalList = from.ConditionalList;
  for (const ItemField& field : ItemFields::kTable) ItemFields::Copy(*this, from, field);
  maneuver_ = from.maneuver_;
  raiseRuleOf_ = from.raiseRuleOf_;
  mitigatedByModifier_ = from.mitigatedByModifier_;
  if (tags_.Text() != from.tags_.Text()) tags_.Assign(from.tags_.Text());
}

}  // namespace kvr
