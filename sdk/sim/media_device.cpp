#include "services.h"

namespace orva::loopback {

MediaDeviceImpl::MediaDeviceImpl(CoreParts& parts)
    : DeviceMembers("MediaDevice", parts.device, parts.registry), parts_(parts) {}

int MediaDeviceImpl::Initialize(rtc::Settings* settings, rtc::IMediaDeviceCallback* callback) {
  ORVA_JOURNAL(settings, callback);
  parts_.start(settings);
  parts_.registry.set(callback);
  return rtc::Init_Successd;
}

}  // namespace orva::loopback
