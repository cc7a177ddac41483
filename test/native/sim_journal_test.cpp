// The engine's journals: every call in order with its arguments formatted,
// crash reports and sdk_log_info lines, and the log file.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "control.h"
#include "journal_format.h"
#include "sim_recorder.h"

namespace {

using namespace sim_test;
namespace control = orva::loopback::control;
using orva::loopback::formatCall;

// Test how each kind of argument is written: strings escaped, numbers and
// enumerations as numbers, pointers as pointers or null, maps by key, Settings
// in first-insertion order (a repeated key replaces its value in place), and
// records and lists field by field, nested ones too.
TEST(JournalFormat, ArgumentsByKind) {
  int object = 0;
  char hex[32];
  std::snprintf(hex, sizeof hex, "%p", static_cast<void*>(&object));
  rtc::Settings settings;
  settings.add("b", "1");
  settings.add("a", "2");
  settings.add("b", "3");
  settings.add("p", static_cast<void*>(nullptr));
  rtc::Camera camera{"C", "g", 0, {}};
  camera.cameraResolutions.Add({640, 480, 30, rtc::CaptureDataType::CaptureDataTypeI420});
  rtc::AudioFileParam param;
  param.path = "x.wav";
  param.loopCount = 2;
  const std::pair<std::string, std::string> cases[] = {
      {formatCall("I", "m"), "I.m()"},
      {formatCall("I", "m", "a\"b\\c\n\t\x01"), R"(I.m("a\"b\\c\n\t\u0001"))"},
      {formatCall("I", "m", std::string("h\xc3\xa9llo")), "I.m(\"h\xc3\xa9llo\")"},
      {formatCall("I", "m", static_cast<const char*>(nullptr)), "I.m(null)"},
      {formatCall("I", "m", -7, 4000000000u, true, false), "I.m(-7, 4000000000, true, false)"},
      {formatCall("I", "m", 0.1f, 2.5, 1e21), "I.m(0.1, 2.5, 1e+21)"},
      {formatCall("I", "m", rtc::kVideoRotation_270, rtc::CaptureDataType::CaptureDataTypeH265), "I.m(270, 15)"},
      {formatCall("I", "m", static_cast<void*>(nullptr), static_cast<void*>(&object)),
       "I.m(null, " + std::string(hex) + ")"},
      {formatCall("I", "m", static_cast<rtc::Settings*>(nullptr)), "I.m(null)"},
      {formatCall("I", "m", &settings), R"(I.m({"b":"3","a":"2","p":null}))"},
      {formatCall("I", "m", std::map<std::string, std::string>{{"b", "2"}, {"a", "1"}}), R"(I.m({"a":"1","b":"2"}))"},
      {formatCall("I", "m", rtc::Window{5, "T", {1, 2, 3, 4}}),
       R"(I.m({id:5,title:"T",rect:{x:1,y:2,width:3,height:4}}))"},
      {formatCall("I", "m", std::vector<rtc::Screen>{{1, "A", {}}, {2, "B", {}}}),
       R"(I.m([{id:1,name:"A",rect:{x:0,y:0,width:0,height:0}},{id:2,name:"B",rect:{x:0,y:0,width:0,height:0}}]))"},
      {formatCall("I", "m", camera),
       R"(I.m({name:"C",guid:"g",index:0,cameraResolutions:[{width:640,height:480,maxFps:30,type:3}]}))"},
      {formatCall("I", "m", static_cast<const rtc::AudioFileParam*>(&param)),
       R"(I.m({path:"x.wav",pos:0,loopCount:2,from:0,to:0,publish:false}))"},
      {formatCall("I", "m", static_cast<const rtc::AudioFileParam*>(nullptr)), "I.m(null)"},
  };
  for (const auto& [got, want] : cases) EXPECT_EQ(got, want);
}

// Each journal test starts from a stopped engine with empty journals.
class Journal : public ::testing::Test {
 protected:
  void SetUp() override { control::reset(); }
};

