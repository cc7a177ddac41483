# Finds the headers of the Node.js that runs the build (V8, Node.js, libuv)
# and offers `node_addon(<target> <sources>...)` for native addons.
find_program(NODE_EXECUTABLE node REQUIRED)
execute_process(
  COMMAND ${NODE_EXECUTABLE} -p "require('path').resolve(process.execPath, '..', '..', 'include', 'node')"
  OUTPUT_VARIABLE NODE_INCLUDE_DIR OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
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
