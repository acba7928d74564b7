#pragma once

#include "tests/support/HostedEffect.h"
#include "tests/support/LanguageSettings.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/TemporaryFolder.h"

namespace eq {

/// A loaded copy of the library, and the host of its effects. The copy is in its own folder, with a language file for
/// the override language. The file contains only the unit for decibels. The system's language is English.
struct LibraryCopy {
    explicit LibraryCopy(const std::string& unit = "dB", int language = 1033)
        : settings(static_cast<DWORD>(language), 1033) {
        const std::filesystem::path built = EQ_LIBRARY_PATH;
        std::filesystem::copy(built, folder.path());
        write(language, "IDS_DB = " + unit);
        library = std::make_unique<LoadedLibrary>(folder.path(built.filename().string()));
        main = library->find<EffectMainProc>("main");
    }
    void write(int language, const std::string& text) const {
        folder.write("Texts" + std::to_string(language) + ".lng", "[Parametric Equalizer]\n" + text + "\n");
    }
    [[nodiscard]] AEffect* make() const { return main(ScriptedHost::callback); }

    const ScriptedHost host{2400};
    const TemporaryFolder folder;
    const LanguageSettings settings;
    std::unique_ptr<LoadedLibrary> library;
    EffectMainProc main;
};

} // namespace eq