// Test that calls through every interface land in the journal in order,
// under their interface names.
TEST_F(Journal, RecordsCallsInOrder) {
  auto* engine = rtc::OrvaEngine::SDK();
  engine->Initialize(nullptr);
  control::clearJournal();
  engine->enterRoom("r", nullptr);
  engine->Device()->SetMicrophoneVolume(55);
  engine->SetMicrophoneVolume(56);
  engine->RealtimeChannel()->MuteOtherAudio(nullptr, true);
  engine->MediaService()->StartEchoTest(rtc::Driver);
  rtc::OrvaEngine::reportOrvaSentryEvent(rtc::ERROR_TYPE_WARNING, "orva", "m");
  rtc::RtcEngine::SDK()->GetVersion();
  EXPECT_EQ(control::journal(), (std::vector<std::string>{
                                    R"(OrvaEngine.enterRoom("r", null))",
                                    "OrvaEngine.Device()",
                                    "MediaDevice.SetMicrophoneVolume(55)",
                                    "OrvaEngine.SetMicrophoneVolume(56)",
                                    "OrvaEngine.RealtimeChannel()",
                                    "RealtimeChannel.MuteOtherAudio(null, true)",
                                    "OrvaEngine.MediaService()",
                                    "IMediaService.StartEchoTest(3)",
                                    R"(OrvaEngine.reportOrvaSentryEvent(2, "orva", "m"))",
                                    "RtcEngine.SDK()",
                                    "RtcEngine.GetVersion()",
                                }));
  control::clearJournal();
  EXPECT_TRUE(control::journal().empty());
  engine->destroy();
}

// Test the crash-report and log journals, and that the log file named at
// initialisation receives the engine's lines and sdk_log_info lines.
TEST_F(Journal, CrashReportsLogLinesAndLogFile) {
  const std::string path = ::testing::TempDir() + "loopback-journal-test.log";
  std::remove(path.c_str());
  rtc::Settings settings;
  settings.add("media.global.log.file", path.c_str());
  auto* engine = rtc::OrvaEngine::SDK();
  ASSERT_EQ(engine->initialize(&settings, nullptr), 0);
  rtc::OrvaEngine::reportOrvaSentryEvent(rtc::ERROR_TYPE_CRITICAL, "orva", "camera: -5");
  sdk_log_info("frame %dx%d %s", 640, 480, "dropped");
  engine->destroy();

  const auto reports = control::crashReports();
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(std::tie(reports[0].type, reports[0].tag, reports[0].message), std::make_tuple(3, "orva", "camera: -5"));
  EXPECT_EQ(control::logLines(), std::vector<std::string>{"frame 640x480 dropped"});
  control::clearCrashReports();
  control::clearLogLines();
  EXPECT_TRUE(control::crashReports().empty());
  EXPECT_TRUE(control::logLines().empty());

  std::ifstream file(path);
  std::stringstream content;
  content << file.rdbuf();
  EXPECT_NE(content.str().find("[info] engine started"), std::string::npos);
  EXPECT_NE(content.str().find("[sdk] frame 640x480 dropped"), std::string::npos);
  EXPECT_NE(content.str().find("[info] engine stopped"), std::string::npos);
  std::remove(path.c_str());
}

// Test that null pointers for every kind of pointer argument are answered,
// never dereferenced.
TEST_F(Journal, NullArgumentsAreSafe) {
  auto* engine = rtc::OrvaEngine::SDK();
  ASSERT_EQ(engine->initialize(nullptr, nullptr), 0);
  engine->setCurrentMicDevice(nullptr);
  engine->startCameraSource(nullptr);
  engine->sendSEIMsg(nullptr);
  engine->setBeautyParameter(nullptr, nullptr);
  engine->enableSystemAudioLoopback(nullptr);
  engine->updateScreenCaptureProperty(nullptr, {});
  EXPECT_LT(engine->StartCaptureScreen(static_cast<void*>(nullptr)), 0);
  EXPECT_LT(engine->OpenCamera(static_cast<const char*>(nullptr)), 0);
  EXPECT_LT(engine->DeliverVideoFrame(nullptr), 0);
  EXPECT_LT(engine->DeliverAudioFrame(nullptr), 0);
  EXPECT_LT(engine->StartPlayAudioFile(nullptr, false, false), 0);
  EXPECT_LT(engine->GetFileDuration(nullptr), 0);
  EXPECT_LT(engine->StartLive(nullptr), 0);
  EXPECT_LT(engine->AddVideoProcessor(nullptr, nullptr), 0);
  EXPECT_LT(engine->Device()->StartSpeakerTest(nullptr), 0);
  EXPECT_LT(engine->RealtimeChannel()->DeliverAudioFrame(nullptr, 0, 0, 0, 0), 0);
  engine->StartPlayFile(1, nullptr);
  engine->removeEventHandler(nullptr, nullptr);
  auto* logInfo = &sdk_log_info;  // through a pointer: a null format on purpose
  logInfo(nullptr);
  rtc::OrvaEngine::createOrvaSentry(nullptr);
  EXPECT_NE(control::journal().back().find("createOrvaSentry(null)"), std::string::npos);
  engine->destroy();
}

}  // namespace
