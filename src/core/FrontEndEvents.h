// What the engine tells the front end. Nothing here asks; a host without windows leaves every call empty.
#pragma once

#include <string_view>

namespace kvr {

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
  // The mouse pointer; 11 is the hourglass.
  virtual void CursorPush(int) {}
  virtual void CursorPop() {}
  virtual void RecentFilesChanged() {}
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
