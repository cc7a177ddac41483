// The loopback engine end to end: joining, publishing, leaving, periodic
// reports, echo tests, audio files, shutdown and listener removal.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "control.h"
#include "sim_recorder.h"

namespace {

using namespace sim_test;
namespace control = orva::loopback::control;

class SessionTest : public EngineTest {
 protected:
  // Waits for the whole join sequence, peer included.
  void joinRoom(const char* room) {
    ASSERT_EQ(engine->enterRoom(room, nullptr), 0);
    ASSERT_TRUE(recorder.waitFor("OnVideoSizeFirst("));
  }
};

// Test that a join answers at once and reports Joining, Joined and the
// peer's streams in that order; that while joined, statistics carry one
// remote entry per peer and volumes reach both faces, again and again; that
// leaving removes the peer's streams and then reports Leaved, once; and that
// none of it runs on the caller's thread.
TEST_F(SessionTest, SessionReportsInOrderOffTheCallerThread) {
  joinRoom("room-1");
  const std::vector<std::string> expected = {"OnSessionStateChanged(room-1,1,0)",
                                             "OnSessionStateChanged(room-1,2,0)",
                                             "OnStreamAdd(loopback-peer,0,0,audio,channel)",
                                             "OnStreamAdd(loopback-peer,1,0,video,channel)",
                                             "OnAudioEvent(loopback-peer,0)",
                                             "OnVideoEvent(loopback-peer,0)",
                                             "OnVideoSizeFirst(loopback-peer,1280,720)"};
  // The session's own events, without the periodic reports.
  const auto sessionEvents = [&] {
    auto texts = recorder.matching("On");
    std::erase_if(texts, [](auto& t) { return t.rfind("OnNetworkStats", 0) == 0 || t.rfind("OnUserVoice", 0) == 0; });
    return texts;
  };
  EXPECT_EQ(sessionEvents(), expected);

  ASSERT_TRUE(recorder.waitFor("OnNetworkStats(", 3));
  ASSERT_TRUE(recorder.waitFor("onUserVoiceVolume(", 3));
  ASSERT_TRUE(recorder.waitFor("OnUserVoiceVolume(", 3));
  EXPECT_EQ(recorder.matching("OnNetworkStats").back(), "OnNetworkStats(0,loopback-peer:1280x720;)");
  EXPECT_EQ(recorder.matching("onUserVoiceVolume").back().rfind("onUserVoiceVolume(local-user;loopback-peer;,2,", 0),
            0u);

  engine->exitRoom();
  ASSERT_TRUE(recorder.waitFor("OnSessionStateChanged(room-1,5,0)"));
  EXPECT_EQ(recorder.matching("OnStreamRemove").size(), 2u);
  const auto texts = sessionEvents();
  EXPECT_EQ(std::vector<std::string>(texts.end() - 3, texts.end()),
            (std::vector<std::string>{"OnStreamRemove(loopback-peer,0,0)", "OnStreamRemove(loopback-peer,1,0)",
                                      "OnSessionStateChanged(room-1,5,0)"}));
  engine->exitRoom();  // not in a room: nothing
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(recorder.matching("OnSessionStateChanged(room-1,5").size(), 1u);
  for (auto& e : recorder.events()) EXPECT_NE(e.thread, std::this_thread::get_id()) << e.text;
}

// Test that a missing room or group name is refused with Join_Param_Error
// and raises nothing.
TEST_F(SessionTest, EmptyOrNullRoomIsRefusedSilently) {
  for (const char* room : {static_cast<const char*>(nullptr), ""}) {
    EXPECT_EQ(engine->enterRoom(room, nullptr), rtc::Join_Param_Error);
    EXPECT_EQ(engine->JoinSession(room, nullptr), rtc::Join_Param_Error);
    EXPECT_EQ(engine->MediaService()->JoinSession(room, nullptr), rtc::Join_Param_Error);
    EXPECT_EQ(engine->JoinGroup(room, nullptr), rtc::Join_Param_Error);
  }
  EXPECT_EQ(engine->getLastError(), rtc::Join_Param_Error);
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(recorder.count(), 0u);
}

// Test that local publishing is reported once the session is joined, and
// unpublishing reports the stop; publishing before the join waits for it.
TEST_F(SessionTest, PublishingReportsFirstSendAndStopped) {
  engine->publishAudio(rtc::MicrophoneSource);
  joinRoom("room-2");
  ASSERT_TRUE(recorder.waitFor("OnAudioEvent(local-user,4)"));
  const auto texts = recorder.texts();
  const auto joined = std::find(texts.begin(), texts.end(), "OnSessionStateChanged(room-2,2,0)");
  const auto sent = std::find(texts.begin(), texts.end(), "OnAudioEvent(local-user,4)");
  EXPECT_LT(joined, sent);

  engine->RealtimeChannel()->PublishVideo(rtc::CameraSource);
  ASSERT_TRUE(recorder.waitFor("OnVideoEvent(local-user,4)"));
  engine->unPublishAudio();
  engine->unPublishVideo();
  ASSERT_TRUE(recorder.waitFor("OnVideoEvent(local-user,5)"));
  EXPECT_EQ(recorder.matching("OnAudioEvent(local-user"),
            (std::vector<std::string>{"OnAudioEvent(local-user,4)", "OnAudioEvent(local-user,5)"}));
  engine->unPublishAudio();  // not sending: nothing more
  std::this_thread::sleep_for(30ms);
  EXPECT_EQ(recorder.matching("OnAudioEvent(local-user").size(), 2u);
}

// Test that an echo test reports its result after the delay and counts as
// started until it is stopped.
TEST_F(SessionTest, EchoTestReportsResultAndRunsUntilStopped) {
  auto* service = engine->MediaService();
  EXPECT_FALSE(service->IsEchoStarted());
  engine->startEchoTest(rtc::Network);
  EXPECT_TRUE(service->IsEchoStarted());
  ASSERT_TRUE(recorder.waitFor("onEchoResult("));
  EXPECT_EQ(recorder.matching("onEchoResult").front(), "onEchoResult(1,0,0)");
  EXPECT_TRUE(service->IsEchoStarted());
  service->StopEchoTest(rtc::Network);
  EXPECT_FALSE(service->IsEchoStarted());
}

// Test that an audio file reports its start, its positions and its end.
TEST_F(SessionTest, AudioFilePlaysToItsEnd) {
  rtc::AudioFileParam param;
  param.path = "/tmp/ring.wav";
  engine->Audio()->StartPlayFile(7, &param);
  ASSERT_TRUE(recorder.waitFor("OnPlayFileEnd(7,0)"));
  EXPECT_EQ(recorder.matching("OnPlayFile"),
            (std::vector<std::string>{"OnPlayFileStart(7,60)", "OnPlayFilePosChanged(7,20,60)",
                                      "OnPlayFilePosChanged(7,40,60)", "OnPlayFilePosChanged(7,60,60)",
                                      "OnPlayFileEnd(7,0)"}));
  engine->StartPlayFile(8, nullptr);  // ignored, no crash
  EXPECT_EQ(engine->GetFilePos(8), -1);
}

// Test that destroy joins every engine thread: after it returns no callback
// or frame arrives, and a later initialize starts the engine again.
TEST_F(SessionTest, DestroyStopsEveryThreadAndInitializeRestarts) {
  joinRoom("room-5");
  engine->setCameraVideoProcessor(&recorder);
  rtc::LocalMediaTranscodingParams params;
  params.videoEncoderParams = {160, 90, 120};
  engine->startTranscoding(params);
  ASSERT_TRUE(control::raiseConcurrently(2, 1'000'000));
  ASSERT_TRUE(recorder.waitUntil([&] { return recorder.frameCount() > 2; }));

  engine->destroy();
  EXPECT_FALSE(control::engineRunning());
  EXPECT_EQ(recorder.matching("OnSessionStateChanged(room-5,5,0)").size(), 1u);  // left before stopping
  const size_t settled = recorder.count();
  std::this_thread::sleep_for(80ms);
  EXPECT_EQ(recorder.count(), settled);

  EXPECT_EQ(engine->enterRoom("too-early", nullptr), rtc::Session_E_Unknow) << "no engine threads to report";
  ASSERT_EQ(engine->initialize(nullptr, &recorder), 0);
  EXPECT_EQ(engine->enterRoom("room-6", nullptr), 0);
  EXPECT_TRUE(recorder.waitFor("OnSessionStateChanged(room-6,2,0)"));
}

// Test that removeEventHandler returns only after a callback already inside
// the listener has finished, even while other threads keep raising.
TEST_F(SessionTest, RemoveEventHandlerWaitsForCallbacksInFlight) {
  std::atomic<bool> inside{false};
  std::atomic<bool> finished{false};
  recorder.onFilePos = [&] {
    if (inside.exchange(true)) return;  // only the first call is slow
    std::this_thread::sleep_for(100ms);
    finished = true;
  };
  ASSERT_TRUE(control::raiseConcurrently(3, 1'000'000));
  while (!inside) std::this_thread::yield();
  engine->removeEventHandler(&recorder, nullptr);
  EXPECT_TRUE(finished);
  const size_t settled = recorder.count();
  std::this_thread::sleep_for(30ms);
  EXPECT_EQ(recorder.count(), settled);  // raisers still run, but reach no one
}

// Test that a listener may remove itself from inside its own callback.
TEST_F(SessionTest, ListenerCanRemoveItselfFromItsCallback) {
  recorder.onFilePos = [&] { engine->removeEventHandler(&recorder, nullptr); };
  ASSERT_TRUE(control::raiseConcurrently(1, 3));
  control::joinRaisers();
  EXPECT_EQ(recorder.matching("OnPlayFilePosChanged").size(), 1u);
}

// Test that a group join and leave are reported on the service face.
TEST_F(SessionTest, GroupJoinAndLeave) {
  EXPECT_EQ(engine->JoinGroup("g", nullptr), 0);
  ASSERT_TRUE(recorder.waitFor("OnGroupStateChanged(g,2,0)"));
  engine->LeaveGroup();
  ASSERT_TRUE(recorder.waitFor("OnGroupStateChanged(g,0,0)"));
  EXPECT_EQ(recorder.matching("OnGroupStateChanged").size(), 3u);
}

}  // namespace
