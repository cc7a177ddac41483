#include "services.h"

namespace orva::loopback {

int ChannelImpl::Initialize(rtc::Settings* settings, rtc::MediaChannelListener* listener) {
  ORVA_JOURNAL(settings, listener);
  parts_.start(settings);
  parts_.registry.set(listener);
  return rtc::Init_Successd;
}

void ChannelImpl::Terminate() {
  ORVA_JOURNAL();
  parts_.session.unpublishAudio();
  parts_.session.unpublishVideo();
  parts_.files.stopChannelFile();
  parts_.events.raise<rtc::MediaChannelListener>([](auto* l) { l->OnMediaChannelTerminate(); });
}

int ChannelImpl::UpdateRenderSetting(const char* userId, rtc::Settings* settings) {
  ORVA_JOURNAL(userId, settings);
  return userId != nullptr ? kOk : kInvalidArgument;
}

void ChannelImpl::StopAllRender() {
  ORVA_JOURNAL();
  media([](auto& m) { m.renders.clear(); });
}

void ChannelImpl::StopAllPlayout(bool stop) {
  ORVA_JOURNAL(stop);
  if (stop) media([](auto& m) { m.playouts.clear(); });
}

int ChannelImpl::DeliverAudioFrame(int8_t* data, int size, int freq, int channels, uint32_t extra) {
  ORVA_JOURNAL(data, size, freq, channels, extra);
  return countFrame(data != nullptr && size > 0, &MediaState::audioFramesDelivered);
}

void ChannelImpl::RemoveAllVideoProcessor() {
  ORVA_JOURNAL();
  media([](auto& m) { m.videoProcessors.clear(); });
}

void ChannelImpl::UpdateSetting(std::map<std::string, std::string> settings) {
  ORVA_JOURNAL(settings);
  media([&](auto& m) {
    for (auto& [key, value] : settings) m.channelSettings[key] = value;
  });
}

void ChannelImpl::Downgrade(const rtc::DowngradeParam& param) {
  ORVA_JOURNAL(param);
  media([&](auto& m) { m.downgrade = param; });
}

bool ChannelImpl::isLink() {
  ORVA_JOURNAL();
  return parts_.session.joined();
}

}  // namespace orva::loopback
