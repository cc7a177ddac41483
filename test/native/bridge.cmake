# The event bridge's queue and frame sink, with real threads. `npm test` also
# runs them under ThreadSanitizer.
find_library(ORVA_LIBUV NAMES uv libuv.so.1 REQUIRED)
orva_gtest(bridge_queue_tests bridge_event_queue_test.cpp bridge_frame_sink_test.cpp
           LIBS orva_bridge_core ${ORVA_LIBUV} Threads::Threads)
