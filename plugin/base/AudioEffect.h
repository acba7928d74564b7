#pragma once

#include "plugin/base/AEffEditor.h"
#include "plugin/base/AEffect.h"

namespace eq {

/// The base class of every effect. It owns the record that the host uses. It answers the commands 0 to 24 with harmless
/// defaults, and offers the host requests 0 to 4.
///
/// The virtual operations are a binary interface: their order is fixed.
///
/// A null callback means a host that returns 0 for every request. Texts are written to buffers of the caller.
class AudioEffect {
public:
    AudioEffect(audioMasterCallback hostCallback, int32 programCount, int32 parameterCount) noexcept;
    /// Deletes the editor.
    virtual ~AudioEffect();

    AudioEffect(const AudioEffect&) = delete;
    AudioEffect& operator=(const AudioEffect&) = delete;

    /// Returns the record, which lives as long as the effect.
    AEffect* getAeffect() noexcept { return &cEffect; }
    /// Takes ownership of an editor; null means no editor. The previous editor is not deleted.
    void setEditor(AEffEditor* newEditor) noexcept {
        editor = newEditor;
        setFlag(effFlagsHasEditor, newEditor != nullptr);
    }

    virtual void setParameter(int32 /*index*/, float /*value*/) {}
    virtual float getParameter(int32 /*index*/) { return 0.0f; }
    /// Sets a parameter and notifies the host. Editors use this.
    virtual void setParameterAutomated(int32 index, float value);

    /// Processes audio and adds the result to `outputs`.
    virtual void process(float** inputs, float** outputs, int32 sampleFrames) = 0;
    /// Processes audio and overwrites `outputs` with the result.
    virtual void processReplacing(float** /*inputs*/, float** /*outputs*/, int32 /*sampleFrames*/) {}

    virtual intptr dispatcher(int32 opCode, int32 index, intptr value, void* ptr, float opt);
    virtual void open() {}
    virtual void close() {}

    virtual int32 getProgram() { return curProgram; }
    virtual void setProgram(int32 program) { curProgram = program; }
    /// Stores nothing, and empties the caller's text.
    virtual void setProgramName(char* name) { *name = '\0'; }
    virtual void getProgramName(char* name) { *name = '\0'; }

    virtual void getParameterLabel(int32 /*index*/, char* label) { *label = '\0'; }
    virtual void getParameterDisplay(int32 /*index*/, char* text) { *text = '\0'; }
    virtual void getParameterName(int32 /*index*/, char* text) { *text = '\0'; }

    virtual float getVu() { return 0.0f; }
    virtual int32 getChunk(void** /*data*/, bool /*isPreset*/) { return 0; }
    virtual int32 setChunk(void* /*data*/, int32 /*byteSize*/, bool /*isPreset*/) { return 0; }
    virtual void setSampleRate(float rate) { sampleRate = rate; }
    virtual void setBlockSize(int32 frames) { blockSize = frames; }
    virtual void suspend() {}
    virtual void resume() {}

    virtual void setUniqueID(int32 id) { cEffect.uniqueID = id; }
    virtual void setNumInputs(int32 inputs) { cEffect.numInputs = inputs; }
    virtual void setNumOutputs(int32 outputs) { cEffect.numOutputs = outputs; }
    virtual void hasVu(bool state) { setFlag(effFlagsHasVu, state); }
    virtual void hasClip(bool state) { setFlag(effFlagsHasClip, state); }
    virtual void canMono(bool state) { setFlag(effFlagsCanMono, state); }
    virtual void canProcessReplacing(bool state) { setFlag(effFlagsCanReplacing, state); }
    virtual void programsAreChunks(bool state) { setFlag(effFlagsProgramChunks, state); }
    virtual void setRealtimeQualities(int32 qualities) { cEffect.realQualities = qualities; }
    virtual void setOfflineQualities(int32 qualities) { cEffect.offQualities = qualities; }
    virtual void setInitialDelay(int32 delay) { cEffect.initialDelay = delay; }

    virtual float getSampleRate() { return sampleRate; }
    virtual int32 getBlockSize() { return blockSize; }

    /// Returns the host's version of the interface, or 1 if the host returns 0.
    virtual int32 getMasterVersion();
    virtual int32 getCurrentUniqueId();
    virtual void masterIdle();
    /// Returns whether a pin is connected. The host returns 0 for a connected pin.
    virtual bool isInputConnected(int32 input);
    virtual bool isOutputConnected(int32 output);

    // The next five functions write a number as a text of at most 8 characters to a buffer of at least 9 bytes.

    /// Writes a linear gain in dB.
    virtual void dB2string(float value, char* text);
    /// Writes the frequency in Hz for a period in samples.
    virtual void Hz2string(float samples, char* text);
    /// Writes the duration in milliseconds for a length in samples.
    virtual void ms2string(float samples, char* text);
    /// Writes as many digits as fit. Leaves `text` unchanged for NaN and for a value outside -9999999 .. 99999999.
    virtual void float2string(float value, char* text);
    virtual void long2string(int32 value, char* text);

protected:
    void setFlag(EffectFlags flag, bool state) noexcept {
        cEffect.flags = state ? cEffect.flags | flag : cEffect.flags & ~flag;
    }

    /// Returns the host's answer to a request, or 0 without a host.
    intptr callHost(HostOpcode opcode, int32 index = 0, intptr value = 0, void* ptr = nullptr, float opt = 0.0f) {
        return audioMaster ? audioMaster(&cEffect, opcode, index, value, ptr, opt) : 0;
    }

    float sampleRate = 44100.0f;
    AEffEditor* editor = nullptr; // owned
    audioMasterCallback audioMaster;
    int32 numPrograms;
    int32 numParams;
    int32 curProgram = 0;
    int32 blockSize = 1024;
    AEffect cEffect = {};
};

} // namespace eq
