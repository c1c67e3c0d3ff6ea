// What the lists of available traits show for each library trait, made once behind a load.
#include <fmt/format.h>

#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "library/KVRSystem.h"

namespace kvr {

namespace {

// Columns by trait type, separated by "|": the full list and the short one.
constexpr std::array<std::string_view, 10> kStandardColumns = {"",
                                                               "%standard",
                                                               "%standard|costprog",
                                                               "%standard|costprog",
                                                               "%standard|costprog",
                                                               "%standard|costprog",
                                                               "%standard",
                                                               "%standard",
                                                               "%standard|equipcost|equipweight",
                                                               "%standard|pointsorcost"};
constexpr std::array<std::string_view, 10> kShortColumns = {"",
                                                            "%standard",
                                                            "%standard|costprog",
                                                            "%standard|costprog",
                                                            "%standard|costprog",
                                                            "%standard|costprog",
                                                            "fullnametl|type",
                                                            "fullnametl|type",
                                                            "%standard|basecost",
                                                            "%standard|pointsorcost"};

std::string_view FirstOf(const clsSystemItem& item, std::string_view tag, std::string_view other) {
  const std::string_view value = item.GetTagItem(tag);
  return value.empty() ? item.GetTagItem(other) : value;
}

// The cost progression, with its limit behind it.
std::string CostWithLimit(const clsSystemItem& item) {
  std::string text(item.GetTagItem("cost"));
  if (const std::string_view upto = item.GetTagItem("upto"); !upto.empty()) text.append("/").append(upto);
  return text;
}

std::string CostProgression(const clsSystemItem& item) {
  const std::string_view shown = item.GetTagItem("displaycost");
  return shown.empty() ? CostWithLimit(item) : std::string(shown);
}

std::string PointsOrCost(const clsSystemItem& item) {
  std::string points(item.GetTagItem("points"));
  if (points.empty()) return CostWithLimit(item);
  const bool goesOn = item.GetTagItem("cost").find('/') != npos;
  return points.append(goesOn ? "/+" : "");
}

std::string StandardName(const clsSystemItem& item) {
  std::string name = item.FullNameTL();
  if (const std::string_view type = item.GetTagItem("type"); !type.empty()) name.append(", ").append(type);
  return name;
}

void AppendColumn(std::string& line, const clsSystemItem& item, std::string_view field) {
  if (field == "%standard") {
    line += StandardName(item);
  } else if (field == "fullnametl") {
    line += item.FullNameTL();
  } else if (field == "costprog") {
    line += CostProgression(item);
  } else if (field == "pointsorcost") {
    line += PointsOrCost(item);
  } else if (field == "equipcost") {
    line += FirstOf(item, "displaycost", "basecost");
  } else if (field == "equipweight") {
    line += FirstOf(item, "displayweight", "baseweight");
  } else {
    line += item.GetTagItem(field);
  }
}

std::string DisplayLine(const clsSystemItem& item, const std::array<std::string_view, 10>& columns) {
  std::string line;
  bool first = true;
  modNewParser::ForEachToken(columns[static_cast<std::size_t>(item.ItemType)], '|', modNewParser::kPlain,
                             [&](std::string_view field) {
                               if (!first) line += '\t';
                               first = false;
                               AppendColumn(line, item, field);
                             });
  return line;
}

// Directives and tags that will ask the user something when the trait is added.
constexpr std::string_view kAskingWords[] = {"#buildit", "#buildcombo", "#edit",
                                             "#input",   "#choice",     ",select"};

}  // namespace

void KVRSystem::BuildDisplayStrings() {
  TellStage("Building display strings...");
  const TimerScope all;
  const TimerScope standard;
  for (clsSystemItem& item : Items) item.DisplayString = itemTexts_.Copy(DisplayLine(item, kStandardColumns));
  env_.log.LogIndented(
      fmt::format("Standard display string creation took {} seconds", NumberText(standard.Seconds())));
  const TimerScope shortOnes;
  for (clsSystemItem& item : Items)
    item.DisplayStringShort = itemTexts_.Copy(DisplayLine(item, kShortColumns));
  env_.log.LogIndented(
      fmt::format("Short display string creation took {} seconds", NumberText(shortOnes.Seconds())));
  env_.log.LogIndented(fmt::format("Display string creation took {} seconds", NumberText(all.Seconds())));
}

void KVRSystem::BuildIcons() {
  const auto asks = [](std::string_view text) {
    return std::any_of(std::begin(kAskingWords), std::end(kAskingWords),
                       [&](std::string_view word) { return ContainsNoCase(text, word); });
  };
  for (clsSystemItem& item : Items) {
    const bool does = asks(item.TagListNoFill()) || asks(item.Name()) || asks(item.NameExt());
    item.BuildIcon = does ? 1 : 0;
  }
}

}  // namespace kvr
