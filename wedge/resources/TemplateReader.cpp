#include "wedge/resources/TemplateReader.h"

#include "wedge/CLanguageStore.h"
#include "wedge/resources/prep_exception.h"

#include <algorithm>
#include <cstring>

bool TemplateReader::IsBad() const {
    if (m_input_address == nullptr || m_error_detected) return true;
    if (m_changed) return false;
    // The last unit may hold a byte more than was read.
    const auto read = static_cast<std::size_t>(m_input_pointer - m_input_address);
    const std::size_t size = std::min(m_output.size() * sizeof(char16_t), read);
    return std::memcmp(m_output.data(), m_input_address, size) != 0;
}

void TemplateReader::begin(const void* input_address, std::size_t input_size) {
    if (input_address == nullptr) throw prep_exception("NULL == input_address");
    m_output.clear();
    m_changed = false;
    m_error_detected = false;
    m_input_address = static_cast<const std::byte*>(input_address);
    m_input_pointer = m_input_address;
    m_input_size = input_size;
}

void TemplateReader::checkRange() {
    if (m_input_address == nullptr) throw prep_exception("NULL == m_input_address");
    if (m_input_pointer == nullptr) throw prep_exception("NULL == m_input_pointer");
    if (m_error_detected || m_input_pointer - m_input_address >= static_cast<std::ptrdiff_t>(TemplateRange)) fail();
}

void TemplateReader::fail() {
    m_error_detected = true;
    throw prep_exception("m_error_detected");
}

void TemplateReader::require(std::size_t offset, std::size_t count) {
    const auto position = static_cast<std::size_t>(m_input_pointer - m_input_address);
    if (position > m_input_size || m_input_size - position < offset || m_input_size - position - offset < count) fail();
}

std::uint16_t TemplateReader::peekWord(std::size_t offset) {
    require(offset, sizeof(std::uint16_t));
    const std::byte* const at = m_input_pointer + offset;
    return static_cast<std::uint16_t>(std::to_integer<unsigned>(at[0]) | std::to_integer<unsigned>(at[1]) << 8U);
}

std::uint32_t TemplateReader::peekDoubleWord(std::size_t offset) {
    const std::uint32_t low = peekWord(offset);
    return low | static_cast<std::uint32_t>(peekWord(offset + 2)) << 16U;
}

void TemplateReader::copyBytes(std::size_t count) {
    require(0, count);
    const std::size_t end = m_output.size();
    m_output.resize(end + (count + 1) / 2, u'\0');
    std::memcpy(m_output.data() + end, m_input_pointer, count);
    m_input_pointer += count;
}

std::uint16_t TemplateReader::takeWord() {
    const std::uint16_t word = peekWord();
    m_input_pointer += sizeof word;
    return word;
}

std::u16string TemplateReader::takeText() {
    std::u16string text;
    while (const std::uint16_t unit = takeWord()) text.push_back(static_cast<char16_t>(unit));
    return text;
}

std::u16string TemplateReader::expanded(const std::u16string& text) {
    bool changed = false;
    std::wstring result = ExpandLanguageKeys(wideFromUnits(text), &changed);
    m_changed = m_changed || changed;
    return unitsFromWide(result);
}

void TemplateReader::appendText(const std::u16string& text) {
    m_output += text;
    m_output.push_back(u'\0');
}

void TemplateReader::alignInput() noexcept {
    const auto offset = m_input_pointer - m_input_address;
    m_input_pointer += (4 - offset % 4) % 4;
}

void TemplateReader::alignOutput() {
    if (m_output.size() % 2 != 0) m_output.push_back(u'\0');
}

std::wstring wideFromUnits(const std::u16string& units) {
    return {units.begin(), units.end()};
}

std::u16string unitsFromWide(const std::wstring& text) {
    std::u16string units(text.size(), u'\0');
    std::transform(text.begin(), text.end(), units.begin(), [](wchar_t c) { return static_cast<char16_t>(c); });
    return units;
}
