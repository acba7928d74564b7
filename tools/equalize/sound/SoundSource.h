#pragma once

#include <string>

#include <sndfile.h>

namespace eq {

/// The decoder of one audio file. It reads the sound from its beginning to its end, as interleaved floats. The channels
/// are in the file's order.
class SoundSource {
public:
    SoundSource() = default;
    virtual ~SoundSource() = default;
    SoundSource(const SoundSource&) = delete;
    SoundSource& operator=(const SoundSource&) = delete;

    /// Returns the rate, channels and format. `frames` is UnknownLength if only the end of the file shows the length.
    [[nodiscard]] const SF_INFO& info() const { return m_info; }

    /// Reads frames and returns their number, which is smaller than `frames` only at the end of the sound or after an
    /// error.
    [[nodiscard]] virtual sf_count_t read(float* interleaved, sf_count_t frames) = 0;

    /// Returns the decoder's text for the last error, or an empty text.
    [[nodiscard]] virtual std::string error() const = 0;

    static constexpr sf_count_t UnknownLength = SF_COUNT_MAX;

protected:
    SF_INFO m_info = {};
};

} // namespace eq
