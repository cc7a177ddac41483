// The texts of the error reports sent to the crash-report service.
#pragma once

#include <optional>
#include <string>

namespace orva::diagnostics {

/// The report text for an engine error of `category` with `code`, or nothing
/// when that error is not reported: categories 2 and 4 never are, and some
/// codes of categories 1 and 3 are routine. The text is the category's prefix
/// (which ends in ':'), a second ':', the code in decimal, ':' and the message;
/// category 1 drops its message.
std::optional<std::string> errorReportText(int category, int code, const std::string& message);

}  // namespace orva::diagnostics
