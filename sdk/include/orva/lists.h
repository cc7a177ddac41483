// The engine's own small collections and its key-value Settings. Their storage
// lives inside the engine library (each object holds one opaque pointer), so
// every member, copy and destructor is the library's: callers only ever call
// the exported members below. An element pointer handed out by Get stays
// valid until the list is changed or destroyed.
#pragma once

#include <string>

#include "orva/export.h"

namespace Orva::Rtc {

struct Speaker;
struct Microphone;
struct CameraResolution;
struct Camera;
struct Window;
struct Screen;
struct LocalMediaTranscodingSource;

class ORVA_API SpeakerList {
 public:
  SpeakerList();
  SpeakerList(const SpeakerList& other);
  ~SpeakerList();
  SpeakerList& operator=(const SpeakerList& other);

  int Size();
  const Speaker* Get(int index);
  void Add(const Speaker& speaker);

 private:
  struct Impl;
  Impl* impl_;
};

class ORVA_API MicrophoneList {
 public:
  MicrophoneList();
  MicrophoneList(const MicrophoneList& other);
  ~MicrophoneList();
  MicrophoneList& operator=(const MicrophoneList& other);

  int Size();
  const Microphone* Get(int index);
  void Add(const Microphone& microphone);

 private:
  struct Impl;
  Impl* impl_;
};

class ORVA_API CameraResolutionList {
 public:
  CameraResolutionList();
  CameraResolutionList(const CameraResolutionList& other);
  ~CameraResolutionList();
  CameraResolutionList& operator=(const CameraResolutionList& other);

  int Size();
  CameraResolution* Get(int index);
  void Add(const CameraResolution& resolution);

 private:
  struct Impl;
  Impl* impl_;
};

class ORVA_API CameraList {
 public:
  CameraList();
  CameraList(const CameraList& other);
  ~CameraList();
  CameraList& operator=(const CameraList& other);

  int Size();
  Camera* Get(int index);
  // The camera whose guid equals `id`; null when there is none.
  Camera* Get(const char* id);
  void Add(const Camera& camera);

 private:
  struct Impl;
  Impl* impl_;
};

class ORVA_API WindowList {
 public:
  WindowList();
  WindowList(const WindowList& other);
  ~WindowList();
  WindowList& operator=(const WindowList& other);

  int Size();
  const Window* Get(int index);
  const Window* GetById(int id);
  void Add(const Window& window);

 private:
  struct Impl;
  Impl* impl_;
};

class ORVA_API ScreenList {
 public:
  ScreenList();
  ScreenList(const ScreenList& other);
  ~ScreenList();
  ScreenList& operator=(const ScreenList& other);

  int Size();
  const Screen* Get(int index);
  const Screen* GetById(int id);
  void Add(const Screen& screen);

 private:
  struct Impl;
  Impl* impl_;
};

// Capture-mode values (ScreenCaptureMode / WindowCaptureMode).
class ORVA_API ScreenCaptureModeList {
 public:
  ScreenCaptureModeList();
  ScreenCaptureModeList(const ScreenCaptureModeList& other);
  ~ScreenCaptureModeList();
  ScreenCaptureModeList& operator=(const ScreenCaptureModeList& other);

  int Size();
  // The mode at `index`; -1 when the index is outside the list.
  int Get(int index);
  void Add(int mode);

 private:
  struct Impl;
  Impl* impl_;
};

class ORVA_API LocalMediaTranscodingSourceList {
 public:
  LocalMediaTranscodingSourceList();
  LocalMediaTranscodingSourceList(const LocalMediaTranscodingSourceList& other);
  ~LocalMediaTranscodingSourceList();
  LocalMediaTranscodingSourceList& operator=(const LocalMediaTranscodingSourceList& other);

  int Size();
  const LocalMediaTranscodingSource* Get(int index);
  void Add(const LocalMediaTranscodingSource& source);

 private:
  struct Impl;
  Impl* impl_;
};

// A list of strings whose mutator is const: the strings live behind the
// opaque pointer, which the const member does not change.
class ORVA_API StringVector {
 public:
  StringVector();
  // Reserves room for `capacity` strings; the vector starts empty.
  explicit StringVector(int capacity);
  ~StringVector();
  StringVector(const StringVector&) = delete;
  StringVector& operator=(const StringVector&) = delete;

  int size() const;
  // The string at `index`; empty when the index is outside the vector.
  std::string get(int index) const;
  void add(const std::string& value) const;

 private:
  struct Impl;
  Impl* impl_;
};

// Engine configuration: keys map to strings or to raw pointers. Adding a key
// that is already present replaces its value, so later entries win.
class ORVA_API Settings {
 public:
  Settings();
  ~Settings();
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  void add(const char* key, const char* value);
  void add(const char* key, void* value);
  // The string stored under `key`, or `defaultValue` when the key is absent
  // or holds a pointer.
  std::string get(const char* key, const char* defaultValue);
  // The string under `key` read as a decimal integer, or `defaultValue` when
  // the key is absent, holds a pointer, or is not a whole decimal number.
  int get(const char* key, int defaultValue);

 private:
  struct Impl;
  Impl* impl_;
  friend struct SettingsAccess;
};

}  // namespace Orva::Rtc
