# Tests of diagnostics/, platform/ and the capture-mode tables of facade/.
# The pure pieces never need an engine; the thin engine calls are tested once
# the engine library is part of the build.
orva_gtest(platform_tests platform_test.cpp LIBS orva_platform)
# Windows and adapters depend on the display: the Windows build runs this one
# with a virtual display and without one.
orva_gtest(platform_display_tests platform_display_test.cpp LIBS orva_diagnostics_core)

orva_gtest(diagnostics_tests
  diagnostics_adapter_lookup_test.cpp
  diagnostics_log_test.cpp
  diagnostics_settings_file_test.cpp
  diagnostics_texts_test.cpp
  LIBS orva_diagnostics_core)

# The capture-mode tables are compiled in directly; the diagnostics core only
# lends them the engine's declarations.
orva_gtest(capture_modes_tests capture_modes_test.cpp ${PROJECT_SOURCE_DIR}/facade/capture_modes.cpp
  LIBS orva_diagnostics_core)

# Checking what reached the engine needs the loopback engine's test control.
if(ORVA_LOOPBACK)
  orva_gtest(diagnostics_engine_tests diagnostics_engine_calls_test.cpp LIBS orva_diagnostics)
  target_include_directories(diagnostics_engine_tests PRIVATE ${PROJECT_SOURCE_DIR}/sdk/sim)
endif()
