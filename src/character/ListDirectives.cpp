// The directives that come to a list: "#list" and "#grouplist" out of the library's lists and groups,
// "#buildlist" out of a list in hand, "#buildselectlist" and "#buildcharitemlist" out of the traits of the
// library and of the character.
#include "character/DirectiveRun.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::modDirectives {
namespace {

constexpr std::string_view kListItem = "%listitem%";

// One piece of a body: a bare word, or "word(value)" with the value as it is written.
struct Piece {
  std::string word;  // lower case
  std::string_view value;
};

Piece PieceOf(std::string_view text) {
  text = Trim(text);
  const std::size_t open = text.find('(');
  Piece piece{LCase(Trim(text.substr(0, open))), {}};
  if (open == npos) return piece;
  piece.value = text.substr(open + 1);
  if (piece.value.ends_with(')')) piece.value.remove_suffix(1);
  return piece;
}

// --- How the entries are written
// -----------------------------------------------------------------------------------------

class EntryForm {
 public:
  // "append(...)", "prepend(...)", "flags(...)" or a bare flag; false for anything else.
  bool TakeOption(const Piece& piece) {
    if (piece.word == "append") return Keep(append_, piece.value);
    if (piece.word == "prepend") return Keep(prepend_, piece.value);
    if (piece.word != "flags") return TakeFlag(piece.word);
    bool known = true;
    modNewParser::ForEachToken(piece.value, ',', modNewParser::kPlain,
                               [&](std::string_view flag) { known = TakeFlag(LCase(Trim(flag))) && known; });
    return known;
  }

  // What is written for each entry, which stands at "%listitem%"; without one, the entry alone.
  void UseTemplate(std::string_view textTemplate) { template_ = textTemplate; }

  void Add(std::string_view written) {
    std::string entry = template_;
    modTools::ReplaceAll(entry, kListItem, Marked(written));
    if (any_) list_ += ", ";
    any_ = true;
    list_.append(prepend_).append(entry).append(append_);
  }
  std::string Finish() {
    if (masterQuotes_) list_ = '"' + list_ + '"';
    if (masterBraces_) list_ = '{' + list_ + '}';
    return std::move(list_);
  }

 private:
  // The entry between its marks.
  std::string Marked(std::string_view written) const {
    std::string_view text = modTools::StripQuotesAndBraces(written);
    if (noPrefix_) text = modPrefixes::ExtractPrefix(text).rest;
    std::string entry(text);
    const bool marked = quotes_ || doubledQuotes_ || braces_ || parens_;
    // An "=" at the end of a choice is the sign of its cost, but not where the data encloses it.
    const bool needsQuotes =
        !marked && (HoldsTopLevel(text, ",") || (IsEnclosed(written) && HoldsTopLevel(text, "=")));
    if (doubledQuotes_) {
      entry = "\"\"" + entry + "\"\"";
    } else if ((quotes_ || needsQuotes) && !noQuotes_) {
      entry = '"' + entry + '"';
    }
    if (parens_) entry = '(' + entry + ')';
    if (braces_) entry = '{' + entry + '}';
    return entry;
  }
  // A text in quotes without them; else with the blanks that it was given.
  static bool Keep(std::string& text, std::string_view value) {
    text = modTools::IsQuoted(value) ? modTools::StripQuotes(value) : value;
    return true;
  }
  bool TakeFlag(std::string_view flag) {
    static constexpr struct {
      std::string_view word;
      bool EntryForm::*member;
    } kFlags[] = {
        {"quotes", &EntryForm::quotes_},
        {"inquotes", &EntryForm::quotes_},
        {"indoublequotes", &EntryForm::doubledQuotes_},
        {"indoubledquotes", &EntryForm::doubledQuotes_},
        {"noquotes", &EntryForm::noQuotes_},
        {"masterquotes", &EntryForm::masterQuotes_},
        {"parens", &EntryForm::parens_},
        {"parenit", &EntryForm::parens_},
        {"inparens", &EntryForm::parens_},
        {"inbraces", &EntryForm::braces_},
        {"masterbraces", &EntryForm::masterBraces_},
        {"noprefix", &EntryForm::noPrefix_},
    };
    for (const auto& each : kFlags) {
      if (each.word == flag) return this->*each.member = true;
    }
    return false;
  }
  static bool HoldsTopLevel(std::string_view text, std::string_view sign) {
    return modNewParser::FindWordTopLevel(text, sign, modNewParser::kNames) != npos;
  }
  static bool IsEnclosed(std::string_view text) {
    return modTools::IsQuoted(text) || modTools::IsBraced(text);
  }

