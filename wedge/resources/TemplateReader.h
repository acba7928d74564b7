#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// The bytes that a rewriter may read when it is given no size: no template reaches further.
inline constexpr std::size_t TemplateRange = 0x10000;

/// A cursor over a compiled template and, beside it, the template that is made of it. Words are little-endian, text
/// is 16-bit units that end in a zero.
///
/// Every read checks its end against the input's size. One that would go beyond, or an element that begins
/// TemplateRange bytes or more behind the start, throws prep_exception, and the reader is bad from then on.
class TemplateReader {
public:
    TemplateReader() = default;
    TemplateReader(const TemplateReader&) = delete;
    TemplateReader& operator=(const TemplateReader&) = delete;
    virtual ~TemplateReader() = default;

    /// Whether the result must not be used. If nothing was changed, the output must equal the input, which proves that
    /// the template was understood.
    [[nodiscard]] virtual bool IsBad() const;

    /// The new template, whose size is a multiple of two bytes.
    [[nodiscard]] const std::u16string& GetOutput() const noexcept { return m_output; }
    /// Whether a text or the font was changed.
    [[nodiscard]] bool IsChanged() const noexcept { return m_changed; }

protected:
    /// Starts over with this template. Throws for a null address.
    void begin(const void* input_address, std::size_t input_size);

    /// Stands at the start of each element.
    void checkRange();

    /// Words of the element at the cursor, which stays where it is.
    [[nodiscard]] std::uint16_t peekWord(std::size_t offset = 0);
    [[nodiscard]] std::uint32_t peekDoubleWord(std::size_t offset);

    /// Copies to the output and moves on. An odd number of bytes is filled up with a zero in the output.
    void copyBytes(std::size_t count);
    /// Takes the text at the cursor and moves past its terminator.
    [[nodiscard]] std::u16string takeText();
    [[nodiscard]] std::uint16_t takeWord();

    /// `text` with its keys expanded, noting a change.
    [[nodiscard]] std::u16string expanded(const std::u16string& text);

    void appendWord(std::uint16_t word) { m_output.push_back(static_cast<char16_t>(word)); }
    void appendText(const std::u16string& text);

    /// Both sides lie on multiples of four bytes from the template's start, each by its own length.
    void alignInput() noexcept;
    void alignOutput();

    /// An element beyond the permitted range.
    [[noreturn]] void fail();
    void noteChange() noexcept { m_changed = true; }

private:
    void require(std::size_t offset, std::size_t count);

    const std::byte* m_input_address = nullptr;
    const std::byte* m_input_pointer = nullptr;
    std::size_t m_input_size = 0;
    std::u16string m_output;
    bool m_changed = false;
    bool m_error_detected = false;
};

/// A text of 16-bit units as the language layer holds it, and back.
[[nodiscard]] std::wstring wideFromUnits(const std::u16string& units);
[[nodiscard]] std::u16string unitsFromWide(const std::wstring& text);
