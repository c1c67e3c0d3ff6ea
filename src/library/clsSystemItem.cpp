// A library trait: three fields and a tag list, from the text of a data file line.
#include "library/clsSystemItem.h"

#include <unordered_set>

#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"

namespace kvr {
namespace {

// Calls change(name, old value) for each tag of the segment that may be changed; gathers the former values.
template <class Change>
std::string EditSegment(const clsSystemItem& item, std::string_view segment, std::string_view verb,
                        std::vector<std::string>& refused, Change&& change) {
  std::string report;
  for (const modTags::TagItem& tag : modTags::ReturnTagItems(segment)) {
    if (tag.name.empty()) continue;
    std::string old;
    if (tag.name == "name" || tag.name == "nameext") {
      refused.push_back("Request to " + std::string(verb) + " Name or NameExt of item '" + item.FullName() +
                        "' refused.");
    } else {
      old = item.TagItem(tag.name);
      change(tag.name, tag.value, old);
    }
    if (!report.empty()) report += ',';
    report += tag.name + "(" + old + ")";
  }
  return report;
}

}  // namespace

clsSystemItem::clsSystemItem(const clsSystemItem& other) : clsSystemItem() {
  *this = other;
}

clsSystemItem& clsSystemItem::operator=(const clsSystemItem& other) {
  IDKey = other.IDKey;
  ItemType = other.ItemType;
  FilePos = other.FilePos;
  TagListLength = other.TagListLength;
  Flag = other.Flag;
  Calculate = other.Calculate;
  BuildIcon = other.BuildIcon;
  DisplayString = memory_->Copy(other.DisplayString);
  DisplayStringShort = memory_->Copy(other.DisplayStringShort);
  name_ = memory_->Copy(other.name_);
  nameExt_ = memory_->Copy(other.nameExt_);
  lcaseName_ = memory_->Copy(other.lcaseName_);
  lcaseNameExt_ = memory_->Copy(other.lcaseNameExt_);
  category_ = memory_->Copy(other.category_);
  tagList_ = memory_->Copy(other.tagList_);
  return *this;
}

std::string_view clsSystemItem::Lowered(std::string_view text) {
  char* lowered = memory_->Room(text.size());
  memory_->Take(text.copy(lowered, text.size()));
  LCaseInPlace(lowered, text.size());
  return {lowered, text.size()};
}

void clsSystemItem::SetName(std::string_view name) {
  name_ = memory_->Copy(name);
  lcaseName_ = Lowered(name);
}

void clsSystemItem::SetNameExt(std::string_view ext) {
  nameExt_ = memory_->Copy(ext);
  lcaseNameExt_ = Lowered(ext);
}

void clsSystemItem::SetCategory(std::string_view list) {
  category_ = memory_->Copy(list);
}

void clsSystemItem::MergeCategories(std::string_view list) {
  if (list.find(',') == npos) return MergeCategory(Trim(list));
  std::unordered_set<std::string> present;
  modNewParser::ForEachToken(category_, ',', modNewParser::kPlain,
                             [&](std::string_view entry) { present.insert(LCase(Trim(entry))); });
  modNewParser::ForEachToken(list, ',', modNewParser::kPlain, [&](std::string_view token) {
    const std::string_view entry = Trim(token);
    if (!entry.empty() && present.insert(LCase(entry)).second) AppendCategory(entry);
  });
}

// The usual case, with nothing built for it.
void clsSystemItem::MergeCategory(std::string_view entry) {
  if (!entry.empty() && !modTags::IsItemInList(entry, category_)) AppendCategory(entry);
}

void clsSystemItem::AppendCategory(std::string_view entry) {
  if (!category_.empty()) category_ = memory_->Append(category_, ", ");
  category_ = memory_->Append(category_, entry);
}

std::string clsSystemItem::FullName() const {
  return modPrefixes::JoinNameAndExt(name_, nameExt_);
}

std::string clsSystemItem::FullNameTL() const {
  const std::string_view tl = GetTagItem("tl");
  if (tl.empty()) return FullName();
  return modPrefixes::JoinNameAndExt(std::string(name_).append("/TL").append(tl), nameExt_);
}

std::string clsSystemItem::CollectionKey() const {
  return std::to_string(ItemType) + FullName();
}

void clsSystemItem::NewTagList(std::string_view text) {
  if (IsCached()) return;
  RecordParts parts(Room(text.size() + 1));
  modNewParser::ForEachToken(text, ',', modNewParser::kParens, [&](std::string_view token) {
    const std::string_view piece = Trim(token);
    if (const std::size_t open = piece.find('('); open != npos) parts.AddPiece(piece, open);
  });
  TakeParts(parts);
  DropNeedlessDisplay();
}

// The category comes last, where it can grow.
void clsSystemItem::TakeParts(const RecordParts& parts) {
  tagList_ = parts.Tags();
  memory_->Take(tagList_.size());
  if (parts.Name) SetName(*parts.Name);
  if (parts.NameExt) SetNameExt(*parts.NameExt);
  if (parts.Category) SetCategory(*parts.Category);
}

void clsSystemItem::DropNeedlessDisplay() {
  std::string_view display = GetTagItem("display");
  if (EqualNoCase(display, "yes")) {
    DeleteTag("display");
    display = GetTagItem("display");
  }
  if (display == "-1") DeleteTag("display");
}

std::string clsSystemItem::TagList() const {
  if (IsCached()) return std::string(ReturnFastFileTagList());
  std::string list;
  list.reserve(tagList_.size() + category_.size() + nameExt_.size() + name_.size() + 24);
  list.append(tagList_).append(",cat(").append(category_).append(")");
  if (!nameExt_.empty()) list.append(",nameext(").append(nameExt_).append(")");
  list.append(",name(").append(name_).append(")");
  return list;
}

std::string clsSystemItem::TagItem(std::string_view tag) const {
  if (EqualNoCase(tag, "itemtype")) return std::string(modPrefixes::ItemTypeName(ItemType));
  if (EqualNoCase(tag, "name")) return std::string(name_);
  if (EqualNoCase(tag, "nameext")) return std::string(nameExt_);
  if (EqualNoCase(tag, "cat")) return std::string(category_);
  if (EqualNoCase(tag, "fullname")) return FullName();
  return std::string(GetTagItem(tag));
}

std::string_view clsSystemItem::GetTagItem(std::string_view tag) const {
  return modTags::GetTagValue(tag, TagText());
}

void clsSystemItem::SetTagItem(std::string_view tag, std::string_view value) {
  if (IsCached()) return;
  const std::string_view trimmed = Trim(value);
  if (EqualNoCase(tag, "name")) return SetName(trimmed);
  if (EqualNoCase(tag, "nameext")) return SetNameExt(trimmed);
  if (EqualNoCase(tag, "cat")) return SetCategory(trimmed);
  std::string tags(tagList_);
  const std::size_t found = modTags::FindTag(tag, tags);
  if (found == npos) {
    tags.append(",").append(tag).append("(").append(trimmed).append(")");
  } else {
    const std::size_t begin = found + tag.size() + 2;
    const std::size_t length = modTags::FindCloseParen(std::string_view(tags).substr(begin));
    if (length != npos) tags.replace(begin, length, trimmed);
  }
  ReplaceTags(tags);
}

// A record that is changed again and again takes no more room for it.
void clsSystemItem::ReplaceTags(const std::string& tags) {
  memory_->Drop(tagList_);
  tagList_ = memory_->Copy(tags);
}

void clsSystemItem::DeleteTag(std::string_view tag) {
  if (IsCached() || EqualNoCase(tag, "name") || EqualNoCase(tag, "nameext") || EqualNoCase(tag, "fullname"))
    return;
  std::string tags(tagList_);
  modTags::DeleteTagFromTagString(tags, tag);
  ReplaceTags(tags);
}

std::string clsSystemItem::TagListSegmentReplace(std::string_view segment,
                                                 std::vector<std::string>& refused) {
  if (IsCached()) return {};
  return EditSegment(
      *this, segment, "replace", refused,
      [this](std::string_view tag, std::string_view value, std::string_view) { SetTagItem(tag, value); });
}

std::string clsSystemItem::TagListSegmentInsert(std::string_view segment, std::vector<std::string>& refused) {
  if (IsCached()) return {};
  return EditSegment(*this, segment, "insert into", refused,
                     [this](std::string_view tag, std::string_view value, std::string_view old) {
                       if (tag == "cat") return MergeCategories(value);
                       std::string merged(old);
                       if (tag == "initmods") {
                         modTags::InsertItemIntoListAlt(value, merged, "|");
                       } else {
                         modTags::InsertItemIntoList(value, merged);
                       }
                       SetTagItem(tag, merged);
                     });
}

std::weak_ordering SortOrder(const clsSystemItem& a, const clsSystemItem& b) {
  if (auto order = a.LCaseName() <=> b.LCaseName(); order != 0) return order;
  if (auto order = a.LCaseNameExt() <=> b.LCaseNameExt(); order != 0) return order;
  return a.ItemType <=> b.ItemType;
}

}  // namespace kvr
