// Takes back what a trait changed elsewhere, by the record that was kept of it.
#include <algorithm>

#include "character/FormerState.h"
#include "character/ItemFields.h"
#include "character/TagChanges.h"

namespace kvr {

namespace {

void LogOtherValue(KVRCharacter& character, const clsChangeItem& change, std::string_view present) {
  if (present == change.NewValue) return;
  character.Env().log.LogLine("The tag '" + change.Tag + "' was changed since, and goes back to '" +
                              change.OldValue + "' all the same; it was '" + std::string(present) + "'.");
}

void RestoreOwnText(KVRCharacter& character, const clsChangeItem& change) {
  character.NoteFormerTexts();
  LogOtherValue(character, change, character.TagItem(change.Tag));
  character.SetTagItem(change.Tag, change.OldValue);
  if (EqualNoCase(change.Tag, "bodytype")) character.InitBodyParts();
}

// A tag that was not there before must not stay behind empty.
void RestoreTag(clsItem& item, const clsChangeItem& change) {
  item.Owner->NoteFormerState(item);
  LogOtherValue(*item.Owner, change, StoredTagText(item, change.Tag));
  item.Owner->PushRecalcItems(item);
  if (change.OldValue.empty() && !ItemFields::Find(change.Tag)) {
    item.DeleteTag(change.Tag);
  } else {
    item.SetTagItem(change.Tag, change.OldValue);
  }
}

}  // namespace

// The youngest change first: a tag that was changed twice goes back to what it was at the beginning.
void KVRCharacter::HandleReversion(std::int32_t sourceKey) {
  const auto isOfSource = [&](const clsChangeItem& change) { return change.Source == sourceKey; };
  if (std::ranges::none_of(ChangeLog, isOfSource)) return;
  TraceScope trace("KVRCharacter:HandleReversion");
  if (!formerStates_.empty()) formerStates_.back()->NoteChangeLog();
  std::vector<clsChangeItem> changes;
  std::ranges::copy_if(ChangeLog, std::back_inserter(changes), isOfSource);
  std::erase_if(ChangeLog, isOfSource);
  std::ranges::reverse(changes);
  std::map<std::int32_t, bool> changed;  // traits, and whether their records are to be made anew
  for (const clsChangeItem& change : changes) {
    LogFailure(env_.log, [&] {
      if (change.Target == 0) return RestoreOwnText(*this, change);
      clsItem* item = ItemByKey(change.Target);
      if (!item) return;
      RestoreTag(*item, change);
      bool& records = changed[change.Target];
      records = records || MakesRecords(change.Tag);
    });
  }
  FirstFailure failure;
  for (const auto& [id, records] : changed) {
    if (clsItem* item = ItemByKey(id)) {
      failure.Run([&, records = records] { SpreadTagChange(*item, records); });
    }
  }
  failure.PassOn();
}

}  // namespace kvr
