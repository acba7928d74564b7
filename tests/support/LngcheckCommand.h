#pragma once

// Runs `lngcheck`, the checker of language files.

#include "tests/support/CommandTest.h"

#include <filesystem>
#include <string>
#include <vector>

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

    /// Runs `lngcheck`. Expects this exit code, and expects that the output contains the texts in this order.
    void expectRun(const std::string& arguments, int exitCode, const std::vector<std::string>& texts) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, exitCode) << arguments << "\n" << outcome.said;
        expectInOrder(outcome.said, texts);
    }
    static void expectInOrder(const std::string& output, const std::vector<std::string>& texts) {
        std::size_t at = 0;
        for (const std::string& text : texts) {
            const std::size_t found = output.find(text, at);
            ASSERT_NE(found, std::string::npos) << "no '" << text << "' in, or not in this order:\n" << output;
            at = found + text.size();
        }
    }

    const std::string clean = given(EQ_CLEAN_LANGUAGE_FILE); ///< a file without faults
};

} // namespace eq
