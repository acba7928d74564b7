#include "plugin/base/AudioEffectX.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace eq {

namespace {

char object;
void* p = &object;

/// Records the last operation that was called, with its arguments. Operations return true or 7.
class RecordingEffect : public AudioEffectX {
public:
    RecordingEffect() : AudioEffectX(nullptr, 2, 0) {}

    std::string last;

    void process(float**, float**, int32) override {}
    void open() override { note(__func__); }
    void close() override { note(__func__); }
    void setProgram(int32 program) override { note(__func__, program); }
    int32 getProgram() override { return note(__func__); }
    void setProgramName(char* name) override { note(__func__, name); }
    void getProgramName(char* name) override { note(__func__, name); }
    void getParameterLabel(int32 i, char* text) override { note(__func__, i, text); }
    void getParameterDisplay(int32 i, char* text) override { note(__func__, i, text); }
    void getParameterName(int32 i, char* text) override { note(__func__, i, text); }
    float getVu() override { return note(__func__), 0.5f; }
    void setSampleRate(float rate) override { note(__func__, rate); }
    void setBlockSize(int32 frames) override { note(__func__, frames); }
    void suspend() override { note(__func__); }
    void resume() override { note(__func__); }
    int32 getChunk(void** data, bool preset) override { return note(__func__, data, preset); }
    int32 setChunk(void* data, int32 size, bool preset) override { return note(__func__, data, size, preset); }

    int32 processEvents(void* events) override { return note(__func__, events); }
    int32 getNumCategories() override { return note(__func__); }
    bool canParameterBeAutomated(int32 i) override { return note(__func__, i); }
    bool string2parameter(int32 i, char* text) override { return note(__func__, i, text); }
    bool getProgramNameIndexed(int32 set, int32 i, char* text) override { return note(__func__, set, i, text); }
    bool copyProgram(int32 destination) override { return note(__func__, destination); }
    void inputConnected(int32 i, bool state) override { note(__func__, i, state); }
    void outputConnected(int32 i, bool state) override { note(__func__, i, state); }
    bool getInputProperties(int32 i, void* properties) override { return note(__func__, i, properties); }
    bool getOutputProperties(int32 i, void* properties) override { return note(__func__, i, properties); }
    int32 getPlugCategory() override { return note(__func__); }
    int32 reportCurrentPosition() override { return note(__func__); }
    intptr reportDestinationBuffer() override { return note(__func__); }
    bool offlineNotify(void* ptr, int32 files, bool start) override { return note(__func__, ptr, files, start); }
    bool offlinePrepare(void* offline, int32 count) override { return note(__func__, offline, count); }
    bool offlineRun(void* offline, int32 count) override { return note(__func__, offline, count); }
    bool processVariableIo(void* varIo) override { return note(__func__, varIo); }
    bool setSpeakerArrangement(void* in, void* out) override {
        return note(__func__, reinterpret_cast<intptr>(in), out);
    }
    void setBlockSizeAndSampleRate(int32 frames, float rate) override { note(__func__, frames, rate); }
    bool setBypass(bool on) override { return note(__func__, on); }
    bool getEffectName(char* text) override { return note(__func__, text); }
    bool getErrorText(char* text) override { return note(__func__, text); }
    bool getVendorString(char* text) override { return note(__func__, text); }
    bool getProductString(char* text) override { return note(__func__, text); }
    int32 getVendorVersion() override { return note(__func__); }
    int32 vendorSpecific(int32 a, int32 b, void* ptr, float f) override { return note(__func__, a, b, ptr, f); }
    int32 canDo(char* text) override { return note(__func__, text); }
    int32 getGetTailSize() override { return note(__func__); }
    int32 fxIdle() override { return note(__func__); }
    intptr getIcon() override { return note(__func__); }
    bool setViewPosition(int32 x, int32 y) override { return note(__func__, x, y); }
    bool getParameterProperties(int32 i, void* properties) override { return note(__func__, i, properties); }
    bool keysRequired() override { return note(__func__); }
    int32 getVstVersion() override { return note(__func__); }

private:
    template <typename... Arguments>
    int32 note(const char* name, Arguments... arguments) {
        std::ostringstream text;
        text << name;
        ((text << ' ' << written(arguments)), ...);
        last = text.str();
        return 7;
    }

