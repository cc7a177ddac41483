// Readable texts of the engine's check results and of a few records, as
// script gets them from their toString methods.
#pragma once

#include <string>

#include "orva/records.h"

namespace orva::diagnostics {

/// Name of a network, performance or driver verdict (EchoCheckResultType).
std::string checkResultName(int verdict);
/// Name of a PerformanceCheckReason.
std::string performanceReasonName(int reason);
/// Name of a DriverCheckReason.
std::string driverReasonName(int reason);

/// The three verdicts with their reasons, then "Info:" and one indented
/// "key: value" line per info entry in key order; every line ends in '\n'.
std::string toText(const Orva::Rtc::EchoCheckResult& result);
/// Description, vendor and device ids, and dedicated memory in whole MB, one
/// per line.
std::string toText(const Orva::Rtc::AdapterInfo& info);
/// "VideoEncParam: {width:…, …, targetBitrate:…}" on one line.
std::string toText(const Orva::Rtc::VideoEncParam& param);
/// "CameraResolution: {width:…, height:…, maxFps:…, type:…}" on one line.
std::string toText(const Orva::Rtc::CameraResolution& resolution);

}  // namespace orva::diagnostics
