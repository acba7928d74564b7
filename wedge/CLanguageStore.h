#pragma once

#include "platform/win32.h"
#include "wedge/CLanguageStoreLoader.h"

#include <string>
#include <string_view>

namespace eq {

/// Holds translated texts by context and key. A store is filled once and never changes afterwards, so any number of
/// threads may look up texts without a lock.
class CLanguageStore {
public:
    /// Returns the store of the process. The first call fills the store from the language files beside `module` (null:
    /// the library's own module). Later calls ignore `module`. Throws the exceptions of `CLanguageFile` and
    /// `CLanguageStoreLoader` if a file is broken; the next call then reads the files again.
    static CLanguageStore& Instance(HMODULE module = nullptr);

    /// Shows an error to the user.
    using MessageFunction = void (*)(const wchar_t* text, const wchar_t* caption);

    /// Sets the function that shows the only message of the store: that no language files were found. Without a
    /// function, no message is shown. The wedge sets the function while the library loads. The Linux library sets it
    /// before the store is filled.
    static void ShowMessagesWith(MessageFunction function) noexcept;

    /// Creates an empty store, in which every look-up fails.
    CLanguageStore() = default;

    /// Creates a store that is independent of `Instance`, from the language files of the module at `modulePath`.
    /// `language` is the override; 0 means none. Throws the exceptions of `Instance`.
    CLanguageStore(const std::string& modulePath, WORD language);
    CLanguageStore(const CLanguageStore&) = delete;
    CLanguageStore& operator=(const CLanguageStore&) = delete;
    virtual ~CLanguageStore() = default;

    /// Returns the text of a key from the module's context, or else from the context "Shared"; null if both lack the
    /// key. The braces around the key are optional. The pointer is valid for the life of the store. Allocates nothing.
    [[nodiscard]] const wchar_t* Find(const char* key) const noexcept;

    /// Returns `text` with each {KEY} replaced by the key's text. A {KEY} whose text is missing or empty stays.
    /// `changed` receives whether a {KEY} was replaced; it may be null.
    [[nodiscard]] std::string ExpandKeys(const std::string& text, bool* changed) const;
    [[nodiscard]] std::wstring ExpandKeys(const std::wstring& text, bool* changed) const;

    /// Returns the id of the first language for which a file was found; 0 if there is none.
    [[nodiscard]] WORD language() const noexcept { return m_language; }
    /// Returns the code page that applied at the end of the last file; 0 for the system's ANSI code page.
    [[nodiscard]] UINT codepage() const noexcept { return m_codepage; }

private:
    friend struct CLanguageStoreTestAccess;
    struct Singleton;

    static Singleton& singleton();
    static void fillInstance(Singleton& the, HMODULE module);
    /// Destroys the store of the process; the next `Instance` fills a new one. May be called only by the thread that
    /// fills the store, or while no thread uses the store.
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

// The following functions use `CLanguageStore::Instance()`. The first call fills the store, and throws the exceptions
// of `Instance` if a file is broken.

WORD GetLanguageId();
[[nodiscard]] UINT GetLanguageCodepage();
/// Returns the text of `key` in the store's code page; empty if the store lacks the key. Throws convert_string_failed.
[[nodiscard]] std::string GetLanguageString(const std::string& key);
[[nodiscard]] std::string ExpandLanguageKeys(const std::string& text, bool* changed);
[[nodiscard]] std::wstring ExpandLanguageKeys(const std::wstring& text, bool* changed);

} // namespace eq
