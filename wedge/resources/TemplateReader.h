#pragma once

#include "support/BinaryReader.h"
#include "support/BinaryWriter.h"

#include <concepts>
#include <cstddef>
#include <string_view>

namespace eq {

/// The range of a template, in bytes. Every element begins within the range, and a rewriter that receives no size reads
/// no bytes beyond the range.
inline constexpr std::size_t TemplateRange = 0x10000;

/// Copies a compiled template element by element, and rewrites its texts. The copy is the new template.
class TemplateReader {
public:
    TemplateReader() = default;
    TemplateReader(const TemplateReader&) = delete;
    TemplateReader& operator=(const TemplateReader&) = delete;
    virtual ~TemplateReader() = default;

    /// Reads a whole template. Throws prep_exception if the template is invalid, or EndOfData if it needs more than
    /// `input_size` bytes.
    void Read(const void* input_address, std::size_t input_size);

    /// Returns whether the output must not be used. If nothing was changed, the output must equal the input: this
    /// equality proves that the template was understood.
    [[nodiscard]] virtual bool IsBad() const { return m_error_detected; }

    /// Returns the new template.
    [[nodiscard]] std::string_view GetOutput() const noexcept { return m_output.written(); }
    /// Returns whether a text or the font was changed.
    [[nodiscard]] bool IsChanged() const noexcept { return m_changed; }

protected:
    /// Fails if the next element begins TemplateRange bytes or more after the start.
    void checkRange() const;
    [[noreturn]] static void fail();

    /// Copies a number and returns it.
    template <std::unsigned_integral Number>
    Number copy() {
        const auto number = m_input.read<Number>();
        m_output.write(number);
        return number;
    }
    void copyBytes(std::size_t count) { m_output.writeBytes(m_input.readBytes(count)); }
    /// Copies a text and its terminator. Expands the keys of the text if `translate` is true.
    void ReadString(bool translate);
    /// Aligns input and output to multiples of four bytes, each from its own start.
    void align();

    BinaryReader m_input{nullptr, 0};
    BinaryWriter m_output;
    bool m_changed = false;

private:
    virtual void readTemplate() = 0;

    bool m_error_detected = true;
};

} // namespace eq
