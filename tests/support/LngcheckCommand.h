#pragma once

// Runs the checker of language files as a translator does.

#include "tests/support/CommandTest.h"

#include <filesystem>
#include <string>
#include <vector>

namespace eq {

class LngcheckCommand : public CommandTest {
protected:
    LngcheckCommand() : CommandTest(EQ_LNGCHECK_PATH) {}

    /// A file of the project.
    [[nodiscard]] std::string given(const std::string& path) const {
        return contents(std::filesystem::absolute(path).string());
    }
    /// A language file as it is delivered.
    [[nodiscard]] std::string shipped(const std::string& id) const {
        return given(EQ_LANGUAGES_DIR "/Equalizer" + id + ".lng");
    }

    /// Expects the texts in what a run says, in this order.
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
