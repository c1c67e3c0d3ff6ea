// The directives that ask for a text: "#input", "#inputreplace", "#inputtotag", "#inputtotagreplace".
#include <optional>

#include "character/DirectiveRun.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::modDirectives {
namespace {

constexpr std::string_view kUnbalanced =
    "You entered a mismatched number of parenthesis, which is not allowed. Please try again.";
// A host that gives the same bad answer for ever is stopped here.
constexpr int kMostTries = 100;

using Arguments = std::vector<std::string_view>;

Arguments ArgumentsOf(std::string_view body) {
  if (Trim(body).empty()) return {};
  return modNewParser::ParseSplitChars(body, ",", modNewParser::kNames);
}

struct Question {
  std::string prompt = "Please enter value:", preset, title = "KVR Input";
};

// Prompt, default answer and title, from the argument at `first` on.
Question QuestionFrom(const Arguments& arguments, std::size_t first) {
  Question question;
  std::string* const parts[] = {&question.prompt, &question.preset, &question.title};
  for (std::size_t i = first; i < arguments.size(); ++i) {
    std::string text = ShownText(arguments[i]);
    if (!text.empty()) *parts[i - first] = std::move(text);
  }
  return question;
}

// Nothing when cancelled. A text that would break the tag list is refused.
std::optional<std::string> Ask(DirectiveRun& run, const Question& question) {
  KVRCharacter& character = run.character;
  if (character.ResponseCount() > 0) {
    std::string response = character.PopResponse();
    run.MakePlain(response);
    if (modTags::ParensBalance(response)) return response;
    run.Log("The answer '" + response + "' has unbalanced parentheses.");
  }
  EnginePrompts& prompts = character.Env().prompts;
  for (int tries = 0; tries < kMostTries; ++tries) {
    TextAnswer answer = prompts.PopupInputBox(question.prompt, question.title, question.preset);
    if (answer.Canceled) break;
    run.MakePlain(answer.Text);
    if (modTags::ParensBalance(answer.Text)) return std::move(answer.Text);
    prompts.MessageBox(kUnbalanced, question.title, Buttons::Ok);
  }
  run.Cancel();
  return std::nullopt;
}

void ReplaceAround(Directive& directive, std::string_view target, std::string_view answer) {
  const std::string replacement = Shielded(answer);
  modTools::ReplaceAll(directive.before, target, replacement);
  modTools::ReplaceAll(directive.after, target, replacement);
}

// A "#" at its end marks a formula.
bool IsTagName(std::string_view name) {
  if (name.size() > 1 && name.ends_with('#')) name.remove_suffix(1);
  return !name.empty() && name.find_first_of(" (),#") == npos;
}

// The text around the directive as one tag list with a comma in front, by which a tag is found.
std::string ListAround(const Directive& directive) {
  return "," + directive.before + directive.after;
}

void WriteTagAround(DirectiveRun& run, Directive& directive, std::string_view tag, std::string_view answer) {
  std::string list = ListAround(directive);
  run.Log("NewText$ = " + list.substr(1));
  modTags::DeleteTagFromTagString(list, tag);
  if (!answer.empty()) list.append(",").append(tag).append("(").append(Shielded(answer)).append(")");
  if (list.starts_with(',')) list.erase(0, 1);
  run.Log("Now NewText$ = " + list);
  directive.before.clear();
  directive.after = std::move(list);
}

std::string AskForTag(DirectiveRun& run, Directive& directive, std::string_view name, bool replace) {
  const Arguments arguments = ArgumentsOf(directive.body);
  const bool wrongCount = arguments.size() < 2 || arguments.size() > 4;
  const std::string tag = wrongCount ? "" : LCase(modTools::StripQuotesAndBraces(arguments[0]));
  if (!IsTagName(tag)) return run.LogImproper(name, directive);
  if (!replace) {
    const std::string list = ListAround(directive);
    const std::string_view value = modTags::GetTagValue(tag, list);
    if (!value.empty()) {
      run.Log("we already have a value for that tag!: " + tag + " = " + std::string(value));
      return "";
    }
  }
  const auto answer = Ask(run, QuestionFrom(arguments, 1));
  if (answer && (replace || !answer->empty())) WriteTagAround(run, directive, tag, *answer);
  return "";
}

}  // namespace

std::string HandleInput(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:HandleInput");
  const Arguments arguments = ArgumentsOf(directive.body);
  if (arguments.size() > 3) return run.LogImproper("#Input", directive);
  if (const auto answer = Ask(run, QuestionFrom(arguments, 0))) ReplaceAround(directive, "%input%", *answer);
  return "";
}

std::string HandleInputReplace(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:HandleInputReplace");
  const Arguments arguments = ArgumentsOf(directive.body);
  const bool wrongCount = arguments.size() < 2 || arguments.size() > 4;
  const std::string_view target = wrongCount ? "" : modTools::StripQuotesAndBraces(arguments[0]);
  if (target.empty()) return run.LogImproper("#InputReplace", directive);
  if (const auto answer = Ask(run, QuestionFrom(arguments, 1))) ReplaceAround(directive, target, *answer);
  return "";
}

std::string HandleInputToTag(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:HandleInputToTag");
  return AskForTag(run, directive, "#InputToTag", false);
}

std::string HandleInputToTagReplace(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:HandleInputToTagReplace");
  return AskForTag(run, directive, "#InputToTagReplace", true);
}

}  // namespace kvr::modDirectives
