// The summary that kivera-batch prints: who it is, what the points went to, and each trait with level and
// cost.
#include "frontend/CharacterSummary.h"

#include <fmt/format.h>

#include <limits>

#include "core/Numbers.h"
#include "core/Text.h"

namespace kvr {

namespace {

constexpr std::size_t kNameWidth = 34;

struct SectionTitle {
  ItemType type;
  std::string_view title;
};
constexpr SectionTitle kSections[] = {
    {kStats, "Attributes"}, {kPackages, "Templates"},   {kAds, "Advantages"},
    {kPerks, "Perks"},      {kDisads, "Disadvantages"}, {kQuirks, "Quirks"},
    {kSkills, "Skills"},    {kSpells, "Spells"},        {kEquipment, "Equipment"}};

bool IsShown(clsItem& item) {
  const std::string_view display = item.FreeTag("display");
  return item.FreeTagIsEmpty("hide") && (display.empty() || IsSet(display));
}

std::string ValueOf(clsItem& item) {
  switch (item.ItemType) {
    case kStats:
      return NumberText(item.Score());
    case kEquipment:
      return std::string(item.FreeTag("count"));
    case kSkills:
    case kSpells:
      return NumberText(static_cast<double>(item.Level()));
    default:
      return item.LevelName();
  }
}

std::string CostOf(clsItem& item) {
  if (item.ItemType == kEquipment) return "$" + NumberText(Currency::FromVal(item.TagItem("cost")));
  return "[" + NumberText(item.Points()) + "]";
}

// Pads by characters, not bytes.
std::string Padded(std::string text, std::size_t width) {
  const auto letters = std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; });
  if (static_cast<std::size_t>(letters) < width) text.append(width - static_cast<std::size_t>(letters), ' ');
  return text;
}

// The traits of a type as they are shown: attributes of the main window first, in its order.
std::vector<clsItem*> ShownTraits(KVRCharacter& character, ItemType type) {
  std::vector<clsItem*> traits;
  for (clsItem& item : character.ItemsByType[static_cast<std::size_t>(type)]) {
    if (IsShown(item)) traits.push_back(&item);
  }
  const auto place = [](const clsItem* item) {
    const double mainWindow = Val(item->FreeTag("mainwin"));
    return mainWindow > 0 ? mainWindow : std::numeric_limits<double>::infinity();
  };
  std::stable_sort(traits.begin(), traits.end(),
                   [&](const clsItem* a, const clsItem* b) { return place(a) < place(b); });
  return traits;
}

void AddSection(std::vector<std::string>& lines, KVRCharacter& character, const SectionTitle& section) {
  const std::vector<clsItem*> traits = ShownTraits(character, section.type);
  if (traits.empty()) return;
  const Currency cost = character.Cost[static_cast<std::size_t>(section.type)];
  lines.push_back(fmt::format("{} [{}]", section.title, NumberText(cost)));
  for (clsItem* item : traits) {
    const std::string indent = item->ParentKey().empty() ? "  " : "    ";
    const std::string name = Padded(indent + item->FullNameTLExpanded(false), kNameWidth);
    lines.push_back(fmt::format("{}{:>6} {}", name, ValueOf(*item), CostOf(*item)));
  }
}

}  // namespace

std::vector<std::string> CharacterSummary(KVRCharacter& character) {
  character.CalcPointCosts();
  std::vector<std::string> lines;
  std::string who = character.Name;
  if (!character.Player.empty()) who += " (" + character.Player + ")";
  lines.push_back(who);
  lines.push_back(fmt::format("{} points spent of {}, {} left", NumberText(character.TotalCost),
                              NumberText(character.TotalPoints), NumberText(character.UnspentPoints)));
  for (const SectionTitle& section : kSections) AddSection(lines, character, section);
  return lines;
}

}  // namespace kvr
