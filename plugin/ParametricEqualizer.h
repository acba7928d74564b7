#pragma once

#include "engine/FourBandEqualizer.h"
#include "plugin/base/AudioEffectX.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>

namespace eq {

/// True if the editor of any effect could not be created. The flag is never cleared: from then on, `main` returns null.
inline std::atomic<bool> editorCreationFailed = false;

/// The effect: two channels, one engine per channel, and 13 parameters that set both engines.
///
/// A parameter has a value from 0 to 1, and 0 is the top of its range: +12 dB, 20000 Hz, +10 dB, a Q of 10. A value
/// outside 0 to 1 is stored unchanged; the engine's design limits it.
///
/// Only one thread at a time may call `process` and `processReplacing`. Any thread may set and read parameters during
/// these calls. `suspend` and `setBlockSize` replace the engines and the scratch arrays, so the host must not call any
/// other function during these calls.
class ParametricEqualizer : public AudioEffectX {
public:
    static constexpr int32 ChannelCount = 2;

    /// Throws std::bad_alloc if memory is short, and the exceptions of the language store for a broken language file.
    explicit ParametricEqualizer(audioMasterCallback hostCallback);

    /// Stores the value, passes all values to the engines and notifies the editor. If the index is out of range, stores
    /// nothing, but still passes the values and notifies the editor.
    void setParameter(int32 index, float value) override;
    float getParameter(int32 index) override;

    /// Allocates memory if `sampleFrames` is greater than the block size. If memory is short, processes the call in
    /// pieces.
    void process(float** inputs, float** outputs, int32 sampleFrames) override;
    void processReplacing(float** inputs, float** outputs, int32 sampleFrames) override;

    void getProgramName(char* name) override;
    void getParameterLabel(int32 index, char* label) override;
    /// Writes at most 27 bytes and the terminator, in the system's ANSI code page.
    void getParameterDisplay(int32 index, char* text) override;
    void getParameterName(int32 index, char* text) override;

    /// Sets the block size and allocates the scratch arrays. A size of 0 or less is ignored.
    void setBlockSize(int32 frames) override;
    /// Discards all audio and keeps the parameters.
    void suspend() override;

private:
    using ChannelPointers = std::array<float*, ChannelCount>;

    /// Replaces the scratch arrays, or keeps the old arrays if memory is short.
    void resizeScratch(int32 frames) noexcept;
    void addPiece(float** inputs, float** outputs, int32 start, int32 count) noexcept;
    void updateEngines() noexcept;
    std::atomic<float>& valueAt(int32 index) noexcept { return parameterValues[static_cast<std::size_t>(index)]; }

    std::array<std::unique_ptr<FourBandEqualizer>, ChannelCount> engines;
    std::array<std::unique_ptr<float[]>, ChannelCount> scratch; // the engines' output in `process`, before it is added
    int32 scratchFrames = 0;
    std::array<std::atomic<float>, ParameterCount> parameterValues;
};

} // namespace eq
