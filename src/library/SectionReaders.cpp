// What one line of each section adds to the library.
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "library/CostConversion.h"
#include "library/DataFileReader.h"

namespace kvr {
namespace {

constexpr std::string_view kChildList = "#childlist(";

// Cuts the list of children out of an item line; this reader has no use for what it names.
std::string HandleChildList(std::string_view line, std::size_t found) {
  const std::string_view behind = line.substr(found + kChildList.size());
  const std::size_t close = modTags::FindCloseParen(behind);
  if (close == npos) return std::string(line);
  std::string rest(Trim(line.substr(0, found)));
  rest += Trim(behind.substr(close + 1));
  return rest;
}

// "1d-2" as the base "1" and the adds "-2".
void SplitDamage(std::string_view text, std::string& base, std::string& add) {
  const std::string lower = LCase(text);
  const std::string_view first =
      modNewParser::ParseChars(lower, "d", modNewParser::kQuotes | modNewParser::kParens).Token(1);
  base = Trim(first);
  add = first.size() < lower.size() ? Trim(std::string_view(lower).substr(first.size() + 1)) : "";
}

std::int32_t Whole(std::string_view text) {
  return CLng(Val(text));
}

}  // namespace

DataFileReader::Heading DataFileReader::ReadHeading(std::string_view line, std::string_view marks,
                                                    std::string_view divider, std::string_view complaint) {
  constexpr unsigned kMode = modNewParser::kQuotes | modNewParser::kParens;
  Heading heading;
  const modNewParser::Tokens outer = modNewParser::ParseChars(line, marks, kMode);
  if (outer.TokenCount() == 3) {
    std::string_view text = Trim(outer.Token(2));
    const modNewParser::Tokens halves = modNewParser::ParseChars(text, divider, kMode);
    if (halves.TokenCount() == 2) {
      heading.extra = Trim(halves.Token(2));
      text = Trim(halves.Token(1));
    }
    const modNewParser::Tokens quoted = modNewParser::ParseChars(text, "\"", modNewParser::kPlain);
    if (quoted.TokenCount() == 1 || quoted.TokenCount() == 3) {
      heading.name = Trim(quoted.TokenCount() == 3 ? quoted.Token(2) : text);
      return heading;
    }
  }
  log_.LogRed(std::string(complaint) + std::string(line));
  NoteWhere("A bad heading", line);
  return heading;
}

DataFileReader::Heading DataFileReader::ReturnCatNameAndCode(std::string_view line) {
  return ReadHeading(line, "<>", ":", "Bad header: ");
}

DataFileReader::Heading DataFileReader::ReturnPackageNameAndComment(std::string_view line) {
  return ReadHeading(line, "{}", "=", "Bad Package Name: ");
}

std::string DataFileReader::AddCategoryFromDataFile(std::string_view line) {
  Heading heading = ReturnCatNameAndCode(line);
  if (heading.name.empty()) return {};
  auto cat = std::make_unique<clsCategory>(clsCategory{heading.name, heading.extra, section_->itemType});
  clsCategory* standing = system_.Cats.AddOrFind(cat, clsSortedCatCollection::KeyOf(*cat));
  if (standing && !heading.extra.empty()) standing->Code = heading.extra;
  return heading.name;
}

// A line that can be read at one go has matching parentheses, so only the others are counted.
void DataFileReader::AddItemFromDataFile(std::string_view wholeLine) {
  std::string_view line = wholeLine;
  std::string without;
  const std::size_t childList = line.find('#') == npos ? npos : FindNoCase(line, kChildList);
  if (childList != npos) line = without = HandleChildList(line, childList);
  clsSystemItem& item = system_.NewItem();
  item.ItemType = section_->itemType;
  ItemLines::Notes notes;
  if (!ItemLines::ReadPlainLine(system_, item, line, section_->kind, notes)) {
    if (!ParensMatch(wholeLine)) return;
    ItemLines::ReadByTagString(item, line, section_->kind, notes);
  }
  item.IDKey = system_.NewKey();
  NoteOddities(notes);
  if (observer_) observer_->Item(lines_.LineNumber(), item);
  if (version_ < 3) {
    if (item.ItemType >= kAds && item.ItemType <= kPerks) ChangeSystemCostsToVersion3(item, "cost");
    if (item.ItemType == kStats) {
      ChangeSystemCostsToVersion3(item, "up");
      ChangeSystemCostsToVersion3(item, "down");
    }
  }
  system_.AddOrReplaceItem(item, heading_);
}

void DataFileReader::NoteOddities(const ItemLines::Notes& notes) {
  if (!notes.valueWithoutTag.empty()) Note("A value without a tag", notes.valueWithoutTag);
  if (!notes.nameEndingInBlank.empty())
    Note("A tag name that ends in a blank", "'" + std::string(notes.nameEndingInBlank) + "'");
  if (!notes.behindTag.empty())
    Note("Text behind the closing parenthesis of a tag", "'" + std::string(notes.behindTag) + "'");
  if (notes.tooManyModes) Note("More weapon modes than can be held; the rest of them is left out");
}

// A member that the group has already stays as it is.
void DataFileReader::AddRefItemFromDataFile(std::string_view line) {
  const modPrefixes::Reference reference = modPrefixes::ExtractPrefix(line);
  const auto [name, ext] = modPrefixes::SplitNameAndExt(reference.rest);
  auto item = std::make_unique<clsRefItem>(clsRefItem{heading_, std::string(name), std::string(ext),
                                                      modPrefixes::TypeFromPrefix(reference.prefix)});
  const std::string key = clsSortedRefCollection::GroupKeyOf(*item);
  system_.Groups.Add(std::move(item), key);
}

void DataFileReader::AddListItemFromDataFile(std::string_view line) {
  auto item = std::make_unique<clsRefItem>(clsRefItem{heading_, std::string(line), {}, kNoType});
  const std::string key = clsSortedRefCollection::ListKeyOf(*item);
  system_.Lists.Add(std::move(item), key);
}

void DataFileReader::AddModItemFromDataFile(std::string_view line) {
  ItemLines::Notes notes;
  auto mod = std::make_unique<ModRecord>();
  mod->IDKey = system_.NewKey();
  mod->NewTagList(ItemLines::ToTagString(line, ItemLines::Kind::Mod, notes));
  NoteOddities(notes);
  mod->SetTagItem("group", heading_);
  if (observer_) observer_->Mod(lines_.LineNumber(), *mod);
  if (version_ < 3) ChangeCostsToVersion3ForMods(*mod, "cost");
  const std::string key = mod->SysCollectionKey();
  if (!system_.Mods.AddOrFind(mod, key)) return;
  system_.Mods.Remove(key);
  system_.Mods.Add(std::move(mod), key);
}

void DataFileReader::AddPackageLineFromDataFile(std::string_view line) {
  if (line[0] != '{') {
    if (package_) package_->Lines.emplace_back(line);
    return;
  }
  Heading heading = ReturnPackageNameAndComment(line);
  auto package = std::make_unique<clsPackage>();
  package->IDKey = system_.NewKey();
  package->Name = heading.name;
  package->Comment = heading.extra;
  package->Group = heading_;
  package_ = package.get();
  const std::string key = "k" + std::to_string(package->IDKey);
  system_.Packages.Add(std::move(package), key);
}

void DataFileReader::AddSkillTypeItemFromDataFile(std::string_view line) {
  ItemLines::Notes notes;
  auto skillType = std::make_unique<clsSkillCosts>();
  skillType->NewTagList(ItemLines::ToTagString(line, ItemLines::Kind::Generic, notes));
  NoteOddities(notes);
  system_.AddSkillType(std::move(skillType));
}

void DataFileReader::AddBasicDamageFromDataFile(std::string_view line) {
  clsBasicDamage row;
  for (const modTags::TagItem& item : modTags::ReturnTagItems(line)) {
    if (item.name == "st") row.ST = Whole(item.value);
    if (item.name == "thr") SplitDamage(item.value, row.THBase, row.THAdd);
    if (item.name == "sw") SplitDamage(item.value, row.SWBase, row.SWAdd);
  }
  system_.BasicDamageList.push_back(std::move(row));
}

void DataFileReader::AddDamageBreakFromDataFile(std::string_view line) {
  clsDamageBreak row;
  for (const modTags::TagItem& item : modTags::ReturnTagItems(line)) {
    if (item.name == "break") row.Break = Whole(item.value);
    if (item.name == "adddice") row.AddDice = Whole(item.value);
    if (item.name == "subtract") row.Subtract = Whole(item.value);
  }
  system_.DamageBreaks.push_back(row);
}

void DataFileReader::AddBodyPartFromDataFile(std::string_view line) {
  const std::vector<modTags::TagItem> items = modTags::ReturnTagItems(line);
  auto text = [&](std::string_view tag) { return std::string(modTags::ValueOf(items, tag)); };
  clsBodyItem part;
  part.Name = text("name");
  part.Cat = text("cat");
  part.BaseDB = text("basedb");
  part.BaseDR = text("basedr");
  part.BaseHP = text("basehp");
  part.DB = text("db");
  part.DR = text("dr");
  part.HP = text("hp");
  part.Group = text("group");
  part.Display = IsTrueWord(text("display"));
  part.PosX = Whole(text("posx"));
  part.PosY = Whole(text("posy"));
  part.Expanded = IsTrueWord(text("expanded"));
  if (part.Cat.empty()) part.Cat = heading_;
  system_.BodyParts.push_back(std::move(part));
  if (heading_.empty()) return;
  system_.BodyNames.Add(std::make_unique<SortedString>(SortedString{heading_}), heading_);
}

}  // namespace kvr
