#include "journal.h"

#include <utility>

namespace orva::loopback {
namespace {

template <class T>
void appendBounded(std::vector<T>& entries, T entry, size_t limit) {
  if (entries.size() >= limit) entries.erase(entries.begin(), entries.begin() + limit / 2);
  entries.push_back(std::move(entry));
}

}  // namespace

void Journal::addCall(std::string line) {
  std::lock_guard lock(mutex_);
  appendBounded(calls_, std::move(line), kMaxEntries);
}

void Journal::addCrashReport(CrashReportEntry report) {
  std::lock_guard lock(mutex_);
  appendBounded(crashReports_, std::move(report), kMaxEntries);
}

void Journal::addLogLine(std::string line) {
  std::lock_guard lock(mutex_);
  appendBounded(logLines_, std::move(line), kMaxEntries);
}

std::vector<std::string> Journal::calls() const {
  std::lock_guard lock(mutex_);
  return calls_;
}

std::vector<CrashReportEntry> Journal::crashReports() const {
  std::lock_guard lock(mutex_);
  return crashReports_;
}

std::vector<std::string> Journal::logLines() const {
  std::lock_guard lock(mutex_);
  return logLines_;
}

void Journal::clearCalls() {
  std::lock_guard lock(mutex_);
  calls_.clear();
}

void Journal::clearCrashReports() {
  std::lock_guard lock(mutex_);
  crashReports_.clear();
}

void Journal::clearLogLines() {
  std::lock_guard lock(mutex_);
  logLines_.clear();
}

Journal& journal() {
  static Journal* const instance = new Journal();
  return *instance;
}

}  // namespace orva::loopback
