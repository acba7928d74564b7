#pragma once

// Runs a command as a user does, in a folder of its own with blanks in its name.

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

struct Outcome {
    int exitCode; ///< -1 if a signal ended the command
    int signal;
    std::string out;
    std::string err;
    long mostKilobytes; ///< of memory, at its peak
};

class CommandTest : public ::testing::Test {
protected:
    explicit CommandTest(const char* path) : program(path) {}

    [[nodiscard]] std::string path(const std::string& name) const { return folder.path(name); }
    [[nodiscard]] std::string contents(const std::string& name) const {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// The names in the folder: what a run leaves behind.
    [[nodiscard]] std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            found.insert(entry.path().filename().string());
        return found;
    }

    /// Starts the command, with the arguments as the shell takes them, and behind what the shell does before.
    [[nodiscard]] pid_t start(const std::string& arguments, const std::string& before = "") const {
        const std::string line = "cd '" + folder.path().string() + "'; exec > '" + streams.path("out") + "' 2> '" +
                                 streams.path("err") + "'; " + before + " exec '" + program + "' " + arguments;
        const pid_t child = fork();
        if (child != 0) return child;
        execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        _exit(127);
    }
    [[nodiscard]] Outcome finish(pid_t child) const {
        int status = 0;
        rusage usage = {};
        wait4(child, &status, 0, &usage);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, WIFSIGNALED(status) ? WTERMSIG(status) : 0,
                contents(streams.path("out")), contents(streams.path("err")), usage.ru_maxrss};
    }
    [[nodiscard]] Outcome run(const std::string& arguments, const std::string& before = "") const {
        return finish(start(arguments, before));
    }

    std::string program;
    const TemporaryFolder folder;

private:
    const TemporaryFolder streams;
};
