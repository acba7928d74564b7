#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace eq {

/// Builds a compiled template field by field.
class TemplateBuilder {
public:
    TemplateBuilder& word(unsigned value) {
        m_bytes.push_back(static_cast<char>(value & 0xFFU));
        m_bytes.push_back(static_cast<char>(value >> 8U & 0xFFU));
        return *this;
    }
    TemplateBuilder& words(std::initializer_list<unsigned> values) {
        for (const unsigned value : values) word(value);
        return *this;
    }
    TemplateBuilder& doubleWord(std::uint32_t value) { return word(value & 0xFFFFU).word(value >> 16U); }
    TemplateBuilder& units(std::u16string_view value) {
        for (const char16_t unit : value) word(unit);
        return *this;
    }
    /// Adds a text and its terminator.
    TemplateBuilder& text(std::u16string_view value) { return units(value).word(0); }
    TemplateBuilder& bytes(std::string_view value) {
        m_bytes += value;
        return *this;
    }
    TemplateBuilder& align() {
        while (m_bytes.size() % 4 != 0) m_bytes.push_back('\0');
        return *this;
    }

    [[nodiscard]] const std::string& get() const { return m_bytes; }

private:
    std::string m_bytes;
};

} // namespace eq
