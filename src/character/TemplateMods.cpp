// Puts modifiers on traits and takes them off by the word of data: `with` lists, `addmods`, `removemods`, and
// the weapon modes that a modifier brings.
#include <optional>

#include "character/KVRCharacter.h"
#include "character/TemplateEntries.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr {

namespace {

constexpr std::string_view kNewMod = "#newmod(";

// "Group:Name", or the first modifier of that full name; nullptr if there is none.
const ModRecord* FindLibraryMod(const KVRSystem& system, std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon != npos) {
    const ModRecord* found = system.FindMod(Trim(text.substr(colon + 1)), Trim(text.substr(0, colon)));
    if (found) return found;
  }
  const std::string wanted = LCase(text);
  for (const ModRecord& mod : system.Mods) {
    if (mod.LCaseFullName() == wanted) return &mod;
  }
  return nullptr;
}

// A modifier that data name or describe.
struct WantedMod {
  std::string text;        // as written, without its marks
  std::string definition;  // its tag list; "" for a reference
};

WantedMod ReadWantedMod(std::string_view text) {
  text = templateEntries::StripWhole(text);
  if (!StartsWithNoCase(text, kNewMod)) return {std::string(text), ""};
  const std::string_view behind = text.substr(kNewMod.size());
  const std::string_view line = behind.substr(0, modTags::FindCloseParen(behind));
  return {std::string(text), KVRSystem::ReturnModItem(line)};
}

std::vector<WantedMod> ReadWantedMods(std::string_view list) {
  std::vector<WantedMod> mods;
  for (std::string_view text : templateEntries::Split(templateEntries::StripWhole(list))) {
    mods.push_back(ReadWantedMod(text));
  }
  return mods;
}

clsMod* FindModOn(clsItem& item, const WantedMod& wanted) {
  const std::size_t colon = wanted.text.find(':');
  const std::string_view text = wanted.text;
  for (clsMod& mod : item.Mods) {
    if (EqualNoCase(mod.FullName(), text)) return &mod;
    if (colon != npos && EqualNoCase(mod.Group(), Trim(text.substr(0, colon))) &&
        EqualNoCase(mod.FullName(), Trim(text.substr(colon + 1))))
      return &mod;
  }
  return nullptr;
}

}  // namespace

void KVRCharacter::AddModsFromAndList(clsItem& item, std::string_view list) {
  list = Trim(list);
  if (list.empty() || list == "\"\"") return;
  for (std::string_view text : modNewParser::ParseSplitWord(list, " and ", modNewParser::kNames)) {
    const std::string_view entry = modTools::StripQuotesAndBraces(text);
    LogFailure(env_.log, [&] {
      if (const ModRecord* record = FindLibraryMod(system_, entry)) {
        CreateNewMod(item, record->TagList(), record->Group().empty() ? "Package" : record->Group());
      } else if (entry.find(',') != npos) {
        CreateNewMod(item, KVRSystem::ReturnModItem(entry), "Package");
      } else if (!entry.empty()) {
        env_.log.LogRed("'" + item.FullName() + "' gets no modifier '" + std::string(entry) +
                        "': the library has none of that name.");
      }
    });
  }
}

namespace {

// The two tags that move modifiers, in the words of their messages.
struct ModMove {
  std::string_view tag, caller, between, target;
};
constexpr ModMove kAddMods{"addmods", "AddMods()", " to ", "adding this mod to target: "};
constexpr ModMove kRemoveMods{"removemods", "RemoveMods()", " from ", "remove this mod from target: "};

// Carries out one part "<mods> to <targets>".
class ModMover {
 public:
  ModMover(KVRCharacter& character, const ModMove& move) : character_(character), move_(move) {}

  void Run(const std::vector<WantedMod>& mods, std::string_view targets) {
    for (const WantedMod& mod : mods) {
      if (!IsKnown(mod)) continue;
      for (std::string_view target : templateEntries::Split(templateEntries::StripWhole(targets))) {
        Move(mod, target);
      }
    }
  }

 private:
  void Log(std::string_view text) { character_.Env().log.LogLine(text); }
  bool Adds() const { return &move_ == &kAddMods; }

  bool IsKnown(const WantedMod& mod) {
    if (!Adds()) return true;
    if (!mod.definition.empty()) {
      Log("full definition found, using #newmod()");
      return true;
    }
    if (FindLibraryMod(character_.System(), mod.text)) {
      Log("reference found");
      return true;
    }
    character_.Env().log.LogRed("AddMods() unable to find specified modifier: " + mod.text);
    return false;
  }

  void Move(const WantedMod& mod, std::string_view target) {
    Log(std::string(move_.target) + std::string(target));
    clsItem* item = templateEntries::FindOn(character_, templateEntries::ReadReference(target));
    if (!item) {
      return character_.Env().log.LogRed(std::string(move_.caller) +
                                         " unable to find specified target: " + std::string(target));
    }
    Log("and the target is: " + item->FullName());
    Adds() ? Add(mod, *item) : Remove(mod, *item, target);
  }

  void Add(const WantedMod& mod, clsItem& item) {
    if (mod.definition.empty()) {
      character_.AddModFromSystem(FindLibraryMod(character_.System(), mod.text)->SysCollectionKey(), item);
    } else {
      character_.CreateNewMod(item, mod.definition, "Package");
    }
  }

  void Remove(const WantedMod& mod, clsItem& item, std::string_view target) {
    if (const clsMod* standing = FindModOn(item, mod)) {
      character_.RemoveMod(item, KeyTextOf(standing->IDKey));
    } else {
      character_.Env().log.LogRed("RemoveMods() unable to find and remove specified mod '" + mod.text +
                                  "' from target '" + std::string(target) + "'");
    }
  }

  KVRCharacter& character_;
  const ModMove& move_;
};

void MoveMods(KVRCharacter& character, clsItem& item, const ModMove& move) {
  const std::string list = item.TagItem(move.tag);
  ActivityLog& log = character.Env().log;
  std::size_t number = 0;
  for (std::string_view part : templateEntries::Split(list)) {
    log.LogLine("Examing " + std::string(move.tag) + "() part " + std::to_string(++number) + ": " +
                std::string(part));
    const auto [mods, targets, found] =
        templateEntries::SplitAtWord(templateEntries::StripWhole(part), move.between);
    if (!found) {
      return log.LogRed(std::string(move.caller) + " improperly specified in item: " + item.FullName() +
                        ". " + std::string(move.caller) + " did not finish processing as a result.");
    }
    LogFailure(log, [&, mods = mods, targets = targets] {
      ModMover(character, move).Run(ReadWantedMods(mods), targets);
    });
  }
}

}  // namespace

void KVRCharacter::HandleAddMods(clsItem& item) {
  TraceScope trace("KVRCharacter:HandleAddMods");
  MoveMods(*this, item, kAddMods);
}

void KVRCharacter::HandleRemoveMods(clsItem& item) {
  TraceScope trace("KVRCharacter:HandleRemoveMods");
  MoveMods(*this, item, kRemoveMods);
}

void KVRCharacter::ModAddsNewMode(clsMod& mod) {
  if (clsItem* item = mod.RootOwnerItem()) item->AddNewMode(mod.Tags().Value("addmode"));
}

}  // namespace kvr
