// Commands about gear: the modes of weapons, basic damage, the load, and what lies in what.
#include <fmt/format.h>

#include "batch/BatchRunner.h"
#include "core/Numbers.h"
#include "core/Text.h"

namespace kvr::batch {

namespace {

// As calculated, else as written.
std::string ModeValue(const clsItem& item, std::size_t mode, std::string_view tag) {
  std::string value = item.DamageModeTagItem(mode, "char" + std::string(tag));
  return value.empty() ? item.DamageModeTagItem(mode, tag) : value;
}

// "13/19", or the one distance that there is.
std::string RangeOf(const clsItem& item, std::size_t mode) {
  const std::string half = ModeValue(item, mode, "rangehalfdam"), most = ModeValue(item, mode, "rangemax");
  return half.empty() || most.empty() ? half + most : half + "/" + most;
}

void Modes(BatchRunner& runner, Arguments& arguments) {
  const clsItem& item = runner.Trait(arguments.LastReference());
  for (std::size_t mode = 1; mode <= item.DamageModesCount(); ++mode) {
    runner.Print(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}", item.DamageModeName(mode),
                             item.DamageModeDamage(mode), item.DamageModeType(mode),
                             ModeValue(item, mode, "reach"), ModeValue(item, mode, "parry"),
                             RangeOf(item, mode), ModeValue(item, mode, "shots")));
  }
}

void Damage(BatchRunner& runner, Arguments& arguments) {
  const double score = arguments.Number("a score");
  KVRCharacter& character = runner.Character();
  runner.Print(fmt::format("{}\t{}", character.ReturnThrFromScore(score).Text(),
                           character.ReturnSwFromScore(score).Text()));
}

void Load(BatchRunner& runner, Arguments& /*arguments*/) {
  KVRCharacter& character = runner.Character();
  character.CalcPointCosts();
  runner.Print(fmt::format("{}\t{}\t{}\t{}\t{}\t{}", NumberText(character.CurrentLoad),
                           character.EncumbranceLevel, character.ParryUsing, character.ParryScore,
                           character.BlockUsing, character.BlockScore));
}

clsItem& PieceOfEquipment(BatchRunner& runner, std::string_view reference) {
  clsItem& item = runner.Trait(reference);
  if (item.ItemType != kEquipment) throw CommandFailure(fmt::format("\"{}\" is no equipment", reference));
  return item;
}

void PrintPlace(BatchRunner& runner, const clsItem& piece) {
  const clsItem* container = runner.Character().ItemByKey(NumberOfKeyText(piece.ParentKey()));
  runner.Print(fmt::format("{}\t{}\t{}\t{}", piece.KeyText(), piece.FullName(),
                           container ? container->KeyText() : "", container ? container->FullName() : ""));
}

void Put(BatchRunner& runner, Arguments& arguments) {
  clsItem& piece = PieceOfEquipment(runner, arguments.Reference());
  if (!EqualNoCase(arguments.Word("the word \"in\""), "in")) {
    throw CommandFailure("\"in\" must stand between the piece and what it is put in");
  }
  clsItem& container = PieceOfEquipment(runner, arguments.LastReference());
  runner.Character().MakeChildOf(piece.KeyText(), container.KeyText());
  PrintPlace(runner, piece);
}

void Take(BatchRunner& runner, Arguments& arguments) {
  clsItem& piece = PieceOfEquipment(runner, arguments.LastReference());
  runner.Character().UnmakeChildOf(piece.KeyText());
  PrintPlace(runner, piece);
}

constexpr Command kCommands[] = {
    {"modes", "REF",
     "a line for each weapon mode with a TAB between name, damage, type, reach, parry, range and shots",
     Modes},
    {"damage", "ST", "basic damage at a score: thrust and swing, TAB between", Damage},
    {"load", "", "weight carried, encumbrance level, and name and score of parry and of block, TAB between",
     Load},
    {"put", "REF in REF",
     "puts a piece of equipment into another; prints its key and name, then the other's, TAB between", Put},
    {"take", "REF", "takes a piece out of what it is in; prints its key and name, TAB between", Take},
};

}  // namespace

std::span<const Command> EquipmentCommands() {
  return kCommands;
}

}  // namespace kvr::batch
