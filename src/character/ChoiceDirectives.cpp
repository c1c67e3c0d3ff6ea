// The directives that let the user choose: "#choice" and "#choicelist". The pick stands in variables, which
// are replaced in the text around the directive.
#include <charconv>
#include <optional>

#include "character/DirectiveRun.h"
#include "core/Numbers.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::modDirectives {
namespace {

// --- What the directive says
// -----------------------------------------------------------------------------------------

// "exactly 2", "atleast 1, upto 3": a minimum and a maximum, each if it is given.
struct Limits {
  bool given = false, hasMost = false;
  Currency least, most;
};

struct Form {
  std::string name = "choice";
  SelectionRequest request;
  bool picksNothing = false;  // at most 0 picks
  bool canBeMet = true;
};

bool StartsNumber(char c) {
  return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.';
}

void ReadLimit(DirectiveRun& run, std::string_view text, Limits& limits) {
  std::size_t number = 0;
  while (number < text.size() && !StartsNumber(text[number])) ++number;
  std::string word = LCase(text.substr(0, number));
  modTools::ReplaceAll(word, " ", "");
  const Currency value = Currency::FromVal(text.substr(number));
  const bool exactly = word.empty() || word == "exactly";
  if (!exactly && word != "atleast" && word != "upto") {
    return run.Log("Unknown limit of a choice: " + std::string(text));
  }
  limits.given = true;
  if (exactly || word == "atleast") limits.least = value;
  if (exactly || word == "upto") {
    limits.most = value;
    limits.hasMost = true;
  }
}

Limits LimitsOf(DirectiveRun& run, std::string_view text) {
  Limits limits;
  for (std::string_view word : modNewParser::ParseSplitChars(text, ",", modNewParser::kNames)) {
    if (!word.empty()) ReadLimit(run, word, limits);
  }
  return limits;
}

// A text of a choice. An unbalanced one would break the tag list that it is put into.
std::string ChoiceText(DirectiveRun& run, std::string_view written) {
  std::string text(modTools::StripQuotesAndBraces(written));
  if (modTags::RepairParens(text)) {
    run.Log("A choice has unbalanced parentheses and was changed to: " + text);
  }
  return text;
}

// The last "=" outside quotes, parentheses and braces; npos for none.
std::size_t CostSignOf(std::string_view entry) {
  std::size_t sign = npos;
  modNewParser::NestingLevels levels(modNewParser::kNames);
  for (std::size_t i = 0; i < entry.size(); ++i) {
    if (levels.Step(entry[i]) && entry[i] == '=') sign = i;
  }
  return sign;
}

Choice ChoiceFrom(DirectiveRun& run, std::string_view entry) {
  const std::size_t sign = CostSignOf(entry);
  Choice choice;
  choice.Caption = ChoiceText(run, entry.substr(0, sign));
  if (sign != npos) choice.Cost = Currency::FromVal(entry.substr(sign + 1));
  return choice;
}

using Fields = std::vector<modTags::TagItem>;

void ReadChoices(DirectiveRun& run, std::string_view list, const Fields& fields, SelectionRequest& request) {
  const auto split = [](std::string_view text) {
    return modNewParser::ParseChars(text, ",", modNewParser::kNames);
  };
  const auto aliases = split(modTags::ValueOf(fields, "aliaslist"));
  std::array<modNewParser::Tokens, 5> alts;
  for (std::size_t i = 0; i < alts.size(); ++i) {
    alts[i] = split(modTags::ValueOf(fields, "alt" + std::to_string(i + 1) + "list"));
  }
  const auto entries = split(list);
  for (std::size_t i = 1; i <= entries.TokenCount(); ++i) {
    if (Trim(entries.Token(i)).empty()) continue;
    Choice choice = ChoiceFrom(run, entries.Token(i));
    choice.Alias = ChoiceText(run, aliases.Token(i));
    for (std::size_t alt = 0; alt < alts.size(); ++alt) {
      choice.Alts[alt] = ChoiceText(run, alts[alt].Token(i));
    }
    request.Choices.push_back(std::move(choice));
    run.LogTraced(": ChoicesList$(" + std::to_string(request.Choices.size()) +
                  ") = " + request.Choices.back().Caption);
  }
}

std::size_t PositionOf(const std::vector<Choice>& choices, std::string_view answer) {
  const std::string_view text = modTools::StripQuotesAndBraces(answer);
  if (text.empty()) return npos;
  for (std::size_t i = 0; i < choices.size(); ++i) {
    if (EqualNoCase(choices[i].Caption, text) || EqualNoCase(choices[i].Alias, text)) return i;
  }
  return npos;
}

void MarkDefaults(std::string_view list, std::vector<Choice>& choices) {
  for (std::string_view entry : modNewParser::ParseSplitChars(list, ",", modNewParser::kNames)) {
    if (const std::size_t position = PositionOf(choices, entry); position != npos)
      choices[position].Picked = true;
  }
}

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(),
                     [&](std::string_view each) { return EqualNoCase(each, word); });
}

