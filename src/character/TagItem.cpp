// One tag of a trait read, written or deleted: the most frequent calls of the program.
#include <optional>

#include "calc/modSolver.h"
#include "character/ItemFields.h"
#include "character/KVRCharacter.h"
#include "character/SolvedTags.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modLogging.h"
#include "core/modTags.h"

namespace kvr {

std::string SolvedTagValue(std::string_view tag, const std::string& value, CalcItem& context) {
  TraceScope trace("clsItem:TagItem");
  try {
    if (tag.back() == '$') return modSolver::TextFunctionSolver(value, context);
    return NumberText(modSolver::Solver(value, context));
  } catch (const SolverFailure&) {
    return "";
  }
}

// Nearly all reads are of plain tags, so whatever is not plain is asked for in one test.
std::string clsItem::TagItem(std::string_view tag) {
  if (tag.empty()) return std::string(tags_.Value(tag));
  const std::uint32_t letters = ItemFields::Letters(tag);
  const bool isField = kItemFieldDispatch.Has(letters), isGroup = letters == ItemFields::Letters("group");
  if (isField | isGroup | IsSolvedTag(tag)) return SpecialTag(tag);
  return std::string(tags_.Value(tag));
}

std::string clsItem::SpecialTag(std::string_view tag) {
  if (!IsSolvedTag(tag)) return StoredTag(tag);
  std::optional<std::string_view> formula = tags_.Find(tag);
  return formula ? SolvedTagValue(tag, std::string(*formula), *this) : std::string();
}

std::string clsItem::StoredTag(std::string_view tag) const {
  if (const ItemField* field = ItemFields::Find(tag)) return ItemFields::Read(*this, *field);
  if (EqualNoCase(tag, "group") && tags_.Find("initmods")) return GroupBesideInitMods();
  return std::string(tags_.Value(tag));
}

// A modifier inside `initmods` has a group(...) of its own, so that one is passed over by looking in a copy
// without `initmods`. The position found is used on the unchanged text, on purpose: while `initmods` stands
// before `group`, during creation, the value comes from the wrong place, and data was written against that.
std::string clsItem::GroupBesideInitMods() const {
  std::string lower = tags_.LowerText();
  modTags::DeleteTagFromTagList(lower, "initmods");
  std::size_t comma = modTags::FindTag("group", lower);
  std::size_t begin = comma + std::string_view(",group(").size();
  if (comma == npos || begin >= tags_.Text().size()) return "";
  std::string_view behind = std::string_view(tags_.Text()).substr(begin);
  std::size_t end = modTags::FindCloseParen(behind);
  return end == npos ? std::string() : std::string(Trim(behind.substr(0, end)));
}

void clsItem::SetTagItem(std::string_view tag, std::string_view value) {
  value = Trim(value);
  const ItemField* field = ItemFields::Find(tag);
  if (!field) {
    tags_.Set(tag, value);
    return;
  }
  TraceScope trace("clsItem:TagItem");
  try {
    ItemFields::WriteStrictly(*this, *field, value);
  } catch (const KVRError& error) {
    if (!Owner) return;
    std::string what = std::string(error.what()) + " (\"" + std::string(value) + "\" for the tag '" +
                       std::string(field->tag) + "' of '" + FullName() + "')";
    Owner->Env().log.LogRed(FailureText(KVRError(error.Number(), what)));
  }
}

void clsItem::DeleteTag(std::string_view tag) {
  if (const ItemField* field = ItemFields::Find(tag)) {
    ItemFields::Clear(*this, *field);
  } else {
    tags_.Delete(tag);
  }
}

// The place of a trait in its character's collections hangs on its name, so a trait that stands there is
// taken out for the change and put back.
void clsItem::StoreName(std::string& field, std::string& lower, std::string_view text) {
  if (field == text) return;
  auto store = [&] {
    field = text;
    lower = LCase(field);
  };
  if (Owner && Owner->Items.Item(KeyText()) == this) {
    Owner->ResortItem(*this, store);
  } else {
    store();
  }
}

void clsItem::SetName(std::string_view name) {
  StoreName(name_, lcaseName_, name);
}
void clsItem::SetNameExt(std::string_view ext) {
  StoreName(nameExt_, lcaseNameExt_, ext);
}

}  // namespace kvr
