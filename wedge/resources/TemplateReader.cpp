#include "wedge/resources/TemplateReader.h"

#include "wedge/CLanguageStore.h"
#include "wedge/resources/prep_exception.h"

#include <cstdint>
#include <string>

namespace eq {

void TemplateReader::Read(const void* input_address, std::size_t input_size) {
    if (input_address == nullptr) throw prep_exception("NULL == input_address");
    BinaryReader original(input_address, input_size);
    m_input = original;
    m_output = {};
    m_changed = false;
    m_error_detected = true;
    readTemplate();
    m_error_detected = !m_changed && original.readBytes(m_output.offset()) != m_output.written();
}

void TemplateReader::checkRange() const {
    if (m_input.offset() >= TemplateRange) fail();
}

void TemplateReader::fail() {
    throw prep_exception("m_error_detected");
}

void TemplateReader::ReadString(bool translate) {
    std::wstring text = m_input.readText();
    if (translate && !text.empty()) {
        bool changed = false;
        text = ExpandLanguageKeys(text, &changed);
        m_changed = m_changed || changed;
    }
    m_output.writeText(text);
    m_output.write(std::uint16_t{0});
}

void TemplateReader::align() {
    m_input.align(4);
    m_output.align(4);
}

} // namespace eq