    template <typename Argument>
    static auto written(Argument argument) {
        if constexpr (std::is_pointer_v<Argument>)
            return static_cast<void*>(argument) == p ? 'p' : '?';
        else
            return argument;
    }
};

/// Returns the operation that a command with ptr p and opt 0.5 calls, and the command's result.
std::string answer(int32 opcode, int32 index, intptr value) {
    RecordingEffect effect;
    const intptr result = effect.dispatcher(opcode, index, value, p, 0.5f);
    return effect.last + "=" + std::to_string(result);
}

std::string answers(int32 first, int32 last) {
    std::string all;
    for (int32 opcode = first; opcode <= last; ++opcode) all += answer(opcode, 3, 1) + "; ";
    return all;
}

TEST(Dispatcher, CallsOneOperationForEachOpcode) {
    EXPECT_EQ(answers(0, 5), "open=0; close=0; setProgram 1=0; getProgram=7; setProgramName p=0; getProgramName p=0; ");
    EXPECT_EQ(answers(6, 8), "getParameterLabel 3 p=0; getParameterDisplay 3 p=0; getParameterName 3 p=0; ");
    EXPECT_EQ(answers(9, 12), "getVu=16383; setSampleRate 0.5=0; setBlockSize 1=0; resume=0; "); // 16383.5 is truncated
    EXPECT_EQ(answers(13, 22), "=0; =0; =0; =0; =0; =0; =0; =0; =0; =1316373862; ");
    EXPECT_EQ(answers(23, 27), "getChunk p 1=7; setChunk p 1 1=7; processEvents p=7; canParameterBeAutomated 3=1; "
                               "string2parameter 3 p=1; ");
    EXPECT_EQ(answers(28, 32),
              "getNumCategories=7; getProgramNameIndexed 1 3 p=1; copyProgram 3=1; inputConnected 3 1=1; "
              "outputConnected 3 1=1; ");
    EXPECT_EQ(answers(33, 37), "getInputProperties 3 p=1; getOutputProperties 3 p=1; getPlugCategory=7; "
                               "reportCurrentPosition=7; reportDestinationBuffer=7; ");
    EXPECT_EQ(answers(38, 41),
              "offlineNotify p 1 1=1; offlinePrepare p 1=1; offlineRun p 1=1; processVariableIo p=1; ");
    EXPECT_EQ(answers(42, 44), "setSpeakerArrangement 1 p=1; setBlockSizeAndSampleRate 1 0.5=1; setBypass 1=1; ");
    EXPECT_EQ(answers(45, 51),
              "getEffectName p=1; getErrorText p=1; getVendorString p=1; getProductString p=1; getVendorVersion=7; "
              "vendorSpecific 3 1 p 0.5=7; canDo p=7; ");
    EXPECT_EQ(answers(52, 56),
              "getGetTailSize=7; fxIdle=7; getIcon=7; setViewPosition 3 1=1; getParameterProperties 3 p=1; ");
    EXPECT_EQ(answers(57, 59), "keysRequired=0; getVstVersion=7; =0; "); // keysRequired is inverted
    EXPECT_EQ(answer(-1, 3, 1) + answer(INT32_MIN, 3, 1) + answer(INT32_MAX, 3, 1), "=0=0=0");
}

TEST(Dispatcher, ConvertsNumbersToOnAndOff) {
    EXPECT_EQ(answer(effSetProgram, 0, 2), "=0"); // there are two programs
    EXPECT_EQ(answer(effSetProgram, 0, -5), "setProgram -5=0");
    EXPECT_EQ(answer(effMainsChanged, 0, 0), "suspend=0");
    EXPECT_EQ(answer(effMainsChanged, 0, 2), "resume=0");
    EXPECT_EQ(answer(effGetChunk, 0, 1), "getChunk p 0=7");
    EXPECT_EQ(answer(effSetChunk, 0, 1), "setChunk p 1 0=7");
    EXPECT_EQ(answer(effConnectInput, 3, -1), "inputConnected 3 1=1");
    EXPECT_EQ(answer(effConnectOutput, 3, 0), "outputConnected 3 0=1");
    EXPECT_EQ(answer(effOfflineNotify, 0, 1), "offlineNotify p 1 0=1");
    EXPECT_EQ(answer(effSetBypass, 0, 0), "setBypass 0=1");
}

} // namespace

} // namespace eq
