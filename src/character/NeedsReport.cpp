// The check of many traits at once, and its report.
#include <algorithm>
#include <iterator>

#include "character/KVRCharacter.h"
#include "character/modNeeds.h"
#include "core/Numbers.h"
#include "core/modLogging.h"
#include "core/modTools.h"

namespace kvr {
namespace {

class NeedsReport {
 public:
  // The needs of attributes are left out, their taboos are not.
  NeedsReport(KVRCharacter& character, const std::vector<clsItem*>& items)
      : character_(character), all_(items) {
    std::ranges::copy_if(items, std::back_inserter(items_),
                         [](const clsItem* item) { return item->ItemType != kStats; });
  }

  // A failure can make others fail, so the walk is repeated until the number of failures stands. Counts that
  // swing for ever end at the bound.
  std::size_t Settle() {
    std::size_t failed = Walk();
    for (std::size_t pass = 0; pass <= items_.size(); ++pass) {
      const std::size_t before = failed;
      failed = Walk();
      if (failed == before) return failed;
    }
    character_.Env().log.LogRed("The needs check did not settle; it was ended.");
    return failed;
  }

  void AddNeeds() {
    for (clsItem* item : items_) {
      if (item->NeedsCheck() == 0) continue;
      std::vector<std::string> missing;
      if (modNeeds::NeedsCheckORItems(*item, modNeeds::NeedsText(*item), missing)) continue;
      lines_.push_back(std::string(modPrefixes::ItemTypeName(item->ItemType)) + ":" + item->FullName() + " ");
      for (std::size_t i = 0; i < missing.size(); ++i)
        lines_.push_back((i == 0 ? "still needs:" : "\t") + KVRCharacter::NeedsListUserFriendly(missing[i]));
    }
  }

  void AddTaboos() {
    for (clsItem* item : all_) {
      if (character_.ItemTabooCheck(*item, false)) character_.SetRefreshList(item->ItemType);
      if (item->TabooFailed() != 0)
        lines_.push_back(item->FullName() + " taboo exists: " + item->TagItem("tabootext"));
    }
  }

  void Log() const {
    for (const std::string& line : lines_) character_.Env().log.LogLine("Needs Check: " + line);
  }

  void Show() const {
    MessageRequest message;
    message.Title = "Needs Check";
    message.Heading = "The following items still have unsatisfied prereqs.";
    for (const std::string& line : lines_) message.Text += line + "\r\n";
    character_.Env().prompts.ShowMessage(message);
  }

  const std::vector<std::string>& Lines() const { return lines_; }

 private:
  std::size_t Walk() {
    std::size_t failed = 0;
    for (clsItem* item : items_) {
      if (character_.ItemNeedsCheck(*item, false, false)) character_.SetRefreshList(item->ItemType);
      failed += item->NeedsCheck() != 0;
    }
    return failed;
  }

  KVRCharacter& character_;
  std::vector<clsItem*> all_, items_;
  std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> KVRCharacter::NeedsCheckAll(bool quiet) {
  TraceScope trace("KVRCharacter:NeedsCheckAll");
  env_.log.LogLine("Begin Needs Checking . . . .");
  const TimerScope timer;
  std::vector<clsItem*> all;
  for (clsItem& item : Items) all.push_back(&item);
  NeedsReport report(*this, all);
  report.Settle();
  report.AddNeeds();
  report.AddTaboos();
  env_.log.LogLine("Needs check took " + NumberText(timer.Seconds()) + " seconds");
  quiet ? report.Log() : report.Show();
  return report.Lines();
}

std::vector<std::string> KVRCharacter::NeedsCheckSelected(const std::vector<std::string>& keys, bool quiet) {
  TraceScope trace("KVRCharacter:NeedsCheckSelected");
  env_.log.LogLine("Begin Needs Checking . . . .");
  const TimerScope timer;
  std::vector<clsItem*> items;
  for (const std::string& key : keys)
    if (clsItem* item = Items.Item(key)) items.push_back(item);
  NeedsReport report(*this, items);
  const std::size_t failed = report.Settle();
  for (const clsItem* item : items)
    env_.log.LogLine(item->FullName() + ": needs check is " + std::to_string(item->NeedsCheck()));
  report.AddNeeds();
  report.AddTaboos();
  env_.log.LogLine("Needs check took " + NumberText(timer.Seconds()) + " seconds");
  quiet ? report.Log() : report.Show();
  env_.log.LogLine(std::to_string(failed) + " items failed to meet needs");
  env_.log.LogLine(std::string(40, '<'));
  return report.Lines();
}

}  // namespace kvr
