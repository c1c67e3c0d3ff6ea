// Bonuses: the sentence of a `gives` tag read into a record, and the value that the record has. Which traits
// it reaches is asked in BonusTargets.cpp.
#include <array>
#include <cmath>

#include "calc/BonusSentence.h"
#include "calc/BonusTargets.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modNewParser.h"
#include "core/modTools.h"

namespace kvr {
namespace {

constexpr std::string_view kPointsInName = " pts";

std::size_t FindOutsideQuotes(std::string_view text, std::string_view word) {
  return modNewParser::FindWordTopLevel(text, word, modNewParser::kQuotes);
}

// Cuts the rest at a key word; what follows the word, trimmed.
std::string_view CutAtKeyWord(std::string_view& rest, std::string_view word) {
  const std::size_t at = FindOutsideQuotes(rest, word);
  if (at == npos) return "";
  const std::string_view behind = Trim(rest.substr(at + word.size()));
  rest = Trim(rest.substr(0, at));
  return behind;
}

bool IsScaling(char c) {
  return c == '*' || c == '/' || c == 'x' || c == 'X';
}

struct Amount {
  std::int16_t type;
  std::string_view text;
};

// "/" is not told from "*", and an amount without an operator loses its first character: data is written
// with operators.
Amount ReadAmount(std::string_view amount) {
  if (amount.empty() || amount[0] == '+' || amount[0] == '-') return {1, amount};
  const std::string_view behind = amount.substr(1);
  if (IsScaling(amount[0])) return {2, Trim(behind)};
  if (amount[0] == '=' && !behind.empty() && IsScaling(behind[0])) return {4, Trim(behind.substr(1))};
  return {3, Trim(behind)};
}

// The amount of a text bonus: a sign stays in front of what stands in quotes.
std::string TextOfAmount(std::string_view amount) {
  if (!amount.starts_with('+') && !amount.starts_with('-')) return std::string(amount);
  std::string text(1, amount[0]);
  text += modTools::StripQuotes(amount.substr(1));
  return text;
}

bool IsList(std::string_view text) {
  return modNewParser::ParseChars(text, ",", modNewParser::kNames).TokenCount() > 1;
}

bool IsListInMarks(std::string_view text) {
  if (modTools::IsBraced(text)) return IsList(modTools::StripBraces(text));
  return modTools::IsQuoted(text) && IsList(modTools::StripQuotes(text));
}

// A single reference may stand in braces or quotes; a list keeps them.
std::string_view WithoutMarks(std::string_view text) {
  return IsListInMarks(text) ? text : modTools::StripQuotesAndBraces(text);
}

void ReadName(clsBonus& record, std::string_view text) {
  const auto [name, ext] = modPrefixes::SplitNameAndExt(text);
  record.TargetName = LCase(name);
  record.TargetExt = LCase(ext);
  if (record.TargetName.empty() && !record.TargetExt.empty()) {
    record.TargetName = "(" + record.TargetExt + ")";
    record.TargetExt.clear();
  }
}

void ReadReference(clsBonus& record, std::string_view text) {
  const bool points = EndsWithNoCase(text, kPointsInName);
  if (points) text = Trim(text.substr(0, text.size() - kPointsInName.size()));
  text = WithoutMarks(text);
  if (!IsListInMarks(text)) {
    const modPrefixes::Reference reference = modPrefixes::ExtractPrefix(text);
    record.TargetPrefix = UCase(reference.prefix);
    text = WithoutMarks(reference.rest);
  }
  // A list and a question about a tag are taken apart when traits are compared with them.
  if (IsListInMarks(text) || IsTagQuestion(text)) {
    record.TargetName = LCase(text);
  } else {
    ReadName(record, text);
  }
  // It stood behind the extension.
  if (points) record.TargetName += kPointsInName;
}

// "SK:Climbing::points": what follows the first "::" is the tag; a "$" behind it makes a text bonus.
void ReadTarget(clsBonus& record, std::string_view rest, std::string_view amount) {
  const bool quoted = modTools::IsQuoted(rest);
  rest = Trim(modTools::StripQuotes(rest));
  if (modTools::IsBraced(rest) && !IsListInMarks(rest)) rest = Trim(modTools::StripBraces(rest));
  if (const std::size_t colons = rest.find("::"); colons != npos) {
    record.TargetTag = LCase(Trim(rest.substr(colons + 2)));
    rest = Trim(rest.substr(0, colons));
  }
  if (record.TargetTag.ends_with('$')) {
    record.TargetTag.pop_back();
    record.StringValue = TextOfAmount(amount);
  }
  if (quoted && IsList(rest)) {
    ReadReference(record, "\"" + std::string(rest) + "\"");
  } else {
    ReadReference(record, rest);
  }
}

// Without a prefix the name of an attribute is enough.
std::int16_t TypeOfTarget(const clsBonus& record) {
  if (!record.TargetPrefix.empty()) return modPrefixes::TypeFromPrefix(record.TargetPrefix);
  if (record.TargetName == "owner") return kTargetOwner;
  if (record.TargetName == "me") return kTargetMe;
  const std::string name = modPrefixes::JoinNameAndExt(record.TargetName, record.TargetExt);
  return record.Owner->RootOwnerChar()->ItemPositionByNameAndExt(name, kStats) != 0 ? kStats : kNoType;
}

// "+2pts", "x2 points". Behind a letter or "::" the word belongs to a reference of the amount
// ("+me::points").
bool CutPointsEnding(std::string& amount) {
  constexpr std::array<std::string_view, 2> kEndings = {"pts", "points"};
  for (std::string_view ending : kEndings) {
    if (!EndsWithNoCase(amount, ending)) continue;
    const std::string_view before = std::string_view(amount).substr(0, amount.size() - ending.size());
    const unsigned char last =
        before.empty() ? ' ' : static_cast<unsigned char>(LCase(before.substr(before.size() - 1))[0]);
    if (before.ends_with("::") || (last >= 'a' && last <= 'z') || last >= 0x80) continue;
    amount = Trim(before);
    return true;
  }
  return false;
}

// "+1" from a trait at level 3 is 3, "x2" is 8.
double ScaleOf(CalcItem& owner) {
  const std::string type = owner.TagItem("itemtype");
  const char* tag = "level";
  if (type == modPrefixes::CollectionName(kStats)) tag = "score";
  if (type == modPrefixes::CollectionName(kEquipment)) tag = "count";
  return Val(owner.TagItem(tag));
}

double Scaled(double value, std::int16_t type, double scale) {
  if (scale == 0) return value;
  if (type == 1) return value * scale;
  return type == 2 ? std::pow(value, scale) : value;
}

double SolvedValue(clsBonus& record) {
  CalcItem& owner = *record.Owner;
  double value = Scaled(modSolver::Solver(record.Bonus, owner), record.BonusType, ScaleOf(owner));
  const double upto = record.Upto.empty() ? 0 : modSolver::Solver(record.Upto, owner);
  record.ValueBeforeUpto = value;
  if (upto != 0 && value > upto) value = upto;
  if (!std::isfinite(value)) throw SolverFailure("it is beyond all numbers");
  return value;
}

void LogFailedRecord(const clsBonus& record, const SolverFailure& failure) {
  const bool conditional = ContainsNoCase(record.Owner->TagItem("conditional"), record.FullBonusText);
  std::string line = "'" + record.GiverName() + "': the sentence \"" + record.FullBonusText.substr(0, 200);
  line.append("\" of its tag ").append(conditional ? "conditional" : "gives");
  record.Owner->RootOwnerChar()->Env().log.LogRed(line + " counts as 0: " + failure.what());
}

}  // namespace

std::optional<BonusSentence> ReadBonusSentence(std::string_view text) {
  constexpr std::string_view kTo = " to ";
  std::size_t at = FindOutsideQuotes(text, kTo), length = kTo.size();
  if (at == npos) {
    at = FindOutsideQuotes(text, " ");
    length = 1;
  }
  if (at == npos) return std::nullopt;
  BonusSentence sentence;
  sentence.amount = Trim(text.substr(0, at));
  sentence.target = Trim(text.substr(at + length));
  sentence.listas = CutAtKeyWord(sentence.target, " listas ");
  sentence.condition = CutAtKeyWord(sentence.target, " when ");
  sentence.upto = CutAtKeyWord(sentence.target, " upto ");
  return sentence;
}

std::string clsBonus::GiverName() const {
  clsItem* root = Owner->RootOwnerItem();
  if (root == nullptr || root == Owner) return Owner->NameForMessages();
  return root->FullName() + ": " + Owner->NameForMessages();
}

bool clsBonus::CreateBonusFromText(std::string_view text) {
  KVRCharacter& character = *Owner->RootOwnerChar();
  text = Trim(text);
  const std::optional<BonusSentence> sentence = ReadBonusSentence(text);
  if (!sentence) {
    character.Env().log.LogRed(GiverName() + ": Bad gives() item: " + std::string(text));
    return false;
  }
  FullBonusText = text;
  ListAs = modTools::StripQuotes(sentence->listas);
  Notes = modTools::StripQuotes(sentence->condition);
  Upto = sentence->upto;
  const Amount parsed = ReadAmount(sentence->amount);
  BonusType = parsed.type;
  Bonus = parsed.text;
  ReadTarget(*this, sentence->target, sentence->amount);
  SetBonusAffects();  // takes " pts" off the name, which the type is told by
  TargetType = TypeOfTarget(*this);
  IDKey = character.NewKeyTemp();
  Calculate();
  return true;
}

void clsBonus::SetBonusAffects() {
  bool points = CutPointsEnding(Bonus) || TargetTag == "points";
  if (TargetName.ends_with(kPointsInName)) {
    TargetName = Trim(std::string_view(TargetName).substr(0, TargetName.size() - kPointsInName.size()));
    points = true;
  }
  const SpecialTarget* special = FindSpecialTarget(TargetName);
  if (points) {
    Affects = "points";
  } else if (special != nullptr && !special->affects.empty()) {
    Affects = special->affects;
  } else if (TargetTag.empty()) {
    Affects = "level";
  } else {
    Affects = StringValue.empty() ? "other" : "otherstring";
  }
}

void clsBonus::Calculate() {
  if (KVRCharacter* character = Owner->RootOwnerChar()) character->NoteFormerRecord(*this);
  try {
    if (StringValue.empty()) {
      StringValueText.clear();
      Value = 0;
      Value = SolvedValue(*this);
    } else {
      Value = 1;
      StringValueText = modSolver::TextFunctionSolver(StringValue, *Owner);
      modTools::ReplaceAll(StringValueText, "$/", "$");
    }
    failed_ = false;
  } catch (const SolverFailure& failure) {
    if (!failed_) LogFailedRecord(*this, failure);
    failed_ = true;
  }
}

}  // namespace kvr
