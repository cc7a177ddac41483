// What the engine was asked to do: every call an interface or static
// received, every crash report and every sdk_log_info line, in arrival
// order. Any thread may append; tests read and clear through control.h.
#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

#include "journal_format.h"

namespace orva::loopback {

struct CrashReportEntry {
  int type = 0;
  std::string tag;
  std::string message;
};

class Journal {
 public:
  void addCall(std::string line);
  void addCrashReport(CrashReportEntry report);
  void addLogLine(std::string line);

  std::vector<std::string> calls() const;
  std::vector<CrashReportEntry> crashReports() const;
  std::vector<std::string> logLines() const;
  void clearCalls();
  void clearCrashReports();
  void clearLogLines();

 private:
  // A long-lived application must not grow without bound: past this many
  // entries the oldest half of a journal is dropped.
  static constexpr size_t kMaxEntries = 1 << 18;

  mutable std::mutex mutex_;  // guards the three journals below
  std::vector<std::string> calls_;
  std::vector<CrashReportEntry> crashReports_;
  std::vector<std::string> logLines_;
};

// The process-wide journal; created on first use and never destroyed, so
// engine threads that outlive static destruction can still append.
Journal& journal();

// Appends `Interface.member(args...)` to the call journal.
template <class... Args>
void noteCall(const char* iface, const char* member, const Args&... args) {
  journal().addCall(formatCall(iface, member, args...));
}

}  // namespace orva::loopback

// Journals the call of the enclosing member as `Interface.member(args...)`,
// first thing in its body: the member's own name, and the interface that
// journalInterface() names where the macro is written. Not inside a lambda,
// whose __func__ names its call operator.
#define ORVA_JOURNAL(...) ::orva::loopback::noteCall(journalInterface(), __func__ __VA_OPT__(, ) __VA_ARGS__)
