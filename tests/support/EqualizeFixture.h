#pragma once

// Runs the command `equalize` as a user does, in a folder of its own with blanks in its name.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sndfile.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// Sound as it is in a file: interleaved samples.
struct Sound {
    int rate = 44100;
    int channels = 1;
    std::vector<float> samples;

    [[nodiscard]] std::size_t frames() const { return samples.size() / static_cast<std::size_t>(channels); }
};

struct Outcome {
    int exitCode; ///< -1 if a signal ended the command
    int signal;
    std::string out;
    std::string err;
    long mostKilobytes; ///< of memory, at its peak
};

class EqualizeCommand : public ::testing::Test {
protected:
    using Arguments = std::vector<std::string>;

    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "equalize test XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        m_base = pattern;
        std::filesystem::create_directory(m_base / "work");
    }
    void TearDown() override { std::filesystem::remove_all(m_base); }

    [[nodiscard]] std::string path(const std::string& name) const { return (m_base / "work" / name).string(); }

    /// The names in the folder, sorted: what a run leaves behind.
    [[nodiscard]] std::vector<std::string> folder() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_base / "work"))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    /// Starts the command; `prepare` runs in the new process.
    [[nodiscard]] pid_t start(const Arguments& arguments, const std::function<void()>& prepare = {}) const {
        const pid_t child = fork();
        if (child != 0) return child;
        redirect(STDOUT_FILENO, "out");
        redirect(STDERR_FILENO, "err");
        if (prepare) prepare();
        std::string program = m_program;
        std::vector<char*> words = {program.data()};
        Arguments copies = arguments;
        for (std::string& argument : copies) words.push_back(argument.data());
        words.push_back(nullptr);
        execv(program.c_str(), words.data());
        _exit(127);
    }

    [[nodiscard]] Outcome finish(pid_t child) const {
        int status = 0;
        rusage usage = {};
        wait4(child, &status, 0, &usage);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, WIFSIGNALED(status) ? WTERMSIG(status) : 0,
                contents((m_base / "out").string()), contents((m_base / "err").string()), usage.ru_maxrss};
    }

    [[nodiscard]] Outcome run(const Arguments& arguments, const std::function<void()>& prepare = {}) const {
        return finish(start(arguments, prepare));
    }

    /// What becomes of "in.wav" in a run with these options, which succeeds.
    [[nodiscard]] std::vector<float> equalized(Arguments options) const {
        options.insert(options.end(), {path("in.wav"), path("out.wav")});
        const Outcome outcome = run(options);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return readSound(path("out.wav")).samples;
    }

    static void expectFailure(const Outcome& outcome, int exitCode, const std::string& message) {
        EXPECT_EQ(outcome.exitCode, exitCode);
        EXPECT_EQ(outcome.err.rfind("equalize: ", 0), 0U) << outcome.err;
        EXPECT_NE(outcome.err.find(message), std::string::npos) << outcome.err;
    }

    /// Has the command run from another place.
    void moveProgramTo(const std::filesystem::path& place) {
        std::filesystem::copy_file(EQ_EQUALIZE_PATH, place);
        m_program = place;
    }

    static std::string contents(const std::string& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static void writeText(const std::string& file, const std::string& text) {
        std::ofstream(file, std::ios::binary) << text;
    }

    static void writeSound(const std::string& file, const Sound& sound, int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT,
                           const char* title = nullptr) {
        SF_INFO info = {};
        info.samplerate = sound.rate;
        info.channels = sound.channels;
        info.format = format;
        SNDFILE* const handle = sf_open(file.c_str(), SFM_WRITE, &info);
        ASSERT_NE(handle, nullptr) << sf_strerror(nullptr);
        if (title != nullptr) sf_set_string(handle, SF_STR_TITLE, title);
        const auto count = static_cast<sf_count_t>(sound.samples.size());
        EXPECT_EQ(sf_write_float(handle, sound.samples.data(), count), count);
        sf_close(handle);
    }

    struct SoundFile : Sound {
        int format = 0;
        std::string title;
    };

    static SoundFile readSound(const std::string& file) {
        SoundFile result;
        SF_INFO info = {};
        SNDFILE* const handle = sf_open(file.c_str(), SFM_READ, &info);
        if (handle == nullptr) {
            ADD_FAILURE() << file << ": " << sf_strerror(nullptr);
            return result;
        }
        result.rate = info.samplerate;
        result.channels = info.channels;
        result.format = info.format;
        result.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
        sf_read_float(handle, result.samples.data(), info.frames * info.channels);
        if (const char* const title = sf_get_string(handle, SF_STR_TITLE)) result.title = title;
        sf_close(handle);
        return result;
    }

private:
    void redirect(int descriptor, const char* name) const {
        dup2(open((m_base / name).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), descriptor);
    }

    std::filesystem::path m_base;
    std::filesystem::path m_program = EQ_EQUALIZE_PATH;
};
