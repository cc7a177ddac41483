// Symbol visibility of the engine library. The engine is a shared library
// (`orva_sdk`); its non-virtual members and statics are reached by symbol,
// its interfaces by virtual slot.
#pragma once

#if defined(_WIN32)
#if defined(ORVA_SDK_BUILD)
#define ORVA_API __declspec(dllexport)
#else
#define ORVA_API __declspec(dllimport)
#endif
#else
#define ORVA_API __attribute__((visibility("default")))
#endif
