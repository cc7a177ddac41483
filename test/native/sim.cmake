# Native tests of the loopback engine (sdk/sim). The end-to-end suites link
# the shared engine library like any application; the suites of pure parts
# link its internals.
if(TARGET orva_sdk AND TARGET orva_sim_internals)
  orva_gtest(sim_engine_tests
    sim_session_test.cpp sim_device_test.cpp sim_lists_test.cpp
    LIBS orva_sdk)
  target_include_directories(sim_engine_tests PRIVATE ${PROJECT_SOURCE_DIR}/sdk/sim)
  orva_gtest(sim_internals_tests
    sim_compose_test.cpp sim_frames_test.cpp sim_journal_test.cpp sim_scheduler_test.cpp
    LIBS orva_sim_internals)
endif()
