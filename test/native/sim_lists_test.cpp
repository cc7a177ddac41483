// The engine's value classes: deep copies, lookups and their misses,
// Settings semantics, and live-instance counts that rise and fall.
#include <gtest/gtest.h>

#include "control.h"
#include "orva/sdk.h"

namespace {

namespace rtc = Orva::Rtc;
namespace control = orva::loopback::control;

// One element for each kind of list, told apart by `i`.
rtc::Speaker item(const rtc::SpeakerList&, int i) { return {"s", std::to_string(i), i, false, false}; }
rtc::Microphone item(const rtc::MicrophoneList&, int i) { return {"m", std::to_string(i), i, false, false}; }
rtc::Window item(const rtc::WindowList&, int i) { return {static_cast<uint64_t>(100 + i), "w", {}}; }
rtc::Screen item(const rtc::ScreenList&, int i) { return {static_cast<uint64_t>(100 + i), "s", {}}; }
rtc::CameraResolution item(const rtc::CameraResolutionList&, int i) {
  return {i, i, i, rtc::CaptureDataType::CaptureDataTypeNull};
}
rtc::Camera item(const rtc::CameraList&, int i) {
  rtc::Camera c;
  c.guid = std::to_string(i);
  c.cameraResolutions.Add({i, i, 30, rtc::CaptureDataType::CaptureDataTypeI420});
  return c;
}
rtc::LocalMediaTranscodingSource item(const rtc::LocalMediaTranscodingSourceList&, int i) {
  rtc::LocalMediaTranscodingSource s;
  s.zOrder = i;
  return s;
}

template <class List>
class ListTest : public ::testing::Test {};
using Lists = ::testing::Types<rtc::SpeakerList, rtc::MicrophoneList, rtc::CameraList, rtc::WindowList, rtc::ScreenList,
                               rtc::LocalMediaTranscodingSourceList, rtc::CameraResolutionList>;
TYPED_TEST_SUITE(ListTest, Lists);

// Test that copies (construction and assignment) are independent deep
// copies and that Get outside the list answers null.
TYPED_TEST(ListTest, CopiesAreDeepAndMissesAreNull) {
  TypeParam list;
  list.Add(item(list, 1));
  TypeParam copy(list);
  copy.Add(item(list, 2));
  TypeParam assigned;
  assigned = copy;
  assigned.Add(item(list, 3));
  EXPECT_EQ(list.Size(), 1);
  EXPECT_EQ(copy.Size(), 2);
  EXPECT_EQ(assigned.Size(), 3);
  EXPECT_NE(list.Get(0), copy.Get(0));
  for (int index : {-1, 1, 1 << 30}) EXPECT_EQ(list.Get(index), nullptr) << index;
}

// Test that a camera copied with its list owns its own resolutions, and the
// lookups by guid and by id, with their misses.
TEST(Lists, LookupsAndCameraResolutionsCopyWithTheCamera) {
  rtc::CameraList list;
  list.Add(item(list, 7));
  rtc::CameraList copy(list);
  copy.Get(0)->cameraResolutions.Get(0)->width = 1;
  EXPECT_EQ(list.Get(0)->cameraResolutions.Get(0)->width, 7);
  EXPECT_EQ(list.Get("7"), list.Get(0));
  EXPECT_EQ(list.Get("nope"), nullptr);
  EXPECT_EQ(list.Get(static_cast<const char*>(nullptr)), nullptr);
  rtc::WindowList windows;
  windows.Add({65537, "Editor", {}});
  EXPECT_EQ(windows.GetById(65537)->title, "Editor");
  EXPECT_EQ(windows.GetById(1), nullptr);
  rtc::ScreenList screens;
  screens.Add({2, "S", {}});
  EXPECT_EQ(screens.GetById(2)->name, "S");
  EXPECT_EQ(screens.GetById(-2), nullptr);
  rtc::ScreenCaptureModeList modes;
  modes.Add(rtc::ScreenCaptureModeDXGI);
  rtc::ScreenCaptureModeList modesCopy(modes);
  modesCopy.Add(3);
  EXPECT_EQ(modes.Get(0), 2);
  EXPECT_EQ(modes.Get(1), -1);
  EXPECT_EQ(modes.Get(-1), -1);
  EXPECT_EQ(modesCopy.Size(), 2);
}

// Test how Settings reads integers: whole decimal numbers only.
TEST(Settings, IntegerReadsNeedWholeDecimalNumbers) {
  const std::vector<std::pair<const char*, int>> cases = {
      {"42", 42}, {"-7", -7}, {"+5", 5}, {"0", 0}, {"", 9}, {"4x", 9}, {" 4", 9}, {"1.5", 9}, {"99999999999", 9}};
  for (const auto& [text, want] : cases) {
    rtc::Settings s;
    s.add("k", text);
    EXPECT_EQ(s.get("k", 9), want) << '"' << text << '"';
  }
  rtc::Settings s;
  s.add("p", static_cast<void*>(&s));
  EXPECT_EQ(s.get("p", 3), 3);
  EXPECT_EQ(s.get("p", "d"), "d");
  EXPECT_EQ(s.get("absent", "d"), "d");
  s.add("p", "text");
  EXPECT_EQ(s.get("p", "d"), "text");
  s.add(nullptr, "ignored");
  EXPECT_EQ(s.get(nullptr, 1), 1);
}

TEST(StringVector, AddGetAndMisses) {
  rtc::StringVector v(8);
  EXPECT_EQ(v.size(), 0);
  v.add("a");
  v.add("b");
  EXPECT_EQ(v.size(), 2);
  EXPECT_EQ(v.get(1), "b");
  EXPECT_EQ(v.get(2), "");
  EXPECT_EQ(v.get(-1), "");
  rtc::StringVector huge(-5);
  EXPECT_EQ(huge.size(), 0);
}

// Test that sized frames own a zeroed buffer and unsized ones none.
TEST(VideoFrame, SizedFramesOwnZeroedBuffers) {
  rtc::VideoFrame sized(64);
  ASSERT_NE(sized.data, nullptr);
  EXPECT_EQ(sized.size, 64);
  const auto* bytes = static_cast<const uint8_t*>(sized.data);
  EXPECT_EQ(std::count(bytes, bytes + 64, 0), 64);
  rtc::VideoFrame negative(-1);
  EXPECT_EQ(negative.data, nullptr);
  EXPECT_EQ(negative.size, 0);
}

// Test that every counted class counts up on construction and copy and
// back down on destruction, including lists returned by the engine.
TEST(LiveInstances, RiseAndFall) {
  rtc::OrvaEngine::SDK();  // the engine's own devices exist before counting
  const auto before = control::liveInstances();
  ASSERT_EQ(before.size(), 11u);
  auto count = [](const char* name) { return control::liveInstances(name); };
  // One more of each below, except as noted.
  std::vector<std::pair<const char*, long>> expected;
  for (const char* name : {"SpeakerList", "MicrophoneList", "WindowList", "ScreenList", "ScreenCaptureModeList",
                           "LocalMediaTranscodingSourceList", "StringVector", "Settings", "VideoFrame", "CameraList",
                           "CameraResolutionList"}) {
    expected.emplace_back(name, count(name) + 1);
  }
  expected[0].second += 1;   // a copy
  expected[10].second += 1;  // two cameras, each with a resolution list
  {
    rtc::SpeakerList a;
    rtc::SpeakerList b(a);
    rtc::MicrophoneList c;
    rtc::WindowList d;
    rtc::ScreenList e;
    rtc::ScreenCaptureModeList f;
    rtc::LocalMediaTranscodingSourceList g;
    rtc::StringVector h;
    rtc::Settings i;
    rtc::VideoFrame j(16);
    auto list = rtc::OrvaEngine::SDK()->Cameras();
    for (const auto& [name, live] : expected) EXPECT_EQ(count(name), live) << name;
  }
  EXPECT_EQ(control::liveInstances(), before);
  EXPECT_EQ(control::liveInstances("NoSuchClass"), -1);
}

}  // namespace
