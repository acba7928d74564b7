#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace eq {

/// The words of a line, in order. A number and its unit may be one word.
class TextWords {
public:
    explicit TextWords(std::string_view line);

    [[nodiscard]] bool isAtEnd() const { return m_next == m_words.size(); }
    /// The next word, or an empty one at the end.
    [[nodiscard]] std::string_view peek(std::size_t ahead = 0) const;
    std::string_view take();
    /// Takes the next word if it is this one, in upper or lower case.
    bool takeIf(std::string_view word);

    /// Takes a number, and leaves what follows it in the same word. A comma is a decimal point. Throws FileError, which
    /// names `what`.
    double takeNumber(std::string_view what);
    /// As `takeNumber`, with an optional unit and the limits of what makes sense.
    double takeFrequency(std::string_view what);
    double takeGain(std::string_view what);

    /// Throws FileError if there are more words.
    void requireEnd() const;

private:
    std::vector<std::string_view> m_words;
    std::size_t m_next = 0;
};

} // namespace eq
