// Lists with one value for each weapon mode.
#include "calc/ModeLists.h"

#include "core/modNewParser.h"

namespace kvr::modeLists {
namespace {

constexpr std::string_view kSourceTags[] = {
    "mode",    "damage",       "damagebasedon", "damtype",  "acc",   "reach",     "reachbasedon", "parry",
    "parryat", "blockat",      "rangehalfdam",  "rangemax", "shots", "rof",       "rcl",          "minst",
    "radius",  "armordivisor", "break",         "maxdam",   "dmg",   "skillused", "effectivest"};

constexpr std::string_view kCalculatedTags[] = {
    "chardamage",   "chardamtype", "characc",          "charreach",      "charparry",      "charrangehalfdam",
    "charrangemax", "charshots",   "charminst",        "chardr",         "chardb",         "charradius",
    "charbreak",    "charrof",     "charrcl",          "charskillused",  "charskillscore", "charparryscore",
    "parrylevel",   "blocklevel",  "chararmordivisor", "chareffectivest"};

}  // namespace

std::vector<std::string_view> Values(std::string_view list) {
  std::vector<std::string_view> values;
  if (Trim(list).empty()) return values;
  modNewParser::ForEachToken(list, '|', modNewParser::kTags,
                             [&](std::string_view value) { values.push_back(Trim(value)); });
  return values;
}

std::string_view ValueAt(std::string_view list, std::size_t mode) {
  std::string_view found;
  std::size_t number = 0;
  modNewParser::ForEachToken(list, '|', modNewParser::kTags, [&](std::string_view value) {
    if (++number == mode) found = Trim(value);
  });
  return found;
}

std::string Joined(std::span<const std::string> values) {
  std::string list;
  bool isEmpty = true, isFirst = true;
  for (const std::string& value : values) {
    if (!isFirst) list += '|';
    isFirst = false;
    list += value;
    isEmpty = isEmpty && value.empty();
  }
  return isEmpty ? "" : list;
}

std::span<const std::string_view> SourceTags() {
  return kSourceTags;
}
std::span<const std::string_view> CalculatedTags() {
  return kCalculatedTags;
}

}  // namespace kvr::modeLists
