#include "wedge/CLanguageStore.h"

#include "platform/CriticalSection.h"
#include "platform/Paths.h"
#include "support/LanguageText.h"
#include "support/TextConversion.h"
#include "wedge/LanguageSelection.h"
#include "wedge/OwnModule.h"
#include "wedge/string_ext.h"

#include <atomic>
#include <optional>

namespace eq {

namespace {

constexpr std::string_view SharedContext = "Shared";

constinit std::atomic<CLanguageStore::MessageFunction> showMessage = nullptr;

void showNoFilesFound() {
    if (const auto show = showMessage.load()) show(L"LNG0001:  No language files were found.", L"Error");
}

/// Returns the path of the module, with long names in place of short 8.3 names. Returns an empty text if a system
/// function fails or the path is too long for a buffer of MAX_PATH bytes.
std::string longPathOf(HMODULE module) {
    char path[MAX_PATH] = {};
    const DWORD size = GetModuleFileNameA(module, path, MAX_PATH);
    if (size == 0 || size >= MAX_PATH) return {};

    char longPath[MAX_PATH] = {};
    const DWORD longSize = GetLongPathNameA(path, longPath, MAX_PATH);
    if (longSize == 0 || longSize >= MAX_PATH) return {};
    return longPath;
}

/// Returns an empty text if the conversion fails.
std::string toAnsi(const wchar_t* text) {
    return toNarrow(text, CP_ACP).text;
}

// The operations of `expandKeys` that differ between 8-bit and 16-bit texts.
const std::string& keyFrom(const std::string& key) {
    return key;
}
std::string keyFrom(const std::wstring& key) {
    return toAnsi(key.c_str());
}
void appendTo(std::string& out, const wchar_t* text) {
    out += toAnsi(text);
}
void appendTo(std::wstring& out, const wchar_t* text) {
    out += text;
}

/// Replaces the {KEY} references of `text` in one pass from left to right. Inserted texts are not searched again.
template <class Text>
Text expandKeys(const CLanguageStore& store, const Text& text, bool* changed) {
    using Character = typename Text::value_type;
    constexpr auto Open = static_cast<Character>('{');
    constexpr auto Close = static_cast<Character>('}');

    const Text source(text.c_str()); // NOLINT(readability-redundant-string-cstr): ends at the first zero
    Text expanded;
    bool hasChanged = false;
    std::size_t copied = 0;
    auto open = source.find(Open);
    while (open != Text::npos) {
        const auto close = source.find(Close, open + 2); // a key has at least one character
        if (close == Text::npos) break;

        const wchar_t* found = store.Find(keyFrom(source.substr(open + 1, close - open - 1)).c_str());
        if (found && *found != L'\0') {
            expanded.append(source, copied, open - copied);
            appendTo(expanded, found);
            copied = close + 1;
            hasChanged = true;
        }
        open = source.find(Open, close);
    }
    expanded.append(source, copied);
    if (changed) *changed = hasChanged;
    return expanded;
}

} // namespace

/// The storage of the process's store. The storage is destroyed when the process ends or the library is unloaded.
struct CLanguageStore::Singleton {
    CriticalSection lock;
    /// Guarded by `lock`. The store exists while it is being filled, because the function that shows the store's
    /// message calls `Instance` again. After the fill the store never changes.
    std::optional<CLanguageStore> store;
};

CLanguageStore::Singleton& CLanguageStore::singleton() {
    static Singleton the;
    return the;
}

CLanguageStore& CLanguageStore::Instance(HMODULE module) {
    Singleton& the = singleton();
    const CriticalSectionEntry entry(the.lock);
    if (!the.store) fillInstance(the, module ? module : ownModule());
    return *the.store;
}

void CLanguageStore::fillInstance(Singleton& the, HMODULE module) {
    try {
        the.store.emplace().load(longPathOf(module), g_language_override);
    } catch (...) {
        dropInstance();
        throw;
    }
}

void CLanguageStore::dropInstance() noexcept {
    singleton().store.reset();
}

CLanguageStore::CLanguageStore(const std::string& modulePath, WORD language) {
    load(modulePath, language);
}

void CLanguageStore::load(const std::string& modulePath, WORD language) {
    const auto dot = modulePath.rfind('.');
    if (dot == modulePath.npos) return;
    const std::string base = modulePath.substr(0, dot);
    const auto cut = base.rfind(pathSeparator);
    if (cut == base.npos) return;

    m_module = base.substr(cut + 1);
    const std::string folder = base.substr(0, cut);
    const bool foundFirst = loadTurn(folder, language);
    const bool foundSecond = loadTurn(secondFolder(folder), language);
    if (!foundFirst && !foundSecond) showNoFilesFound();
}

bool CLanguageStore::loadTurn(const std::string& folder, WORD language) {
    bool found = false;
    // The files of an id that is 0 or repeated are read too, because the last file that is read determines the store's
    // code page.
    for (const WORD id : languageOrder(language, ReadUiLanguage(uilanguage_default))) {
        if (LoadLanguageFiles(folder, id) == 0) continue;
        found = true;
        if (m_language == 0) m_language = id;
    }
    return found;
}

DWORD CLanguageStore::LoadLanguageFiles(const std::string& folder, WORD language) {
    const std::vector<std::string> paths = languageFilesOf(folder, language);
    const UINT initialCodepage = DefaultCodepage(m_language);
    for (const std::string& path : paths) {
        CLanguageFile file(path.c_str());
        CLanguageStoreLoader loader(initialCodepage, m_contexts);
        file.ScanFile(loader);
        m_codepage = loader.codepage();
    }
    return static_cast<DWORD>(paths.size());
}

const wchar_t* CLanguageStore::Find(const char* key) const noexcept {
    if (!key) return nullptr;

    std::string_view name = trim(key);
    if (name.starts_with('{')) name.remove_prefix(1);
    if (name.ends_with('}')) name.remove_suffix(1);
    const std::wstring* text = findIn(m_module, name);
    if (!text) text = findIn(SharedContext, name);
    return text ? text->c_str() : nullptr;
}

const std::wstring* CLanguageStore::findIn(std::string_view context, std::string_view key) const noexcept {
    const auto table = m_contexts.find(asNocase(context));
    if (table == m_contexts.end()) return nullptr;
    const auto entry = table->second.find(asNocase(key));
    return entry == table->second.end() ? nullptr : &entry->second;
}

std::string CLanguageStore::ExpandKeys(const std::string& text, bool* changed) const {
    return expandKeys(*this, text, changed);
}

std::wstring CLanguageStore::ExpandKeys(const std::wstring& text, bool* changed) const {
    return expandKeys(*this, text, changed);
}

void CLanguageStore::ShowMessagesWith(MessageFunction function) noexcept {
    showMessage = function;
}

WORD GetLanguageId() {
    return CLanguageStore::Instance().language();
}

UINT GetLanguageCodepage() {
    return CLanguageStore::Instance().codepage();
}

std::string GetLanguageString(const std::string& key) {
    const CLanguageStore& store = CLanguageStore::Instance();
    const wchar_t* text = store.Find(key.c_str());
    return text ? convert_string(text, store.codepage()) : std::string();
}

std::string ExpandLanguageKeys(const std::string& text, bool* changed) {
    return CLanguageStore::Instance().ExpandKeys(text, changed);
}

std::wstring ExpandLanguageKeys(const std::wstring& text, bool* changed) {
    return CLanguageStore::Instance().ExpandKeys(text, changed);
}

LanguageText::LanguageText(const char* key, HMODULE module) {
    if (const wchar_t* text = CLanguageStore::Instance(module).Find(key)) {
        assign(text);
    } else {
        assign(key);
    }
}

} // namespace eq
