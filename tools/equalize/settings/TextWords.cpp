#include "tools/equalize/settings/TextWords.h"

#include "support/AsciiText.h"
#include "tools/common/Errors.h"
#include "tools/common/Text.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace eq {
namespace {

constexpr std::string_view Digits = "0123456789";

/// Returns the length of the number at the start of a word, with its exponent.
std::size_t numberLength(std::string_view word) {
    std::size_t end = std::min(word.find_first_not_of("+-.,0123456789"), word.size());
    if (end == 0 || end == word.size() || asciiUpper(word[end]) != 'E') return end;
    std::size_t digits = end + 1;
    if (digits < word.size() && (word[digits] == '+' || word[digits] == '-')) ++digits;
    if (digits == word.size() || Digits.find(word[digits]) == std::string_view::npos) return end;
    return std::min(word.find_first_not_of(Digits, digits), word.size());
}

} // namespace

TextWords::TextWords(std::string_view line) {
    forEachPiece(line, " \t", [this](std::string_view word) {
        if (!word.empty()) m_words.push_back(word);
    });
}

std::string_view TextWords::peek(std::size_t ahead) const {
    return m_next + ahead < m_words.size() ? m_words[m_next + ahead] : std::string_view();
}

std::string_view TextWords::take() {
    const std::string_view word = peek();
    if (!isAtEnd()) ++m_next;
    return word;
}

bool TextWords::takeIf(std::string_view word) {
    if (isAtEnd() || !equalNoCase(peek(), word)) return false;
    ++m_next;
    return true;
}

double TextWords::takeNumber(std::string_view what) {
    if (isAtEnd()) throw FileError("the number of " + std::string(what) + " is missing");
    const std::string_view word = peek();
    const std::size_t length = numberLength(word);
    std::string text(word.substr(0, length));
    std::ranges::replace(text, ',', '.');
    const std::optional<double> number = parseNumber(text);
    if (!number) throw FileError(std::string(what) + ": " + quoted(word) + " is not a number");
    if (length == word.size())
        ++m_next;
    else
        m_words[m_next] = word.substr(length);
    return *number;
}

double TextWords::takeFrequency(std::string_view what) {
    double frequency = takeNumber(what);
    if (takeIf("kHz") || takeIf("k"))
        frequency *= 1000.0;
    else
        takeIf("Hz");
    constexpr double Lowest = 0.001;
    constexpr double Highest = 1e6;
    if (frequency < Lowest || frequency > Highest)
        throw FileError(std::string(what) + ": " + shortest(frequency) +
                        " Hz is not a frequency from 0.001 to 1000000 Hz");
    return frequency;
}

double TextWords::takeGain(std::string_view what) {
    const double gain = takeNumber(what);
    takeIf("dB");
    constexpr double Highest = 200.0;
    if (std::fabs(gain) > Highest)
        throw FileError(std::string(what) + ": " + shortest(gain) + " dB is not a gain from -200 to 200 dB");
    return gain;
}

void TextWords::requireEnd() const {
    if (!isAtEnd()) throw FileError(quoted(peek()) + " is not understood");
}

} // namespace eq
