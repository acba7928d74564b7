// The scanner, and with it the loader, on any bytes: events in order, or one of the faults that it declares.

#include "tests/fuzz/Require.h"
#include "wedge/CLanguageFile.h"
#include "wedge/CLanguageStoreLoader.h"
#include "wedge/string_ext.h"

#include <cstdint>
#include <sstream>

namespace {

/// Checks that events come in an order that the format allows, and passes them to the loader.
class OrderedHandler : public CLanguageFileHandler {
public:
    explicit OrderedHandler(CLanguageFileHandler& next) : m_next(next) {}

    void OnTag(const std::string& tag, const std::string& value) override {
        require(!m_has_ended && tag.starts_with('<') && tag.ends_with('>') && trim(value) == value);
        m_next.OnTag(tag, value);
    }
    void OnContext(const std::string& name) override {
        require(!m_has_ended && !m_in_context && trim_chars(name, "[]") == name);
        m_in_context = true;
        m_next.OnContext(name);
    }
    void OnString(const std::string& key, const std::string& value) override {
        require(!m_has_ended && trim(key) == key && trim(value) == value && key.find('=') == key.npos);
        m_next.OnString(key, value);
    }
    void OnContextEnd() override {
        require(!m_has_ended && m_in_context);
        m_in_context = false;
        m_next.OnContextEnd();
    }
    void OnFileEnd() override {
        require(!m_has_ended && !m_in_context);
        m_has_ended = true;
        m_next.OnFileEnd();
    }

    [[nodiscard]] bool hasEnded() const { return m_has_ended; }

private:
    CLanguageFileHandler& m_next;
    bool m_in_context = false;
    bool m_has_ended = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream stream(std::string(reinterpret_cast<const char*>(data), size));
    LanguageContexts contexts;
    CLanguageStoreLoader loader(1252, contexts);
    OrderedHandler handler(loader);
    try {
        scanLanguageStream(stream, "Fuzz1041.lng", handler);
        require(handler.hasEnded());
    } catch (const CLanguageFile::syntax_error&) {
        require(!handler.hasEnded());
    } catch (const convert_wstring_failed&) {
        require(!handler.hasEnded());
    }
    return 0;
}
