#pragma once

#include "platform/win32.h"
#include "wedge/CLanguageStoreLoader.h"

#include <string>
#include <string_view>

namespace eq {

/// All translated text of the process, by context and key. Filled by its constructor and never changed after it, so
/// that any number of threads may look up without a lock.
class CLanguageStore {
public:
    /// The process's store. The first call fills it from the language files beside `module` (null: the library's own)
    /// and throws what a broken file throws; the next call then starts over. A later call's `module` is ignored.
    static CLanguageStore& Instance(HMODULE module = nullptr);

    /// Shows an error to the user.
    using MessageFunction = void (*)(const wchar_t* text, const wchar_t* caption);

    /// Sets the function that shows the store's one message: that there are no language files. The wedge sets it while
    /// the library loads, the Linux library before the store is built. Without it there is no message.
    static void ShowMessagesWith(MessageFunction function) noexcept;

    /// An empty store: every look-up misses.
    CLanguageStore() = default;

    /// Makes a separate store from the language files of the module at `modulePath`.
    /// `language` is the override.
    CLanguageStore(const std::string& modulePath, WORD language);
    CLanguageStore(const CLanguageStore&) = delete;
    CLanguageStore& operator=(const CLanguageStore&) = delete;
    virtual ~CLanguageStore() = default;

    /// The text of a key, with or without its braces, from the module's context or else from "Shared"; null on a miss.
    /// The pointer is valid for the life of the store. Allocates nothing.
    [[nodiscard]] const wchar_t* Find(const char* key) const noexcept;

    /// `text` with each {KEY} replaced whose text is not empty. `changed`, unless null, tells whether there was one.
    [[nodiscard]] std::string ExpandKeys(const std::string& text, bool* changed) const;
    [[nodiscard]] std::wstring ExpandKeys(const std::wstring& text, bool* changed) const;

    /// The first language for which a file was found; 0 if none was.
    [[nodiscard]] WORD language() const noexcept { return m_language; }
    /// The code page with which the last file ended; 0 for the system's ANSI code page.
    [[nodiscard]] UINT codepage() const noexcept { return m_codepage; }

private:
    friend struct CLanguageStoreTestAccess;
    struct Singleton;

    static Singleton& singleton();
    static void fillInstance(Singleton& the, HMODULE module);
    /// Back to the state ahead of the first call. For the thread that fills, or while nobody uses the store.
    static void dropInstance() noexcept;

    void load(const std::string& modulePath, WORD language);
    bool loadTurn(const std::string& folder, WORD language);
    DWORD LoadLanguageFiles(const std::string& folder, WORD language);
    const std::wstring* findIn(std::string_view context, std::string_view key) const noexcept;

    WORD m_language = 0;
    UINT m_codepage = 0;
    LanguageContexts m_contexts;
    std::string m_module;
};

// The process's store in the forms in which the library uses it. Each may be the call that fills the store.

WORD GetLanguageId();
[[nodiscard]] UINT GetLanguageCodepage();
/// The text of `key` in the store's code page; empty on a miss. Throws convert_string_failed.
[[nodiscard]] std::string GetLanguageString(const std::string& key);
[[nodiscard]] std::string ExpandLanguageKeys(const std::string& text, bool* changed);
[[nodiscard]] std::wstring ExpandLanguageKeys(const std::wstring& text, bool* changed);

} // namespace eq
