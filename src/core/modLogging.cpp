// The activity log's lines, its echo on disk, and the stack of named procedures.
#include "core/modLogging.h"

#include "core/Files.h"

namespace kvr {

namespace {

constexpr std::size_t kMostLines = 2000;

std::vector<const char*>& TraceStack() {
  static std::vector<const char*> stack;
  return stack;
}

}  // namespace

void ActivityLog::Start(bool debug, std::string echoFile) {
  debug_ = debug;
  echoFile_ = std::move(echoFile);
  if (debug_ && !echoFile_.empty()) Files::Delete(echoFile_);
}

void ActivityLog::LogLine(std::string_view text, LogLevel level) {
  if (!debug_) return;
  if (lines_.size() > kMostLines) lines_.pop_front();
  lines_.push_back({std::string(text), level});
  // Opened and closed for every line, so that a crash loses nothing.
  if (!echoFile_.empty()) Files::AppendLine(echoFile_, text);
}

void ActivityLog::LogIndented(std::string_view text, LogLevel level) {
  if (debug_) LogLine(IndentText().append(text), level);
}

TraceScope::TraceScope(const char* name, ActivityLog* log) : log_(log) {
  TraceStack().push_back(name);
  if (log_) log_->LogLine(std::string(name) + ": STARTS");
}

TraceScope::~TraceScope() {
  if (log_) log_->LogLine(TraceTop() + ": ENDS");
  TraceStack().pop_back();
}

std::string TraceTop() {
  return TraceStack().empty() ? std::string() : TraceStack().back();
}

std::string FailureText(const KVRError& error) {
  return TraceTop() + ": Error " + std::to_string(static_cast<int>(error.Number())) + ": " + error.what();
}

bool LogFailure(ActivityLog& log, const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const KVRError& error) {
    log.LogRed(FailureText(error));
    return false;
  }
}

double TimerScope::Seconds() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

}  // namespace kvr
