// Words for levels, read from a list of names.
#include "calc/LevelNames.h"

#include "character/clsItem.h"
#include "core/modNewParser.h"
#include "core/modTools.h"

namespace kvr {
namespace levelNames {
namespace {

struct Names {
  std::string_view zero = "none", rest;
};

// A list that begins with "[" names level 0 in its first entry.
Names SplitOffZero(std::string_view names) {
  if (!names.starts_with('[')) return {"none", names};
  std::size_t comma = names.find(',');
  std::string_view head = names.substr(0, comma);
  modNewParser::Tokens inner = modNewParser::ParseChars(head, "[]", modNewParser::kPlain);
  return {modTools::StripQuotes(Trim(inner.Token(2))), comma == npos ? "" : names.substr(comma + 1)};
}

}  // namespace

std::string NameOfLevel(std::string_view names, std::string_view cost, std::int32_t level) {
  names = Trim(names);
  if (names.empty()) {
    return level == 0 && cost.find('/') == npos ? std::string() : std::to_string(level);
  }
  auto [zero, rest] = SplitOffZero(names);
  if (level <= 0) return std::string(zero);
  auto entries = modNewParser::ParseSplitChars(rest, ",", modNewParser::kNames);
  std::size_t wanted = static_cast<std::size_t>(level);
  std::string name(modTools::StripQuotes(entries[std::min(wanted, entries.size()) - 1]));
  if (wanted > entries.size()) name += "+" + std::to_string(wanted - entries.size());
  return name;
}

}  // namespace levelNames

std::string clsItem::LevelName() {
  return levelNames::NameOfLevel(FreeTag("levelnames"), FreeTag("cost"), Level());
}

std::string clsItem::LevelCaption() {
  return levelNames::NameOfLevel(FreeTag("shortlevelnames"), FreeTag("cost"), Level());
}

}  // namespace kvr