void LimitNumber(const Limits& limits, Form& form) {
  SelectionRequest& request = form.request;
  request.LimitNumber = true;
  request.MinNumber = std::max(0l, static_cast<long>(limits.least.ToDouble()));
  request.MaxNumber = std::max(0l, static_cast<long>(limits.most.ToDouble()));
  form.picksNothing = limits.hasMost && request.MaxNumber == 0;
  if (limits.hasMost && request.MaxNumber < request.MinNumber) form.canBeMet = false;
  if (request.MinNumber > static_cast<long>(request.Choices.size())) form.canBeMet = false;
}

void LimitCost(const Limits& limits, Form& form) {
  SelectionRequest& request = form.request;
  request.LimitCost = true;
  request.MinCost = limits.least;
  request.MaxCost = limits.most;
  request.HasMaxCost = limits.hasMost;
  Currency reachable;
  for (const Choice& choice : request.Choices) reachable += std::max(choice.Cost, Currency());
  if (limits.hasMost && limits.most < limits.least) form.canBeMet = false;
  if (limits.least > reachable) form.canBeMet = false;
}

void ReadGoal(DirectiveRun& run, const Fields& fields, Form& form) {
  Limits picks = LimitsOf(run, modTags::ValueOf(fields, "picksallowed"));
  const Limits cost = LimitsOf(run, modTags::ValueOf(fields, "totalcost"));
  const std::string_view method = modTags::ValueOf(fields, "method");
  const bool byNumber = !IsOneOf(method, {"bycost", "cost"}) && picks.given;
  const bool byCost =
      !IsOneOf(method, {"bynumber", "bynum", "num", "number", "bycount", "count"}) && cost.given;
  if (byCost) LimitCost(cost, form);
  if (!byCost && !byNumber) {
    if (picks.given || cost.given) {
      run.Log(std::string(picks.given ? "picksallowed" : "totalcost") + " was passed over by the method '" +
              std::string(method) + "' of a choice.");
    }
    picks = {true, true, 1, 1};
  }
  if (!byCost || byNumber) LimitNumber(picks, form);
  if (!form.request.LimitNumber) form.request.ByNumberOrCost = CountBy::Cost;
}

// The long form has a piece "list(...)"; else the whole body is the list.
Form FormOf(DirectiveRun& run, const std::string& body) {
  Fields fields = modTags::ReturnTagItems(body);
  const bool isLong =
      std::any_of(fields.begin(), fields.end(), [](const auto& field) { return field.name == "list"; });
  if (!isLong) fields.clear();
  Form form;
  const auto textOf = [&](std::string_view field, std::string_view otherwise) {
    const std::string text = ShownText(modTags::ValueOf(fields, field));
    return text.empty() ? std::string(otherwise) : text;
  };
  form.name = textOf("name", form.name);
  form.request.Title = textOf("title", run.TraitName());
  form.request.Text = textOf("text", "Please make your choice:");
  ReadChoices(run, isLong ? modTags::ValueOf(fields, "list") : std::string_view(body), fields, form.request);
  MarkDefaults(modTags::ValueOf(fields, "default"), form.request.Choices);
  ReadGoal(run, fields, form);
  return form;
}

// --- The question
// ----------------------------------------------------------------------------------------------------

