#include "wedge/CLanguageStoreLoader.h"

#include "wedge/LanguageTag.h"
#include "wedge/string_ext.h"

#include <utility>

namespace eq {

void CLanguageStoreLoader::OnTag(const std::string& tag, const std::string& value) {
    std::string error;
    const LanguageTagPtr record = ParseLanguageTag(tag, error);
    if (!record) return;

    if (const AcceleratorDefinition* accelerator = asAccelerator(*record)) {
        OnString(AcceleratorKeyName(*accelerator), value);
    } else if (const CodepageDefinition* definition = asCodepage(*record)) {
        m_codepage = static_cast<UINT>(definition->codepage);
    }
}

void CLanguageStoreLoader::OnContext(const std::string& name) {
    m_context = trim(name);
    m_contexts->try_emplace(nocase_string(asNocase(m_context)));
}

void CLanguageStoreLoader::OnString(const std::string& key, const std::string& value) {
    const auto context = m_contexts->find(asNocase(m_context));
    if (context == m_contexts->end()) return;

    std::wstring text = convert_wstring(decode_value(value), m_codepage);
    context->second.try_emplace(nocase_string(asNocase(key)), std::move(text));
}

void CLanguageStoreLoader::OnContextEnd() {
    m_context.clear();
}

} // namespace eq
