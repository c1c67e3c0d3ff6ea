#include "core/FrontEndEvents.h"

#include <gtest/gtest.h>

namespace kvr {
namespace {

struct PointerRecorder : FrontEndEvents {
  std::vector<int> shown;

 private:
  void ShowPointer(int shape) override { shown.push_back(shape); }
};

TEST(FrontEndEventsTest, PointersComeBackInTurnAndTheHourglassIsBusy) {
  PointerRecorder events;
  std::vector<bool> busy;
  const auto push = [&](int shape) { events.CursorPush(shape), busy.push_back(events.Busy()); };
  const auto pop = [&] { events.CursorPop(), busy.push_back(events.Busy()); };
  pop();
  EXPECT_TRUE(events.shown.empty()) << "nothing was pushed";
  push(2), push(kHourglass), push(kHourglass), push(3);
  pop(), pop(), pop(), pop();
  EXPECT_EQ(events.shown, (std::vector<int>{2, 11, 11, 3, 11, 11, 2, 0}));
  EXPECT_EQ(busy, (std::vector<bool>{false, false, true, true, true, true, true, false, false}));
}

}  // namespace
}  // namespace kvr