// Scripted answers: one for each pick, or several in one.
class Responses {
 public:
  explicit Responses(const SelectionRequest& request)
      : request_(request), picked_(request.Choices.size(), false) {}

  // False when the response names something else.
  bool Take(std::string_view response) {
    if (Pick(response)) return true;
    const auto words =
        modNewParser::ParseSplitChars(modTools::StripQuotesAndBraces(response), ",", modNewParser::kNames);
    return std::all_of(words.begin(), words.end(), [&](std::string_view word) { return Pick(word); });
  }
  bool WantsMore() const {
    return (request_.LimitNumber && number_ < request_.MinNumber) ||
           (request_.LimitCost && cost_ < request_.MinCost);
  }
  bool Fits() const { return GoalMet(request_, number_, cost_); }
  SelectionAnswer Result() const {
    SelectionAnswer answer;
    answer.Canceled = false;
    for (std::size_t i = 0; i < picked_.size(); ++i) {
      (picked_[i] ? answer.Chosen : answer.Unchosen).push_back(request_.Choices[i]);
    }
    return answer;
  }

 private:
  bool Pick(std::string_view text) {
    const std::size_t position = PositionOf(request_.Choices, text);
    if (position == npos) return false;
    if (picked_[position]) return true;
    picked_[position] = true;
    ++number_;
    cost_ += request_.Choices[position].Cost;
    return true;
  }

  const SelectionRequest& request_;
  std::vector<bool> picked_;
  long number_ = 0;
  Currency cost_;
};

// Nothing when none waits, or when they do not fit.
std::optional<SelectionAnswer> AnswerFromResponses(DirectiveRun& run, const SelectionRequest& request) {
  KVRCharacter& character = run.character;
  if (character.ResponseCount() == 0) return std::nullopt;
  Responses responses(request);
  do {
    const std::string response = character.PopResponse();
    if (responses.Take(response)) continue;
    run.Log("The answer '" + response + "' is none of the choices for '" + run.TraitName() + "'.");
    return std::nullopt;
  } while (responses.WantsMore() && character.ResponseCount() > 0);
  if (responses.Fits()) return responses.Result();
  run.Log("The answers do not fit the choices for '" + run.TraitName() + "'.");
  return std::nullopt;
}

SelectionAnswer NothingChosen(const SelectionRequest& request) {
  return {false, {}, request.Choices};
}

SelectionAnswer Choose(DirectiveRun& run, const Form& form, const std::string& word) {
  const SelectionRequest& request = form.request;
  if (!form.canBeMet) {
    run.LogFault("no choice out of " + std::to_string(request.Choices.size()) + " meets the limits of " +
                 word + " '" + form.name + "'.");
    return {};
  }
  if (form.picksNothing || request.Choices.empty()) return NothingChosen(request);
  if (auto answer = AnswerFromResponses(run, request)) return std::move(*answer);
  return run.character.Env().prompts.ChooseMany(request);
}

// --- The variables
// ---------------------------------------------------------------------------------------------------

using Reader = std::string (*)(const Choice&);

std::string TextOf(const Choice& choice) {
  return choice.Caption;
}
std::string AliasOf(const Choice& choice) {
  return choice.Alias.empty() ? choice.Caption : choice.Alias;
}
std::string CostOf(const Choice& choice) {
  return NumberText(choice.Cost);
}
template <std::size_t kAlt>
std::string AltOf(const Choice& choice) {
  return choice.Alts[kAlt];
}

enum class Extent { First, Chosen, Unchosen };

// By what stands behind the name of the choice.
struct Variable {
  std::string_view ending;
  Extent extent;
  Reader read;
};
constexpr Variable kVariables[] = {
    {"", Extent::First, TextOf},
    {"cost", Extent::First, CostOf},
    {"alias", Extent::First, AliasOf},
    {"list", Extent::Chosen, TextOf},
    {"aliaslist", Extent::Chosen, AliasOf},
    {"costlist", Extent::Chosen, CostOf},
    {"alt1list", Extent::Chosen, AltOf<0>},
    {"alt2list", Extent::Chosen, AltOf<1>},
    {"alt3list", Extent::Chosen, AltOf<2>},
    {"alt4list", Extent::Chosen, AltOf<3>},
    {"alt5list", Extent::Chosen, AltOf<4>},
    {"notlist", Extent::Unchosen, TextOf},
    {"aliasnotlist", Extent::Unchosen, AliasOf},
    {"costnotlist", Extent::Unchosen, CostOf},
};
constexpr std::size_t kLongestEnding = 24;