  std::string template_ = std::string(kListItem), prepend_, append_, list_;
  bool any_ = false;
  bool quotes_ = false, doubledQuotes_ = false, noQuotes_ = false, parens_ = false, braces_ = false,
       noPrefix_ = false, masterQuotes_ = false, masterBraces_ = false;
};

// --- Lists and groups of the library
// -----------------------------------------------------------------------------------

using EntryText = std::string (*)(const clsRefItem&);

std::string ExpandReferences(DirectiveRun& run, const Directive& directive,
                             const clsSortedRefCollection& references, EntryText textOf) {
  const auto arguments = modNewParser::ParseSplitChars(directive.body, ",", modNewParser::kNames);
  const std::string_view name = modTools::StripQuotesAndBraces(arguments.front());
  EntryForm form;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (!form.TakeOption(PieceOf(arguments[i]))) {
      run.Log("Unknown option '" + std::string(arguments[i]) + "' in " + directive.Text());
    }
  }
  bool found = false;
  for (const clsRefItem& reference : references) {
    if (!EqualNoCase(reference.Group, name)) continue;
    found = true;
    form.Add(textOf(reference));
  }
  if (!found) run.Log("The library has nothing for " + directive.Text());
  return form.Finish();
}

// --- Lists out of traits
// ---------------------------------------------------------------------------------------------

enum class Comparison { Is, IsNot, Includes, Excludes, ListIncludes, ListExcludes };

struct Query {
  ItemType type = kNoType;
  std::string tag, wanted;  // lower case
  Comparison comparison = Comparison::Is;
  std::string textTemplate = std::string(kListItem);
};

// Cuts the first word off.
std::string_view NextWord(std::string_view& text) {
  text = Trim(text);
  const std::size_t end = std::min(text.find(' '), text.size());
  const std::string_view word = text.substr(0, end);
  text = Trim(text.substr(end));
  return word;
}

bool ReadComparison(std::string_view word, Comparison& comparison) {
  static constexpr struct {
    std::string_view word;
    Comparison comparison;
  } kWords[] = {{"is", Comparison::Is},
                {"isnot", Comparison::IsNot},
                {"includes", Comparison::Includes},
                {"excludes", Comparison::Excludes},
                {"listincludes", Comparison::ListIncludes},
                {"listexcludes", Comparison::ListExcludes}};
  for (const auto& each : kWords) {
    if (!EqualNoCase(each.word, word)) continue;
    comparison = each.comparison;
    return true;
  }
  return false;
}

// "<type> where <tag> <comparison> <value>"
bool ReadCondition(std::string_view text, Query& query) {
  const std::string_view type = NextWord(text);
  query.type = EqualNoCase(type, "statistics") ? kStats : modPrefixes::TypeFromTypeWord(type);
  if (query.type == kNoType || !EqualNoCase(NextWord(text), "where")) return false;
  query.tag = LCase(NextWord(text));
  if (query.tag.empty() || !ReadComparison(NextWord(text), query.comparison)) return false;
  query.wanted = LCase(modTools::StripQuotesAndBraces(text));
  return true;
}

