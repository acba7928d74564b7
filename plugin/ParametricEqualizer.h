#pragma once

#include "engine/FourBandEqualizer.h"
#include "plugin/base/AudioEffectX.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>

namespace eq {

/// Set when the editor of any effect cannot be made, and never cleared: from then on no effect is given to a host.
inline std::atomic<bool> editorCreationFailed = false;

/// The effect: two channels through an engine each, both set by the same 13 parameters.
///
/// A parameter runs from 0 to 1, and 0 is the top of its range: +12 dB, 20000 Hz, +10 dB, a Q of 10. Values beyond
/// are kept as they are, and limited by the engine's design.
///
/// `process` and `processReplacing` belong to one thread at a time; parameters may be set and read from any thread
/// meanwhile. `suspend` and `setBlockSize` replace what the others use, so the host calls nothing else meanwhile.
class ParametricEqualizer : public AudioEffectX {
public:
    static constexpr int32 ChannelCount = 2;

    /// Throws std::bad_alloc when memory is short, and what the language store throws for a broken language file.
    explicit ParametricEqualizer(audioMasterCallback hostCallback);

    /// An index out of range stores nothing, but all else happens as for any other.
    void setParameter(int32 index, float value) override;
    float getParameter(int32 index) override;

    /// Allocates for a call that is longer than the block size. Without the memory for that it works in pieces.
    void process(float** inputs, float** outputs, int32 sampleFrames) override;
    void processReplacing(float** inputs, float** outputs, int32 sampleFrames) override;

    void getProgramName(char* name) override;
    void getParameterLabel(int32 index, char* label) override;
    /// At most 27 bytes and the terminator, in the system's ANSI code page.
    void getParameterDisplay(int32 index, char* text) override;
    void getParameterName(int32 index, char* text) override;

    /// A size of 0 or less is ignored.
    void setBlockSize(int32 frames) override;
    /// Forgets all audio. The parameters stay.
    void suspend() override;

private:
    using ChannelPointers = std::array<float*, ChannelCount>;

    /// Keeps the old arrays if memory is short.
    void resizeScratch(int32 frames) noexcept;
    void addPiece(float** inputs, float** outputs, int32 start, int32 count) noexcept;
    void updateEngines() noexcept;
    std::atomic<float>& valueAt(int32 index) noexcept { return parameterValues[static_cast<std::size_t>(index)]; }

    std::array<std::unique_ptr<FourBandEqualizer>, ChannelCount> engines;
    std::array<std::unique_ptr<float[]>, ChannelCount> scratch; // where an adding call lands before the sum
    int32 scratchFrames = 0;
    std::array<std::atomic<float>, ParameterCount> parameterValues;
};

} // namespace eq
