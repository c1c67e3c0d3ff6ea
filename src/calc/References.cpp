// What a name in a formula stands for: traits by prefix, attributes by name or symbol, the words of the
// context, and the lists of prerequisites.
#include <fmt/format.h>

#include <optional>

#include "calc/SolverContext.h"
#include "calc/modSolver.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTools.h"
#include "library/modPrefixes.h"

namespace kvr::modSolver {
namespace {

constexpr std::string_view kOperators[] = {"<>", ">=", "<=", "==", ">", "<", "="};

// A reference taken apart. Without a tag of its own it reads the one of its prefix.
struct ParsedReference {
  bool hasPrefix = false;
  ItemType type = kNoType;
  std::string_view name;
  std::string tag;
};

ParsedReference ParseReference(std::string_view text) {
  ParsedReference parsed;
  const modPrefixes::Reference reference = modPrefixes::ExtractPrefix(text);
  parsed.hasPrefix = !reference.prefix.empty();
  parsed.name = reference.rest;
  if (parsed.hasPrefix) {
    if (const modPrefixes::Prefix* row = modPrefixes::FindPrefix(reference.prefix)) {
      parsed.type = row->type;
      parsed.tag = row->defaultTag;
    }
  }
  if (const std::size_t colons = parsed.name.find("::"); colons != npos) {
    parsed.tag = LCase(Trim(parsed.name.substr(colons + 2)));
    parsed.name = Trim(parsed.name.substr(0, colons));
  }
  if (EndsWithNoCase(parsed.name, " pts")) {
    parsed.tag = "points";
    parsed.name.remove_suffix(4);
  }
  return parsed;
}

clsItem* FindTrait(ParsedReference& parsed, Context& context) {
  if (!parsed.hasPrefix) {
    parsed.type = kStats;
    if (parsed.tag.empty()) parsed.tag = "score";
  }
  clsItem* trait = context.character.FindItem(parsed.name, parsed.type);
  if (!trait && parsed.type == kStats) trait = context.character.FindItemBySymbol(parsed.name, kStats);
  return trait;
}

double NumberInTag(clsItem& trait, const std::string& tag) {
  const std::string text = trait.TagItem(tag);
  if (text.empty()) return 0;
  try {
    return CDbl(text);
  } catch (const KVRError& error) {
    throw KVRError(error.Number(), std::string(error.what()) + ": the tag '" + tag + "' of '" +
                                       trait.FullName() + "' holds \"" + text.substr(0, 200) + "\"");
  }
}

// The words that are read in the context of the formula.
enum class ContextWord { None, Char, Owner, Me, Level, Count, Prereq, LowPrereq, Default };

ContextWord ContextWordOf(std::string_view name) {
  struct Row {
    std::string_view word;
    ContextWord meaning;
  };
  static constexpr Row kWords[] = {{"char", ContextWord::Char},
                                   {"owner", ContextWord::Owner},
                                   {"me", ContextWord::Me},
                                   {"%level", ContextWord::Level},
                                   {"%count", ContextWord::Count},
                                   {"prereq", ContextWord::Prereq},
                                   {"lowprereq", ContextWord::LowPrereq},
                                   {"default", ContextWord::Default}};
  for (const Row& row : kWords)
    if (row.word.size() == name.size() && EqualNoCase(row.word, name)) return row.meaning;
  return ContextWord::None;
}

std::string_view TagOrLevel(const ParsedReference& parsed) {
  return parsed.tag.empty() ? std::string_view("level") : std::string_view(parsed.tag);
}

double ContextValue(ContextWord word, const ParsedReference& parsed, Context& context) {
  CalcItem& item = context.item;
  context.state.noCache = true;
  switch (word) {
    case ContextWord::Char:
      return Solver(context.character.TagItem(parsed.tag), item);
    case ContextWord::Owner: {
      CalcItem* owner = item.OwnerContext();
      return owner ? Solver(owner->TagItem(TagOrLevel(parsed)), *owner) : 0;
    }
    case ContextWord::Me:
      return Solver(item.TagItem(TagOrLevel(parsed)), item);
    case ContextWord::Level:
      return Val(item.TagItem("level"));
    case ContextWord::Count:
      return Val(item.TagItem("count"));
    case ContextWord::Prereq:
      return LargestOf(GetValueList(GetPrereqList(item), item), context);
    case ContextWord::LowPrereq:
      return SmallestOf(GetValueList(GetPrereqList(item), item), context);
    default:
      return SmallestOf(item.TagItem("deffrom"), context);
  }
}

std::string ContextText(ContextWord word, const ParsedReference& parsed, Context& context) {
  CalcItem& item = context.item;
  context.state.noCache = true;
  switch (word) {
    case ContextWord::Char:
      return context.character.TagItem(parsed.tag);
    case ContextWord::Owner: {
      CalcItem* owner = item.OwnerContext();
      return owner ? owner->TagItem(TagOrLevel(parsed)) : std::string();
    }
    case ContextWord::Me:
      return item.TagItem(TagOrLevel(parsed));
    case ContextWord::Level:
      return item.TagItem("level");
    case ContextWord::Count:
      return item.TagItem("count");
    case ContextWord::Prereq:
    case ContextWord::LowPrereq:
      return GetValueList(GetPrereqList(item), item);
    default:
      return item.TagItem("deffrom");
  }
}

// A part that is a number, or begins with one that is not 0, is that number.
std::optional<double> LeadingNumber(std::string_view part) {
  const char first = part.empty() ? '\0' : part[0];
  const bool mayBegin = (first >= '0' && first <= '9') || first == '.' || first == '-' || first == '+' ||
                        first == ' ' || first == '\t' || first == '\r' || first == '\n';
  if (!mayBegin) return std::nullopt;
  const double number = Val(part);
  if (number != 0 || part == "0") return number;
  return std::nullopt;
}

// The reference that a value list makes of a trait: with a tag of its own only where `sd` asks for one.
double ListedValue(std::string_view reference, bool isStat, bool withTag, Context& context) {
  if (!withTag) return ReferenceValue(reference, context);
  return ReferenceValue(std::string(reference) + (isStat ? "::score" : "::level"), context);
}

void AppendValue(std::string& list, double value) {
  if (!list.empty()) list += ',';
  AppendStr(list, value);
}

void AppendGroup(std::string& list, std::string_view group, bool withTag, Context& context) {
  for (const clsRefItem& member : context.character.Groups) {
    if (!EqualNoCase(member.Group, group)) continue;
    std::string reference(modPrefixes::ItemTypeName(member.ItemType));
    if (!reference.empty()) reference += ':';
    reference += member.FullName();
    AppendValue(list, ListedValue(reference, member.ItemType == kStats, withTag, context));
  }
}

}  // namespace

double ReferenceValue(std::string_view part, Context& context) {
  if (const std::optional<double> number = LeadingNumber(part)) return *number;
  clsTokenCollection& tokens = context.character.TokenCache;
  part = modTools::StripQuotesAndBraces(part);
  if (const clsToken* token = tokens.Item(part)) return token->Value;
  if (context.state.overBound) return 0;  // long texts would be read again and again for nothing
  ParsedReference parsed = ParseReference(part);
  if (!parsed.hasPrefix) {
    const ContextWord word = ContextWordOf(parsed.name);
    if (word != ContextWord::None) return ContextValue(word, parsed, context);
  }
  clsItem* trait = FindTrait(parsed, context);
  if (!trait && parsed.type == kStats) return 0;
  const double value = trait ? NumberInTag(*trait, parsed.tag) : 0;
  if (!context.state.overBound) tokens.Add(part, value, trait ? trait->IDKey : 0);
  return value;
}

std::string ReferenceText(std::string_view part, Context& context) {
  if (LeadingNumber(part)) return std::string(part);
  part = modTools::StripQuotesAndBraces(part);
  ParsedReference parsed = ParseReference(part);
  if (!parsed.hasPrefix) {
    const ContextWord word = ContextWordOf(parsed.name);
    if (word != ContextWord::None) return ContextText(word, parsed, context);
  }
  clsItem* trait = FindTrait(parsed, context);
  return trait ? trait->TagItem(parsed.tag) : "0";
}

double GetItemVal(std::string_view reference, CalcItem& item) {
  Context context = ContextOf(item);
  return Guarded("modSolver:GetItemVal", reference, context,
                 [&] { return ReferenceValue(reference, context); });
}

std::string GetItemTextVal(std::string_view reference, CalcItem& item) {
  Context context = ContextOf(item);
  return Guarded("modSolver:GetItemTextVal", reference, context,
                 [&] { return ReferenceText(reference, context); });
}

std::vector<std::string> GetPrereqArray(CalcItem& item) {
  const std::string needs = item.TagItem("needs");
  std::vector<std::string> names;
  for (std::string_view entry : modNewParser::ParseSplitChars(needs, ",|", modNewParser::kNames)) {
    for (std::string_view op : kOperators) {
      const std::size_t at = entry.find(op);
      if (at == npos) continue;
      entry = Trim(entry.substr(0, at));
      break;
    }
    names.emplace_back(entry);
  }
  return names;
}

std::string GetPrereqList(CalcItem& item) {
  return fmt::format("{}", fmt::join(GetPrereqArray(item), ", "));
}

std::string GetValueList(std::string_view list, CalcItem& item) {
  Context context = ContextOf(item);
  return Guarded("modSolver:GetValueList", list, context, [&] {
    const bool withTag = CInt(Val(item.TagItem("sd"))) != 0;
    std::string values;
    for (std::string_view entry : modNewParser::ParseSplitChars(list, "|,", modNewParser::kNames)) {
      if (StartsWithNoCase(entry, "gr:")) {
        AppendGroup(values, Trim(entry.substr(3)), withTag, context);
      } else {
        entry = modTools::StripQuotesAndBraces(entry);
        AppendValue(values, ListedValue(entry, StartsWithNoCase(entry, "st:"), withTag, context));
      }
    }
    return values;
  });
}

}  // namespace kvr::modSolver
