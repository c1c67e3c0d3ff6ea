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

// Most tag names are written so, and need no copy in lower case.
bool IsLowerAscii(std::string_view name) {
  for (char c : name)
    if (c < ' ' || c > '~' || (c >= 'A' && c <= 'Z')) return false;
  return true;
}

bool IsFieldName(std::string_view lowerName) {
  return lowerName == "name" || lowerName == "nameext" || lowerName == "cat";
}

}  // namespace

void clsSystemItem::SetName(std::string_view name) {
  name_ = name;
  lcaseName_ = name;
  LCaseInPlace(lcaseName_);
}

void clsSystemItem::SetNameExt(std::string_view ext) {
  nameExt_ = ext;
  lcaseNameExt_ = ext;
  LCaseInPlace(lcaseNameExt_);
}

// With room for the category that a reader adds.
void clsSystemItem::SetCategory(std::string_view list) {
  constexpr std::size_t kRoom = 24;
  if (category_.empty()) category_.reserve(list.size() + kRoom);
  category_ = list;
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
  bool present = entry.empty();
  if (!category_.empty())
    modNewParser::ForEachToken(category_, ',', modNewParser::kPlain, [&](std::string_view token) {
      present = present || EqualNoCase(Trim(token), entry);
    });
  if (!present) AppendCategory(entry);
}

void clsSystemItem::AppendCategory(std::string_view entry) {
  if (!category_.empty()) category_ += ", ";
  category_ += entry;
}

std::string clsSystemItem::FullName() const {
  return modPrefixes::JoinNameAndExt(name_, nameExt_);
}

std::string clsSystemItem::FullNameTL() const {
  const std::string_view tl = GetTagItem("tl");
  if (tl.empty()) return FullName();
  return modPrefixes::JoinNameAndExt(name_ + "/TL" + std::string(tl), nameExt_);
}

std::string clsSystemItem::CollectionKey() const {
  std::string key;
  key.reserve(name_.size() + nameExt_.size() + 5);
  key += std::to_string(ItemType);
  key += name_;
  if (!nameExt_.empty()) {
    key += " (";
    key += nameExt_;
    key += ')';
  }
  return key;
}

void clsSystemItem::NewTagList(std::string_view text) {
  if (IsCached()) return;
  BeginTagList(text.size() + 1);
  modNewParser::ForEachToken(text, ',', modNewParser::kParens, [&](std::string_view token) {
    const std::string_view piece = Trim(token);
    if (const std::size_t open = piece.find('('); open != npos) AddTagPiece(piece, open);
  });
  EndTagList();
}

void clsSystemItem::BeginTagList(std::size_t room) {
  tagList_.clear();
  tagList_.reserve(room);
}

// The last character is taken to be the closing parenthesis, whatever it is; the opening one cannot be it.
void clsSystemItem::AddTagPiece(std::string_view piece, std::size_t open) {
  if (open == 0 || open + 1 == piece.size()) return;
  const std::string_view name = piece.substr(0, open);
  if (piece.ends_with(')') && IsLowerAscii(name) && !IsFieldName(name)) {
    tagList_ += ',';
    tagList_ += piece;
  } else {
    AddTag(name, piece.substr(open + 1, piece.size() - open - 2));
  }
}

void clsSystemItem::AddTag(std::string_view name, std::string_view value) {
  if (EqualNoCase(name, "name")) return SetName(value);
  if (EqualNoCase(name, "nameext")) return SetNameExt(value);
  if (EqualNoCase(name, "cat")) return SetCategory(value);
  tagList_ += ',';
  tagList_ += LCase(name);
  tagList_ += '(';
  tagList_ += value;
  tagList_ += ')';
}

// Being shown is the rule, so a tag that says so is not kept.
void clsSystemItem::EndTagList() {
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
  list += tagList_;
  list += ",cat(" + category_ + ")";
  if (!nameExt_.empty()) list += ",nameext(" + nameExt_ + ")";
  list += ",name(" + name_ + ")";
  return list;
}

std::string clsSystemItem::TagItem(std::string_view tag) const {
  if (EqualNoCase(tag, "itemtype")) return std::string(modPrefixes::ItemTypeName(ItemType));
  if (EqualNoCase(tag, "name")) return name_;
  if (EqualNoCase(tag, "nameext")) return nameExt_;
  if (EqualNoCase(tag, "cat")) return category_;
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
  const std::size_t found = modTags::FindTag(tag, tagList_);
  if (found == npos) {
    tagList_ += ',';
    tagList_ += tag;
    tagList_ += '(';
    tagList_ += trimmed;
    tagList_ += ')';
    return;
  }
  const std::size_t begin = found + tag.size() + 2;
  const std::size_t length = modTags::FindCloseParen(std::string_view(tagList_).substr(begin));
  if (length != npos) tagList_.replace(begin, length, trimmed);
}

void clsSystemItem::DeleteTag(std::string_view tag) {
  if (IsCached() || EqualNoCase(tag, "name") || EqualNoCase(tag, "nameext") || EqualNoCase(tag, "fullname"))
    return;
  modTags::DeleteTagFromTagString(tagList_, tag);
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

void clsSystemItem::Clear() {
  *this = clsSystemItem();
}

std::weak_ordering SortOrder(const clsSystemItem& a, const clsSystemItem& b) {
  if (auto order = a.LCaseName() <=> b.LCaseName(); order != 0) return order;
  if (auto order = a.LCaseNameExt() <=> b.LCaseNameExt(); order != 0) return order;
  return a.ItemType <=> b.ItemType;
}

}  // namespace kvr
