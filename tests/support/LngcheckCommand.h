#pragma once

// Runs `lngcheck`, the checker of language files.

#include "tests/support/CommandTest.h"

namespace eq {

class LngcheckCommand : public CommandTest {
protected:
    LngcheckCommand() : CommandTest(EQ_LNGCHECK_PATH) {}

    /// Returns the contents of a file of the project.
    [[nodiscard]] std::string given(const std::string& path) const {
        return contents(std::filesystem::absolute(path).string());
    }
    /// Returns the contents of a delivered language file.
    [[nodiscard]] std::string shipped(const std::string& id) const {
        return given(EQ_LANGUAGES_DIR "/Equalizer" + id + ".lng");
    }

    const std::string clean = given(EQ_CLEAN_LANGUAGE_FILE); ///< a file without faults
};

} // namespace eq
