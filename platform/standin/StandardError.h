#pragma once

#include <string_view>

namespace eq::standin {

/// Writes "caption: text" and a line feed to standard error, in UTF-8. On Linux this output replaces a message box.
void writeToStandardError(std::wstring_view caption, std::wstring_view text);

} // namespace eq::standin
