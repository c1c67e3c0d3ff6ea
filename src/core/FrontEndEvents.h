// What the engine tells the front end. Nothing here asks; a host without windows leaves every call empty.
#pragma once

#include <string_view>
#include <vector>

namespace kvr {

inline constexpr int kHourglass = 11;

class FrontEndEvents {
 public:
  virtual ~FrontEndEvents() = default;
  // The status line or splash text.
  virtual void StatusText(std::string_view) {}
  // One step of a long operation is done.
  virtual void Progress() {}
  virtual void LetEventsRun() {}
  // Trait lists whose RefreshList flag is set should be redrawn now.
  virtual void RefreshLists() {}
  // A nesting counter: no redrawing between the two.
  virtual void SuspendRefresh() {}
  virtual void ResumeRefresh() {}
  virtual void RecentFilesChanged() {}
  // The pause mark of the status bar, while everything is recalculated.
  virtual void ShowPauseMark(bool) {}

  // The mouse pointer: shows the shape until the pop that belongs to this push. The hourglass also makes the
  // program busy, until a pop brings another pointer back.
  void CursorPush(int shape);
  // Does nothing when nothing was pushed.
  void CursorPop();
  bool Busy() const { return busy_; }

 private:
  virtual void ShowPointer(int) {}

  std::vector<int> formerPointers_;
  int pointer_ = 0;  // the window's own
  bool busy_ = false;
};

// Shows the pause mark for its lifetime.
class PauseMark {
 public:
  explicit PauseMark(FrontEndEvents& events) : events_(events) { events_.ShowPauseMark(true); }
  ~PauseMark() { events_.ShowPauseMark(false); }
  PauseMark(const PauseMark&) = delete;
  PauseMark& operator=(const PauseMark&) = delete;

 private:
  FrontEndEvents& events_;
};

// Suspends the refresh for its lifetime.
class RefreshPause {
 public:
  explicit RefreshPause(FrontEndEvents& events) : events_(events) { events_.SuspendRefresh(); }
  ~RefreshPause() { events_.ResumeRefresh(); }
  RefreshPause(const RefreshPause&) = delete;
  RefreshPause& operator=(const RefreshPause&) = delete;

 private:
  FrontEndEvents& events_;
};

}  // namespace kvr
