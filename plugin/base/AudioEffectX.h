#pragma once

#include "plugin/base/AudioEffect.h"

namespace eq {

/// The base class from which an effect derives. It answers the commands 25 to 58 with harmless defaults, and offers the
/// remaining host requests. Each request returns the host's answer, unless its comment says otherwise.
///
/// The virtual operations follow the virtual operations of AudioEffect, and their order is fixed, too.
class AudioEffectX : public AudioEffect {
public:
    using AudioEffect::AudioEffect;

    /// Returns true if the host accepts the events.
    bool sendVstEventsToHost(void* events);

    intptr dispatcher(int32 opCode, int32 index, intptr value, void* ptr, float opt) override;

    virtual void wantEvents(int32 filter);
    virtual void* getTimeInfo(int32 filter);
    virtual int32 tempoAt(int32 pos);

    virtual int32 processEvents(void* /*events*/) { return 0; }
    virtual int32 getNumAutomatableParameters();
    virtual int32 getParameterQuantization();
    virtual bool canParameterBeAutomated(int32 /*index*/) { return true; }
    virtual bool string2parameter(int32 /*index*/, char* /*text*/) { return false; }
    virtual float getChannelParameter(int32 /*channel*/, int32 /*index*/) { return 0.0f; }
    virtual int32 getNumCategories() { return 1; }
    virtual bool getProgramNameIndexed(int32 /*category*/, int32 /*index*/, char* /*text*/) { return false; }
    virtual bool copyProgram(int32 /*destination*/) { return false; }

    virtual bool ioChanged();
    virtual bool needIdle();
    virtual bool sizeWindow(int32 width, int32 height);
    /// Returns the sampling rate that the host last set. The host is expected to set it during this call.
    virtual float updateSampleRate();
    /// Returns the block size that the host last set. The host is expected to set it during this call.
    virtual int32 updateBlockSize();
    virtual int32 getInputLatency();
    virtual int32 getOutputLatency();
    virtual void* getPreviousPlug(int32 input);
    virtual void* getNextPlug(int32 output);
    virtual void inputConnected(int32 /*index*/, bool /*state*/) {}
    virtual void outputConnected(int32 /*index*/, bool /*state*/) {}
    virtual bool getInputProperties(int32 /*index*/, void* /*properties*/) { return false; }
    virtual bool getOutputProperties(int32 /*index*/, void* /*properties*/) { return false; }
    /// Returns 0 for an effect, or 2 for an instrument.
    virtual int32 getPlugCategory() { return (cEffect.flags & effFlagsIsSynth) != 0 ? 2 : 0; }
    virtual int32 willProcessReplacing();
    virtual int32 getCurrentProcessLevel();
    virtual int32 getAutomationState();

    virtual void wantAsyncOperation(bool state) { setFlag(effFlagsExtIsAsync, state); }
    virtual void hasExternalBuffer(bool state) { setFlag(effFlagsExtHasBuffer, state); }
    virtual int32 reportCurrentPosition() { return 0; }
    virtual intptr reportDestinationBuffer() { return 0; }

    virtual bool offlineRead(void* offline, int32 option, bool readSource);
    virtual bool offlineWrite(void* offline, int32 option);
    virtual bool offlineStart(void* audioFiles, int32 numAudioFiles, int32 numNewAudioFiles);
    virtual bool offlineGetCurrentPass();
    virtual bool offlineGetCurrentMetaPass();
    virtual bool offlineNotify(void* /*ptr*/, int32 /*numAudioFiles*/, bool /*start*/) { return false; }
    virtual bool offlinePrepare(void* /*offline*/, int32 /*count*/) { return false; }
    virtual bool offlineRun(void* /*offline*/, int32 /*count*/) { return false; }
    virtual int32 offlineGetNumPasses() { return 0; }
    virtual int32 offlineGetNumMetaPasses() { return 0; }
    virtual void setOutputSamplerate(float samplerate);
    virtual bool getSpeakerArrangement(void* pluginInput, void* pluginOutput);
    virtual bool getHostVendorString(char* text);
    virtual bool getHostProductString(char* text);
    virtual int32 getHostVendorVersion();
    virtual int32 hostVendorSpecific(int32 arg1, int32 arg2, void* ptrArg, float floatArg);
    virtual bool canHostDo(char* text);
    virtual void isSynth(bool state) { setFlag(effFlagsIsSynth, state); }
    virtual void noTail(bool state) { setFlag(effFlagsNoSoundInStop, state); }
    virtual int32 getHostLanguage();
    virtual void* openWindow(void* window);
    virtual bool closeWindow(void* window);
    virtual void* getDirectory();
    virtual bool updateDisplay();

    virtual bool processVariableIo(void* /*varIo*/) { return false; }
    virtual bool setSpeakerArrangement(void* /*pluginInput*/, void* /*pluginOutput*/) { return false; }
    virtual void setBlockSizeAndSampleRate(int32 frames, float rate) {
        blockSize = frames;
        sampleRate = rate;
    }
    virtual bool setBypass(bool /*onOff*/) { return false; }
    virtual bool getEffectName(char* /*name*/) { return false; }
    virtual bool getErrorText(char* /*text*/) { return false; }
    virtual bool getVendorString(char* /*text*/) { return false; }
    virtual bool getProductString(char* /*text*/) { return false; }
    virtual int32 getVendorVersion() { return 0; }
    virtual int32 vendorSpecific(int32 /*arg1*/, int32 /*arg2*/, void* /*ptrArg*/, float /*floatArg*/) { return 0; }
    virtual int32 canDo(char* /*text*/) { return 0; }
    virtual intptr getIcon() { return 0; }
    virtual bool setViewPosition(int32 /*x*/, int32 /*y*/) { return false; }
    virtual int32 getGetTailSize() { return 0; }
    virtual int32 fxIdle() { return 0; }
    virtual bool getParameterProperties(int32 /*index*/, void* /*properties*/) { return false; }
    virtual bool keysRequired() { return false; }
    virtual int32 getVstVersion() { return 2; }
};

} // namespace eq
