#include "plugin/EditorChoice.h"

#include "platform/standin/StandardError.h"
#include "plugin/CurveHostEditor.h"
#include "wedge/CLanguageStore.h"

#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include <dlfcn.h>
#include <unistd.h>

namespace eq {

namespace {

/// Returns the path of the editor's module in the folder of this library, or an empty text if there is no such file.
/// The path is absolute, because the host may change its working folder.
std::string moduleFile() {
    Dl_info library{};
    if (dladdr(reinterpret_cast<const void*>(&moduleFile), &library) == 0 || !library.dli_fname) return {};
    const std::unique_ptr<char, decltype(&std::free)> file(realpath(library.dli_fname, nullptr), std::free);
    if (!file) return {};
    std::string path = file.get();
    path.replace(path.rfind('/') + 1, path.npos, CurveModuleFile);
    return access(path.c_str(), R_OK) == 0 ? path : std::string();
}

} // namespace

// Without the module the effect does not set the editor flag, and hosts show their own sliders with the effect's texts.
bool createEditor(AudioEffect& effect) {
    CLanguageStore::ShowMessagesWith(
        [](const wchar_t* text, const wchar_t* caption) { standin::writeToStandardError(caption, text); });
    static_cast<void>(CLanguageStore::Instance());
    std::string path = moduleFile();
    if (path.empty()) return true;
    // The editor registers itself with the effect, which then owns the editor.
    auto* const editor = new (std::nothrow) CurveHostEditor(&effect, std::move(path));
    return editor != nullptr; // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
}

} // namespace eq
