#include "platform/standin/StandardError.h"

#include "platform/standin/CodePages.h"

#include <cstdio>
#include <string>

namespace {

std::string toUtf8(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    std::string bytes(text.size() * 3, '\0');
    bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(),
                                                              static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

} // namespace

void eq::standin::writeToStandardError(std::wstring_view caption, std::wstring_view text) {
    std::fprintf(stderr, "%s: %s\n", toUtf8(caption).c_str(), toUtf8(text).c_str());
}
