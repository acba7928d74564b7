#pragma once

// Runs a command in its own folder, whose name contains blanks.

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#ifndef _WIN32
#include <sys/wait.h>
#endif

namespace eq {

struct Outcome {
    int exitCode; ///< 128 plus the number of the signal if a signal ended the command, as in a shell
    std::string said;
};

class CommandTest : public ::testing::Test {
protected:
    explicit CommandTest(const char* path) : program(path) {}

    [[nodiscard]] std::string path(const std::string& name) const { return folder.path(name); }
    [[nodiscard]] std::string contents(const std::string& name) const {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// Returns the names in the folder with the contents of the files, so that a test can see the effect of a run.
    [[nodiscard]] std::map<std::string, std::string> files() const {
        std::map<std::string, std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            const std::string name = entry.path().filename().string();
            found[name] = entry.is_regular_file() ? contents(name) : "";
        }
        return found;
    }

    /// Runs the command in a shell. `before` is shell text directly before the command, and `arguments` is shell text
    /// after the command. On Windows, `before` must be empty.
    [[nodiscard]] Outcome run(const std::string& arguments, const std::string& before = "") const {
#ifdef _WIN32
        const std::string absolute = std::filesystem::absolute(program).make_preferred().string();
        const std::string line =
            "cd /d \"" + folder.path().string() + "\" && \"" + absolute + "\" " + arguments + " 2>&1";
        const std::filesystem::path wideLine = std::u8string(line.begin(), line.end());
        std::FILE* const output = before.empty() ? _wpopen(wideLine.c_str(), L"r") : nullptr;
        if (output == nullptr) return {-1, "no shell"};
#else
        const std::string line =
            "exec 2>&1; cd '" + folder.path().string() + "'; " + before + " exec '" + program + "' " + arguments;
        std::FILE* const output = popen(line.c_str(), "r");
#endif
        std::string said;
        for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) said += static_cast<char>(c);
#ifdef _WIN32
        return {_pclose(output), said};
#else
        const int status = pclose(output);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), said};
#endif
    }

    /// Runs the command. Expects this exit code, and expects that the output contains the texts in this order. Returns
    /// the output.
    std::string expectRun(const std::string& arguments, int exitCode, const std::vector<std::string>& texts = {},
                          const std::string& before = "") const {
        const Outcome outcome = run(arguments, before);
        EXPECT_EQ(outcome.exitCode, exitCode) << before << arguments << "\n" << outcome.said;
        expectInOrder(outcome.said, texts);
        return outcome.said;
    }
    static void expectInOrder(const std::string& output, const std::vector<std::string>& texts) {
        std::size_t at = 0;
        for (const std::string& text : texts) {
            const std::size_t found = output.find(text, at);
            ASSERT_NE(found, std::string::npos) << "no '" << text << "' in, or not in this order:\n" << output;
            at = found + text.size();
        }
    }

    std::string program;
    const TemporaryFolder folder;
};

} // namespace eq