std::string Joined(const std::vector<Choice>& choices, Reader read) {
  std::vector<std::string> texts;
  for (const Choice& choice : choices) texts.push_back(read(choice));
  return modTags::CreateListFromStringArray(texts);
}

class Variables {
 public:
  Variables(const Form& form, const SelectionAnswer& answer)
      : name_(form.name),
        answer_(answer),
        most_(form.request.MaxNumber > 0 ? static_cast<std::size_t>(form.request.MaxNumber)
                                         : form.request.Choices.size()) {}

  // One walk, so that no text put in is searched again.
  void PutInto(std::string& text) const {
    std::string result;
    std::size_t copied = 0;
    for (std::size_t at = text.find('%'); at != npos;) {
      const std::size_t end = EndOfVariable(text, at);
      const auto value = end == npos ? std::nullopt : Value(std::string_view(text).substr(at, end - at));
      if (value) {
        result.append(text, copied, at - copied).append(Shielded(*value));
        copied = end + 1;
      }
      at = text.find('%', value ? copied : at + 1);
    }
    text = result.append(text, copied);
  }

 private:
  // The "%" that closes what begins with the name at `at`; npos when something else stands there.
  std::size_t EndOfVariable(std::string_view text, std::size_t at) const {
    if (!StartsWithNoCase(text.substr(at + 1), name_)) return npos;
    const std::size_t ending = at + 1 + name_.size();
    const std::size_t length = text.substr(ending, kLongestEnding).find('%');
    return length == npos ? npos : ending + length;
  }

  // Of "%name..." without the closing "%"; nothing when it is no variable of this choice.
  std::optional<std::string> Value(std::string_view variable) const {
    const std::string ending = LCase(variable.substr(1 + name_.size()));
    for (const Variable& each : kVariables) {
      if (each.ending == ending) return Read(each);
    }
    return ValueByNumber(ending);
  }

  std::string Read(const Variable& variable) const {
    if (variable.extent == Extent::Unchosen) return Joined(answer_.Unchosen, variable.read);
    if (variable.extent == Extent::Chosen) return Joined(answer_.Chosen, variable.read);
    return answer_.Chosen.empty() ? "" : variable.read(answer_.Chosen.front());
  }

  // "2" and "2alias". Those that could have been picked but were not are empty.
  std::optional<std::string> ValueByNumber(std::string_view ending) const {
    std::size_t number = 0;
    const char* const last = ending.data() + ending.size();
    const auto parsed = std::from_chars(ending.data(), last, number);
    const std::string_view rest(parsed.ptr, static_cast<std::size_t>(last - parsed.ptr));
    if (parsed.ec != std::errc() || number == 0 || (!rest.empty() && rest != "alias")) return std::nullopt;
    if (number > answer_.Chosen.size())
      return number <= most_ ? std::optional<std::string>("") : std::nullopt;
    const Choice& choice = answer_.Chosen[number - 1];
    return rest.empty() ? TextOf(choice) : AliasOf(choice);
  }

  const std::string& name_;
  const SelectionAnswer& answer_;
  std::size_t most_;
};

std::string DoChoiceMainPart(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:DoChoiceMainPart");
  run.LogTraced(": Start");
  const Form form = FormOf(run, directive.body);
  const SelectionAnswer answer = Choose(run, form, directive.word);
  run.LogTraced(": End");
  if (answer.Canceled) {
    run.Cancel();
    return "";
  }
  const Variables variables(form, answer);
  variables.PutInto(directive.before);
  variables.PutInto(directive.after);
  return "";
}

}  // namespace

std::string HandleChoice(DirectiveRun& run, Directive& directive) {
  return DoChoiceMainPart(run, directive);
}
std::string HandleChoiceList(DirectiveRun& run, Directive& directive) {
  return DoChoiceMainPart(run, directive);
}

}  // namespace kvr::modDirectives