// The condition goes as far as the piece "template(...)", commas included.
bool ReadQuery(std::string_view body, Query& query) {
  std::size_t comma = npos;
  do {
    comma = modNewParser::FindWordTopLevel(body, ",", modNewParser::kTags, comma == npos ? 0 : comma + 1);
    if (comma == npos) return ReadCondition(body, query);
  } while (PieceOf(body.substr(comma + 1)).word != "template");
  query.textTemplate = Trim(PieceOf(body.substr(comma + 1)).value);
  return ReadCondition(body.substr(0, comma), query);
}

bool Matches(const Query& query, std::string_view written) {
  const std::string value = LCase(written);
  switch (query.comparison) {
    case Comparison::Is:
      return value == query.wanted;
    case Comparison::IsNot:
      return value != query.wanted;
    case Comparison::Includes:
      return value.find(query.wanted) != npos;
    case Comparison::Excludes:
      return value.find(query.wanted) == npos;
    case Comparison::ListIncludes:
      return modTags::IsItemInList(query.wanted, value);
    case Comparison::ListExcludes:
      return !modTags::IsItemInList(query.wanted, value);
  }
  return false;
}

// The log speaks of both directives by the name of the first.
template <class Items>
std::string BuildFromTraits(DirectiveRun& run, const Directive& directive, Items& items) {
  Query query;
  if (!ReadQuery(directive.body, query)) {
    run.Log("This #BuildSelectList was improperly defined, and could not be used: " + directive.Text());
    run.Log(
        "#BuildSelectList should be in this format: #BuildSelectList( <Type> where <tag> [ is | isnot | "
        "includes | excludes | listincludes | listexcludes ] "
        "<tagvalue> , template( [some text]%ListItem%[more text] ))");
    return "";
  }
  std::string list;
  bool any = false;
  for (auto& item : items) {
    if (item.ItemType != query.type || !Matches(query, item.TagItem(query.tag))) continue;
    run.Log("found item: " + item.FullName());
    std::string entry = query.textTemplate;
    modTools::ReplaceAll(entry, kListItem, item.FullName());
    if (any) list += ", ";
    any = true;
    list += entry;
  }
  run.LogTraced(": BuildSelectList = " + list);
  return list;
}

}  // namespace

std::string HandleList(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:HandleList");
  return ExpandReferences(run, directive, run.character.System().Lists,
                          [](const clsRefItem& entry) { return entry.Name; });
}

std::string HandleGroupList(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:HandleGroupList");
  return ExpandReferences(run, directive, run.character.System().Groups, [](const clsRefItem& member) {
    const std::string prefix(modPrefixes::ItemTypeName(member.ItemType));
    return prefix.empty() ? member.FullName() : prefix + ":" + member.FullName();
  });
}

std::string HandleBuildList(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:HandleBuildList");
  EntryForm form;
  std::string_view list, textTemplate = kListItem;
  bool hasList = false;
  for (std::string_view text : modNewParser::ParseSplitChars(directive.body, ",", modNewParser::kTags)) {
    const Piece piece = PieceOf(text);
    if (piece.word == "list") {
      list = piece.value;
      hasList = true;
    } else if (piece.word == "template") {
      textTemplate = Trim(piece.value);
    } else if (!form.TakeOption(piece)) {
      run.Log("Unknown option '" + std::string(text) + "' in " + directive.Text());
    }
  }
  if (!hasList) return run.LogImproper("#BuildList", directive);
  form.UseTemplate(textTemplate);
  for (std::string_view entry : modNewParser::ParseSplitChars(list, ",", modNewParser::kNames)) {
    if (!entry.empty()) form.Add(entry);
  }
  std::string result = form.Finish();
  run.LogTraced(": BuildList = " + result);
  return result;
}

std::string HandleBuildSelectList(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:HandleBuildSelectList");
  return BuildFromTraits(run, directive, run.character.System().Items);
}

std::string HandleBuildCharItemList(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:HandleBuildCharItemList");
  return BuildFromTraits(run, directive, run.character.Items);
}

}  // namespace kvr::modDirectives
