#include "tools/lngcheck/Console.h"

#include "tools/lngcheck/LanguageFile.h"

#ifdef _WIN32
#include <cstdio>
#else
#include "tools/common/OutputFile.h"
#endif

namespace eq {

namespace lngcheck {

#ifdef _WIN32
Console::Console() : m_codepageBefore(GetConsoleOutputCP()) {
    SetConsoleOutputCP(CP_UTF8);
    // Without a buffer, the runtime writes each byte separately, and the console cannot show a part of a character.
    constexpr std::size_t BufferSize = 65536;
    std::setvbuf(stdout, nullptr, _IOFBF, BufferSize);
}

Console::~Console() {
    std::fflush(stdout);
    if (m_codepageBefore != 0) SetConsoleOutputCP(m_codepageBefore);
}
#else
Console::Console() {
    holdStandardStreams();
    removeTemporariesOnSignals();
}

Console::~Console() = default;
#endif

std::string Arguments::inBytes(const wchar_t* argument) {
    return inUtf8(argument);
}

} // namespace lngcheck

} // namespace eq
