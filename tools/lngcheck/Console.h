#pragma once

#include <string>
#include <vector>

namespace eq {

namespace lngcheck {

/// Prepares the standard streams. On Windows, a console shows UTF-8 until the destructor restores its code page.
class Console {
public:
    Console();
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

private:
    unsigned m_codepageBefore = 0;
};

/// The arguments of the program as byte strings, for a function that takes `argc` and `argv`. `FileAccess.h` describes
/// their encoding.
class Arguments {
public:
    template <typename Character>
    Arguments(int count, Character** arguments) {
        for (int i = 0; i < count; ++i) m_texts.push_back(inBytes(arguments[i]));
        for (std::string& text : m_texts) m_pointers.push_back(text.data());
    }

    [[nodiscard]] int count() const { return static_cast<int>(m_pointers.size()); }
    [[nodiscard]] char** pointers() { return m_pointers.data(); }

private:
    static std::string inBytes(const char* argument) { return argument; }
    static std::string inBytes(const wchar_t* argument);

    std::vector<std::string> m_texts;
    std::vector<char*> m_pointers;
};

} // namespace lngcheck

} // namespace eq
