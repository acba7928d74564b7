#include "plugin/ParametricEqualizer.h"

#include "engine/ChannelPair.h"
#include "parameters/DisplayText.h"
#include "parameters/ParameterTable.h"
#include "plugin/EditorChoice.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace eq {

namespace {

constexpr int32 UniqueId = 0x4D68567A; // "zVhM" in memory order

} // namespace

ParametricEqualizer::ParametricEqualizer(audioMasterCallback hostCallback)
    : AudioEffectX(hostCallback, 1, ParameterCount) {
    resizeScratch(blockSize);
    if (scratchFrames == 0) throw std::bad_alloc();
    for (std::size_t i = 0; i < ParameterCount; ++i) parameterValues[i] = Parameters[i].defaultP;
    for (auto& engine : engines) engine = std::make_unique<FourBandEqualizer>();
    updateEngines();

    AudioEffectX::setNumInputs(ChannelCount);
    AudioEffectX::setNumOutputs(ChannelCount);
    AudioEffectX::canMono(true);
    AudioEffectX::canProcessReplacing(true);
    AudioEffectX::setInitialDelay(engines[0]->latency());
    AudioEffectX::setUniqueID(UniqueId);

    // `createEditor` also reads the language files. A broken file therefore fails here, and not later when a host reads
    // a text.
    if (!createEditor(*this)) editorCreationFailed = true;
}

void ParametricEqualizer::setParameter(int32 index, float value) {
    if (isParameter(index)) valueAt(index).store(value, std::memory_order_relaxed);
    updateEngines();
    if (editor) editor->postUpdate();
}

float ParametricEqualizer::getParameter(int32 index) {
    return isParameter(index) ? valueAt(index).load(std::memory_order_relaxed) : 0.0f;
}

void ParametricEqualizer::process(float** inputs, float** outputs, int32 sampleFrames) {
    if (sampleFrames > scratchFrames) setBlockSize(sampleFrames);
    for (int32 start = 0; start < sampleFrames; start += scratchFrames)
        addPiece(inputs, outputs, start, std::min(scratchFrames, sampleFrames - start));
}

void ParametricEqualizer::processReplacing(float** inputs, float** outputs, int32 sampleFrames) {
    ChannelPair(*engines[0], *engines[1]).process(inputs, outputs, sampleFrames, FourBandEqualizer::Process);
}

void ParametricEqualizer::getProgramName(char* name) {
    std::strcpy(name, "Parametric Equalizer");
}

void ParametricEqualizer::getParameterLabel(int32 index, char* label) {
    if (isParameter(index)) std::strcpy(label, scaleOf(Parameters[index].kind).unit);
}

void ParametricEqualizer::getParameterDisplay(int32 index, char* text) {
    if (isParameter(index)) writeDisplay(Parameters[index], getParameter(index), text);
}

void ParametricEqualizer::getParameterName(int32 index, char* text) {
    if (isParameter(index)) std::strcpy(text, Parameters[index].name);
}

void ParametricEqualizer::setBlockSize(int32 frames) {
    if (frames <= 0) return;
    blockSize = frames;
    resizeScratch(frames);
}

void ParametricEqualizer::suspend() {
    std::array<std::unique_ptr<FourBandEqualizer>, ChannelCount> fresh;
    for (auto& engine : fresh) engine.reset(new (std::nothrow) FourBandEqualizer);
    if (fresh[0] && fresh[1])
        engines = std::move(fresh);
    else
        for (const auto& engine : engines) engine->reset();
    updateEngines();
}

void ParametricEqualizer::resizeScratch(int32 frames) noexcept {
    // A non-throwing allocation still throws for a size larger than the address space.
    const auto length = static_cast<std::size_t>(frames);
    if (length > PTRDIFF_MAX / sizeof(float)) return;

    std::array<std::unique_ptr<float[]>, ChannelCount> fresh;
    for (auto& array : fresh) array.reset(new (std::nothrow) float[length]);
    if (!fresh[0] || !fresh[1]) return;
    scratch = std::move(fresh);
    scratchFrames = frames;
}

void ParametricEqualizer::addPiece(float** inputs, float** outputs, int32 start, int32 count) noexcept {
    ChannelPointers pieceInputs = {inputs[0] + start, inputs[1] + start};
    ChannelPointers landing = {scratch[0].get(), scratch[1].get()};
    processReplacing(pieceInputs.data(), landing.data(), count);
    // Add frame by frame: if the outputs overlap, the order of the additions changes the result. A pass of the first
    // loop adds four frames.
    const auto addFrame = [&](int32 i) {
        for (std::size_t channel = 0; channel < ChannelCount; ++channel)
            outputs[channel][start + i] += landing[channel][i];
    };
    int32 done = 0;
    for (; count - done >= 4; done += 4)
        for (int32 i = done; i < done + 4; ++i) addFrame(i);
    for (; done < count; ++done) addFrame(done);
}

void ParametricEqualizer::updateEngines() noexcept {
    // Several threads may run this function together. The change numbers identify the newest array for each engine.
    std::array<std::uint32_t, ChannelCount> change;
    std::ranges::transform(engines, change.begin(), [](const auto& engine) { return engine->announceChange(); });
    float values[ParameterCount];
    for (int32 i = 0; i < ParameterCount; ++i)
        values[i] = static_cast<float>(valueOf(Parameters[i].kind, getParameter(i)));
    for (std::size_t i = 0; i < ChannelCount; ++i) engines[i]->setParameters(values, change[i]);
}

} // namespace eq
