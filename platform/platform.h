// The few operating-system calls the addon makes, behind one interface.
//
// Each facility has one file in posix/ and one in win32/ that define the same
// functions, and exactly one of the two sets is built, so callers never need a
// conditional. Paths cross this interface as UTF-8; the Win32 backend turns
// them into UTF-16 at the system call.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

namespace orva::platform {

/// Full path of the module that holds this code (the addon itself, not the
/// host process), or an empty string when the system cannot tell.
std::string moduleFilePath();

/// The separator that ends the directory part of moduleFilePath().
char pathSeparator();

/// Keeps this module loaded until the process ends, whoever unloads it:
/// engine threads may run its code after the script that loaded it is gone.
void pinThisModule();

/// True when something exists at the path.
bool pathExists(const std::string& utf8);

/// Creates the directory together with every missing parent. The path may be
/// relative to the current directory, and '/' separates its parts on every
/// system. Returns 0 on success, otherwise the system's error number; a path
/// that already exists is an error, as it is for the Win32 shell call behind
/// it.
int createDirectories(const std::string& utf8);

/// True when the file opens for reading and writing and an open file does not
/// keep it from being removed. Only Windows lets an open file refuse removal:
/// there the question includes deleting, so that a file another program holds
/// open without sharing deletion (as the C runtime opens the engine's log)
/// answers false instead of failing when it is removed.
bool canOpenForRemoval(const std::string& utf8);

/// The last write time of the file at the path, a link followed, at the file
/// system's own resolution, on the system clock. Throws
/// std::filesystem::filesystem_error for "last_write_time" when it cannot be
/// read.
std::chrono::system_clock::time_point lastWriteTime(const std::string& utf8);

/// A file opened by openForReading, described by the open file itself: what
/// is read is what was described, whatever the path points at a moment later.
struct OpenedFile {
  /// Binary reading from the start; null when the open failed. The caller
  /// closes it.
  std::FILE* file;
  /// A plain file with its data on a disk, not a directory, device, pipe or
  /// socket.
  bool regular;
  /// The size in bytes of a regular file when opened; 0 for anything else.
  uint64_t size;
};

/// Opens a path for binary reading without waiting for anything: a pipe with
/// no writer or a device opens at once (or fails) instead of blocking.
OpenedFile openForReading(const std::string& utf8);

/// Reserves `bytes` of address space with no memory behind it yet; null
/// when the system refuses. The reservation lasts until the process ends.
void* reserveAddressSpace(size_t bytes);

/// Puts memory (readable, writable, zeroed) behind [address, address + bytes)
/// of a reservation; false when the system refuses.
bool commitMemory(void* address, size_t bytes);

/// True when the number is the handle of a live native window.
bool isWindow(uint32_t handle);

struct OsVersion {
  uint32_t major;
  uint32_t minor;
  uint32_t build;
};

/// Version of the running system, read once per process. Systems without a
/// comparable version number report 0.0.0.
OsVersion osVersion();

struct GraphicsAdapter {
  /// The adapter's description as the system reports it, in narrow text.
  std::string description;
  /// The adapter's locally unique identifier, split as the system splits it.
  uint32_t luidLow;
  int32_t luidHigh;
};

/// The machine's graphics adapters in the system's order; empty where texture
/// sharing with the engine is not available.
std::vector<GraphicsAdapter> graphicsAdapters();

/// The broken-down local time of a moment, made safely while other threads
/// may ask for times too.
std::tm localTime(std::time_t moment);

}  // namespace orva::platform
