# Finds the headers of the Node.js that runs the build (V8, Node.js, libuv),
# or the ones ORVA_NODE_INCLUDE_DIR names (another Node.js version, an
# Electron release), and offers `node_addon(<target> <sources>...)`.
set(ORVA_NODE_INCLUDE_DIR "" CACHE PATH "Node.js headers to build against (default: those of the node on PATH)")
if(ORVA_NODE_INCLUDE_DIR)
  set(NODE_INCLUDE_DIR ${ORVA_NODE_INCLUDE_DIR})
else()
  find_program(NODE_EXECUTABLE node REQUIRED)
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

# A loadable Node.js addon: a shared object named <target>.node whose V8,
# Node.js and libuv symbols are resolved from the node executable at load.
function(node_addon target)
  add_library(${target} MODULE ${ARGN})
  set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX ".node")
  target_link_libraries(${target} PRIVATE node_headers)
endfunction()
