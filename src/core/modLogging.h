// The activity log, the trace of named procedures, and how a failed step is reported.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/KVRError.h"

namespace kvr {

enum class LogLevel { Black = 0, Red = 1 };

struct LogEntry {
  std::string text;
  LogLevel level = LogLevel::Black;
};

class ActivityLog {
 public:
  // Does nothing while `Debug` is off. At most 2001 lines are kept.
  void LogLine(std::string_view text, LogLevel level = LogLevel::Black);
  void LogRed(std::string_view text) { LogLine(text, LogLevel::Red); }
  // Behind the current indent.
  void LogIndented(std::string_view text, LogLevel level = LogLevel::Black);
  // Two blanks a level, within 16 bits.
  void Indent() {
    if (indent_ < 32766) indent_ += 2;
  }
  void Outdent() { indent_ = indent_ >= 2 ? indent_ - 2 : 0; }
  std::string IndentText() const { return std::string(indent_, ' '); }

  const std::deque<LogEntry>& Lines() const { return lines_; }
  void Clear() { lines_.clear(); }

  // `echoFile` (path text) gets every line at once when it is not empty. An old one is deleted, but stays
  // while `debug` is off.
  void Start(bool debug, std::string echoFile);
  bool Debug() const { return debug_; }

 private:
  std::deque<LogEntry> lines_;
  std::size_t indent_ = 0;
  bool debug_ = true;
  std::string echoFile_;
};

// Names the procedure in whose lifetime it stands; the name must outlive it. With a log it also logs
// "<name>: STARTS" and "<name>: ENDS". The one mutable global of the program is the stack of these names.
class TraceScope {
 public:
  explicit TraceScope(const char* name, ActivityLog* log = nullptr);
  ~TraceScope();
  TraceScope(const TraceScope&) = delete;
  TraceScope& operator=(const TraceScope&) = delete;

 private:
  ActivityLog* log_;
};
// The innermost procedure's name; "" outside all.
std::string TraceTop();

// "<trace>: Error <n>: <description>"
std::string FailureText(const KVRError& error);

// Runs one step; a KVRError is logged in red and the procedure goes on. True if the step succeeded.
bool LogFailure(ActivityLog& log, const std::function<void()>& step);

// Keeps the log's indent one level deeper for its lifetime.
class IndentScope {
 public:
  explicit IndentScope(ActivityLog& log) : log_(log) { log_.Indent(); }
  ~IndentScope() { log_.Outdent(); }
  IndentScope(const IndentScope&) = delete;
  IndentScope& operator=(const IndentScope&) = delete;

 private:
  ActivityLog& log_;
};

// A stopwatch for quick measures; it starts with its lifetime.
class TimerScope {
 public:
  double Seconds() const;

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace kvr
