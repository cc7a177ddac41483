# Finds the headers of the Node.js that runs the build (V8, Node.js, libuv),
# or the ones ORVA_NODE_INCLUDE_DIR names (another Node.js version, an
# Electron release), and offers `node_addon(<target> <sources>...)`.
set(ORVA_NODE_INCLUDE_DIR "" CACHE PATH "Node.js headers to build against (default: those of the node on PATH)")
if(ORVA_NODE_INCLUDE_DIR)
  set(NODE_INCLUDE_DIR ${ORVA_NODE_INCLUDE_DIR})
endif()
find_program(NODE_EXECUTABLE node REQUIRED)
if(NOT ORVA_NODE_INCLUDE_DIR)
  execute_process(
    COMMAND ${NODE_EXECUTABLE} -p "require('path').resolve(process.execPath, '..', '..', 'include', 'node')"
    OUTPUT_VARIABLE NODE_INCLUDE_DIR OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endif()
if(NOT EXISTS "${NODE_INCLUDE_DIR}/node.h")
  message(FATAL_ERROR "Node.js headers not found at ${NODE_INCLUDE_DIR}")
endif()
message(STATUS "Node.js headers: ${NODE_INCLUDE_DIR}")

add_library(node_headers INTERFACE)
# System include: the V8 headers are not warning-clean under -Wextra.
target_include_directories(node_headers SYSTEM INTERFACE ${NODE_INCLUDE_DIR})
target_compile_definitions(node_headers INTERFACE NODE_GYP_MODULE_NAME=orva_swig BUILDING_NODE_EXTENSION)

# The macros that tell V8's headers how the runtime's V8 was configured
# (pointer compression and the like: Electron sets them, Node.js does not).
# Without them an addon reads V8's objects at the wrong offsets.
execute_process(
  COMMAND ${NODE_EXECUTABLE} ${CMAKE_CURRENT_LIST_DIR}/v8-defines.js ${NODE_INCLUDE_DIR}
  OUTPUT_VARIABLE node_v8_defines OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(node_v8_defines)
  string(REPLACE "\n" ";" node_v8_defines "${node_v8_defines}")
  message(STATUS "V8 configured with: ${node_v8_defines}")
  target_compile_definitions(node_headers INTERFACE ${node_v8_defines})
endif()

# On Windows an addon imports V8, Node.js and libuv from node.lib, the import
# library of the same release as the headers. Where node-gyp keeps headers,
# it sits two folders up from include/node, in a folder named for the
# architecture.
if(WIN32)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(node_lib_arch ia32)
  elseif(CMAKE_GENERATOR_PLATFORM MATCHES "^(ARM64|arm64)$" OR CMAKE_SYSTEM_PROCESSOR MATCHES "^(ARM64|arm64|aarch64)$")
    set(node_lib_arch arm64)
  else()
    set(node_lib_arch x64)
  endif()
  get_filename_component(node_lib_guess "${NODE_INCLUDE_DIR}/../../${node_lib_arch}/node.lib" ABSOLUTE)
  set(ORVA_NODE_LIBRARY "${node_lib_guess}" CACHE FILEPATH "node.lib of the Node.js release whose headers are used (Windows)")
  if(NOT EXISTS "${ORVA_NODE_LIBRARY}")
    message(FATAL_ERROR "node.lib not found at ${ORVA_NODE_LIBRARY}: name it with -DORVA_NODE_LIBRARY=<node.lib>")
  endif()
  target_link_libraries(node_headers INTERFACE ${ORVA_NODE_LIBRARY})
endif()

# A loadable Node.js addon: a shared object named <target>.node whose V8,
# Node.js and libuv symbols are resolved from the node executable at load.
function(node_addon target)
  add_library(${target} MODULE ${ARGN})
  set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX ".node")
  target_link_libraries(${target} PRIVATE node_headers)
endfunction()
