// One engine event on its way from an engine thread to the script handler.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "events_autogen.h"
#include "orva/records.h"

namespace orva::bridge {

/// A remote user's statistics with its own copy of the user id: nothing of
/// the engine's memory is kept once the callback returns.
struct RemoteStatistics {
  std::string userId;
  Orva::Rtc::OrvaRemoteStatistics values;  // `values.userId` stays null
};

/// The engine's records behind a network-statistics, user-volumes or
/// echo-result payload (PayloadKind). Allocated only for those events, so
/// that every other event stays small to move.
struct EventPayload {
  /// Network statistics: the record's own fields (its lists left empty) and
  /// the remote users' entries in list order.
  Orva::Rtc::NetworkStats networkStats;
  std::vector<RemoteStatistics> remoteStatistics;
  /// User volumes: the users' volumes in list order.
  std::vector<Orva::Rtc::VolumeInfo> userVolumes;
  /// User volumes: slots 0 and 1 (the total volume); echo result: slots 2 to
  /// 6 (network, performance and its reason, driver and its reason).
  std::array<int32_t, 7> resultInts{};
  /// Echo result: the result's details, in key order.
  std::map<std::string, std::string> details;
};

/// One queued engine event. Built zeroed; a listener sets only what its
/// event uses. Events move through the queue and are never copied.
struct PendingEvent {
  /// Which event this is; its name and payload kind follow from it.
  EventId id{};
  int32_t int1 = 0;
  int32_t int2 = 0;
  int32_t int3 = 0;
  std::string str1;
  std::string str2;
  /// Metadata of a frame event; a non-zero handle marks a texture frame.
  int32_t frameType = 0;
  int32_t frameSize = 0;
  int32_t frameWidth = 0;
  int32_t frameHeight = 0;
  int32_t strideY = 0;
  int32_t strideU = 0;
  int32_t strideV = 0;
  int32_t frameExtra = 0;
  uint64_t frameHandle = 0;
  /// Only events of those three payload kinds have one.
  std::unique_ptr<EventPayload> payload;
};

}  // namespace orva::bridge
