// The rewriters on what resource compilers really write: the resources of the system's modules, in all their languages.

#include "tests/support/Rewritten.h"
#include "wedge/DialogReader.h"
#include "wedge/MenuReader.h"
#include "wedge/ResourceRewriters.h"
#include "wedge/SystemFunctions.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

/// Tries the resource in one of its languages. That nothing is changed proves that the rewriter understood it.
BOOL CALLBACK tryResource(HMODULE module, LPCWSTR type, LPCWSTR name, WORD language, LONG_PTR rewriter) {
    const HRSRC found = systems::FindResourceExW(module, type, name, language);
    const auto* const bytes = static_cast<const char*>(LockResource(systems::LoadResource(module, found)));
    std::string resource(bytes, SizeofResource(module, found));
    // Another font than the one that is replaced.
    const auto face = resource.find(TemplateBuilder().text(u"MS Shell Dlg").get());
    if (face != resource.npos) resource[face] = 'X';

    const auto rewrite = reinterpret_cast<SizedRewriter>(rewriter);
    EXPECT_EQ(rewriteWith(rewrite, resource).status, PrepUnchanged) << language;
    // It is read to its end, which compilers fill up to a multiple of four bytes.
    EXPECT_EQ(rewriteWith(rewrite, {resource.data(), resource.size() - 4}).status, PrepFailed) << language;
    return TRUE;
}

BOOL CALLBACK tryLanguages(HMODULE module, LPCWSTR type, LPWSTR name, LONG_PTR rewriter) {
    return EnumResourceLanguagesW(module, type, name, tryResource, rewriter);
}

} // namespace

TEST(RealTemplates, StayAsTheyAre) {
    const std::pair<unsigned, SizedRewriter> rewriters[] = {{4, PrepareMenuResource},
                                                            {5, PrepareDialogResource},
                                                            {6, PrepareStringResource},
                                                            {9, PrepareAcceleratorResource}};
    for (const char* name : {"shell32.dll", "notepad.exe", "regedit.exe"}) {
        const HMODULE module = LoadLibraryExA(name, nullptr, LOAD_LIBRARY_AS_DATAFILE);
        ASSERT_NE(module, nullptr) << name;
        for (const auto& [type, rewriter] : rewriters) {
            SCOPED_TRACE(name + std::string(", type ") + std::to_string(type));
            const auto parameter = reinterpret_cast<LONG_PTR>(rewriter);
            EXPECT_TRUE(EnumResourceNamesW(module, MAKEINTRESOURCEW(type), tryLanguages, parameter));
        }
        FreeLibrary(module);
    }
}
