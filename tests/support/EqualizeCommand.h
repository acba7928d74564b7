#pragma once

// Runs `equalize`, and writes and reads its sound files.

#include "tests/support/CommandTest.h"

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <sndfile.hh>

namespace eq {

inline constexpr int Float = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
inline constexpr int Pcm16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

/// The sound of a file, as interleaved samples.
struct Sound {
    int rate;
    int channels;
    std::vector<float> samples;
    int format = Float;
};

inline Sound noise(int rate, int channels, std::size_t frames, int format = Float) {
    Sound sound{rate, channels, std::vector<float>(frames * static_cast<std::size_t>(channels)), format};
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> distribution(-0.9F, 0.9F);
    for (float& sample : sound.samples) sample = distribution(generator);
    return sound;
}

inline Sound impulse(int rate, std::size_t frames, float height = 1.0F) {
    Sound sound{rate, 1, std::vector<float>(frames)};
    sound.samples[0] = height;
    return sound;
}

/// Returns the response in dB at a frequency in Hz. The sound is the impulse response.
inline double decibelsAt(const Sound& sound, double frequency) {
    const std::complex<double> step = std::polar(1.0, -2.0 * std::numbers::pi * frequency / sound.rate);
    std::complex<double> sum = 0.0;
    for (auto sample = sound.samples.rbegin(); sample != sound.samples.rend(); ++sample)
        sum = sum * step + static_cast<double>(*sample);
    return 20.0 * std::log10(std::abs(sum));
}

class EqualizeCommand : public CommandTest {
protected:
    EqualizeCommand() : CommandTest(EQ_EQUALIZE_PATH) {}

    /// Runs `equalize` from "in.wav" to "out.wav" and expects success. Returns the command's output.
    std::string equalize(const std::string& options, const std::string& before = "") const {
        return expectRun("in.wav out.wav " + options, 0, {}, before);
    }
    [[nodiscard]] std::vector<float> equalized(const std::string& options) const {
        equalize(options);
        return readSound("out.wav").samples;
    }
    /// Expects that a run fails with this exit code and this message, and changes no file.
    void expectFailure(int exitCode, const std::string& arguments, const std::string& message,
                       const std::string& before = "") const {
        const auto filesBefore = files();
        const std::string said = expectRun(arguments, exitCode, {message}, before);
        EXPECT_TRUE(said.starts_with("equalize: ")) << said;
        EXPECT_TRUE(files() == filesBefore) << arguments << ": files have changed";
    }

    /// Runs commands of bash in the folder, and expects that they succeed. Returns their output. The shell variable EQ
    /// contains the path of `equalize`.
    std::string shell(const std::string& commands) const {
        const std::string bash = "EQ='" + program + "' exec bash -o pipefail /dev/fd/3 < /dev/null 3<< 'END'\n";
        return expectRun("", 0, {}, bash + commands + "\nEND\n");
    }
    void writeSound(const std::string& name, const Sound& sound) const {
        SndfileHandle file(path(name), SFM_WRITE, sound.format, sound.channels, sound.rate);
        file.setString(SF_STR_TITLE, "A title");
        file.write(sound.samples.data(), static_cast<sf_count_t>(sound.samples.size()));
    }
    [[nodiscard]] Sound readSound(const std::string& name) const {
        SndfileHandle file(path(name));
        EXPECT_STREQ(file.getString(SF_STR_TITLE), "A title") << name;
        return {file.samplerate(), file.channels(), samplesOf(name), file.format()};
    }
    [[nodiscard]] std::vector<float> samplesOf(const std::string& name) const {
        SndfileHandle file(path(name));
        if (file.error() != 0) throw std::runtime_error(name + ": " + file.strError());
        const sf_count_t size = file.frames() * file.channels();
        std::vector<float> samples(static_cast<std::size_t>(size));
        EXPECT_EQ(file.read(samples.data(), size), size) << name;
        return samples;
    }
};

} // namespace eq
