// Status codes the loopback engine answers with.
#pragma once

namespace orva::loopback {

constexpr int kOk = 0;
constexpr int kInvalidArgument = -1;  // out of range, null or empty
constexpr int kNotFound = -2;         // no such device or source

}  // namespace orva::loopback
