#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace eq {

/// Reads the words of a line in order. A number and its unit may be one word. The line must outlive the object.
class TextWords {
public:
    explicit TextWords(std::string_view line);

    [[nodiscard]] bool isAtEnd() const { return m_next == m_words.size(); }
    /// Returns the next word, or the word `ahead` places after it; an empty word at the end of the line.
    [[nodiscard]] std::string_view peek(std::size_t ahead = 0) const;
    std::string_view take();
    /// Takes the next word if it equals `word` without regard to case. Returns true if it does.
    bool takeIf(std::string_view word);

    /// Takes a number. Characters after the number remain as the next word. A comma is a decimal point. Throws
    /// FileError, which begins with `what`.
    double takeNumber(std::string_view what);
    /// Take a number with an optional unit, in Hz or in dB. Throw FileError also for a value outside sensible limits.
    double takeFrequency(std::string_view what);
    double takeGain(std::string_view what);

    /// Throws FileError if there are more words.
    void requireEnd() const;

private:
    std::vector<std::string_view> m_words;
    std::size_t m_next = 0;
};

} // namespace eq
