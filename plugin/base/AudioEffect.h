#pragma once

#include "plugin/base/AEffEditor.h"
#include "plugin/base/AEffect.h"

namespace eq {

/// The base class of every effect. It owns the record that the host holds, answers the commands 0 to 24 with harmless
/// defaults, and offers the first of the calls to the host.
///
/// The virtual operations are a binary interface: their order is fixed.
///
/// A null callback stands for a host that answers 0 to everything. Texts go into buffers of the caller.
class AudioEffect {
public:
    AudioEffect(audioMasterCallback hostCallback, int32 programCount, int32 parameterCount) noexcept;
    /// Deletes the editor.
    virtual ~AudioEffect();

    AudioEffect(const AudioEffect&) = delete;
    AudioEffect& operator=(const AudioEffect&) = delete;

    /// The record, which lives as long as the effect.
    AEffect* getAeffect() noexcept { return &cEffect; }
    /// Takes the editor over, or none for null. An editor set before is not deleted.
    void setEditor(AEffEditor* newEditor) noexcept {
        editor = newEditor;
        setFlag(effFlagsHasEditor, newEditor != nullptr);
    }

    virtual void setParameter(int32 /*index*/, float /*value*/) {}
    virtual float getParameter(int32 /*index*/) { return 0.0f; }
    /// Sets a parameter and tells the host, as an editor does.
    virtual void setParameterAutomated(int32 index, float value);

    /// Adds its result to `outputs`.
    virtual void process(float** inputs, float** outputs, int32 sampleFrames) = 0;
    /// Overwrites `outputs`.
    virtual void processReplacing(float** /*inputs*/, float** /*outputs*/, int32 /*sampleFrames*/) {}

    virtual intptr dispatcher(int32 opCode, int32 index, intptr value, void* ptr, float opt);
    virtual void open() {}
    virtual void close() {}

    virtual int32 getProgram() { return curProgram; }
    virtual void setProgram(int32 program) { curProgram = program; }
    /// Nothing is stored, and the caller's text comes back empty.
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

    /// At least 1.
    virtual int32 getMasterVersion();
    virtual int32 getCurrentUniqueId();
    virtual void masterIdle();
    /// A host answers 0 for a pin that is connected.
    virtual bool isInputConnected(int32 input);
    virtual bool isOutputConnected(int32 output);

    // Numbers as texts of 8 characters, for buffers of 9 bytes or more.

    /// A linear gain in dB.
    virtual void dB2string(float value, char* text);
    /// A period in samples as its frequency in Hz.
    virtual void Hz2string(float samples, char* text);
    /// A length in samples in milliseconds.
    virtual void ms2string(float samples, char* text);
    /// As many digits as fit. What lies beyond -9999999 .. 99999999, or is no number, leaves `text` as it was.
    virtual void float2string(float value, char* text);
    virtual void long2string(int32 value, char* text);

protected:
    void setFlag(EffectFlags flag, bool state) noexcept {
        cEffect.flags = state ? cEffect.flags | flag : cEffect.flags & ~flag;
    }

    /// Calls the host, if there is one.
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
