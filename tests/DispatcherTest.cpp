#include "plugin/base/AudioEffectX.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>

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
    // clang-format off
    intptr reportDestinationBuffer() override { return note(__func__); } void suspend() override { note(__func__); }
    int32 reportCurrentPosition() override { return note(__func__); } int32 fxIdle() override { return note(__func__); }
    int32 getNumCategories() override { return note(__func__); } float getVu() override { return note(__func__), 0.5f; }
    int32 getVendorVersion() override { return note(__func__); } bool keysRequired() override { return note(__func__); }
    int32 getPlugCategory() override { return note(__func__); } int32 getProgram() override { return note(__func__); }
    int32 getGetTailSize() override { return note(__func__); } int32 getVstVersion() override { return note(__func__); }
    intptr getIcon() override { return note(__func__); } void resume() override { note(__func__); }
    void close() override { note(__func__); } void open() override { note(__func__); }
    void setProgram(int32 program) override { note(__func__, program); }
    void setProgramName(char* name) override { note(__func__, name); }
    void getProgramName(char* name) override { note(__func__, name); }
    void getParameterLabel(int32 i, char* text) override { note(__func__, i, text); }
    void getParameterDisplay(int32 i, char* text) override { note(__func__, i, text); }
    void getParameterName(int32 i, char* text) override { note(__func__, i, text); }
    void setSampleRate(float rate) override { note(__func__, rate); }
    void setBlockSize(int32 frames) override { note(__func__, frames); }
    int32 getChunk(void** data, bool preset) override { return note(__func__, data, preset); }
    int32 setChunk(void* data, int32 size, bool preset) override { return note(__func__, data, size, preset); }
    int32 processEvents(void* events) override { return note(__func__, events); }
    bool canParameterBeAutomated(int32 i) override { return note(__func__, i); }
    bool string2parameter(int32 i, char* text) override { return note(__func__, i, text); }
    bool getProgramNameIndexed(int32 set, int32 i, char* text) override { return note(__func__, set, i, text); }
    bool copyProgram(int32 destination) override { return note(__func__, destination); }
    void inputConnected(int32 i, bool state) override { note(__func__, i, state); }
    void outputConnected(int32 i, bool state) override { note(__func__, i, state); }
    bool getInputProperties(int32 i, void* properties) override { return note(__func__, i, properties); }
    bool getOutputProperties(int32 i, void* properties) override { return note(__func__, i, properties); }
    bool offlineNotify(void* ptr, int32 files, bool start) override { return note(__func__, ptr, files, start); }
    bool offlinePrepare(void* offline, int32 count) override { return note(__func__, offline, count); }
    bool offlineRun(void* offline, int32 count) override { return note(__func__, offline, count); }
    bool processVariableIo(void* varIo) override { return note(__func__, varIo); }
    bool setSpeakerArrangement(void* a, void* b) override { return note(__func__, reinterpret_cast<intptr>(a), b); }
    void setBlockSizeAndSampleRate(int32 frames, float rate) override { note(__func__, frames, rate); }
    bool setBypass(bool on) override { return note(__func__, on); }
    bool getEffectName(char* text) override { return note(__func__, text); }
    bool getErrorText(char* text) override { return note(__func__, text); }
    bool getVendorString(char* text) override { return note(__func__, text); }
    bool getProductString(char* text) override { return note(__func__, text); }
    int32 vendorSpecific(int32 a, int32 b, void* ptr, float f) override { return note(__func__, a, b, ptr, f); }
    int32 canDo(char* text) override { return note(__func__, text); }
    bool setViewPosition(int32 x, int32 y) override { return note(__func__, x, y); }
    bool getParameterProperties(int32 i, void* properties) override { return note(__func__, i, properties); }
    // clang-format on

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

TEST(Dispatcher, CallsOneOperationForEachOpcode) {
    std::string all;
    for (int32 opcode = 0; opcode < 60; ++opcode) all += std::to_string(opcode) + " " + answer(opcode, 3, 1) + "; ";
    // The volume 16383.5 is truncated, and keysRequired is inverted.
    EXPECT_EQ(all,
              "0 open=0; 1 close=0; 2 setProgram 1=0; 3 getProgram=7; 4 setProgramName p=0; 5 getProgramName p=0; "
              "6 getParameterLabel 3 p=0; 7 getParameterDisplay 3 p=0; 8 getParameterName 3 p=0; 9 getVu=16383; "
              "10 setSampleRate 0.5=0; 11 setBlockSize 1=0; 12 resume=0; 13 =0; 14 =0; 15 =0; 16 =0; 17 =0; 18 =0; "
              "19 =0; 20 =0; 21 =0; 22 =1316373862; 23 getChunk p 1=7; 24 setChunk p 1 1=7; 25 processEvents p=7; "
              "26 canParameterBeAutomated 3=1; 27 string2parameter 3 p=1; 28 getNumCategories=7; "
              "29 getProgramNameIndexed 1 3 p=1; 30 copyProgram 3=1; 31 inputConnected 3 1=1; "
              "32 outputConnected 3 1=1; 33 getInputProperties 3 p=1; 34 getOutputProperties 3 p=1; "
              "35 getPlugCategory=7; 36 reportCurrentPosition=7; 37 reportDestinationBuffer=7; "
              "38 offlineNotify p 1 1=1; 39 offlinePrepare p 1=1; 40 offlineRun p 1=1; 41 processVariableIo p=1; "
              "42 setSpeakerArrangement 1 p=1; 43 setBlockSizeAndSampleRate 1 0.5=1; 44 setBypass 1=1; "
              "45 getEffectName p=1; 46 getErrorText p=1; 47 getVendorString p=1; 48 getProductString p=1; "
              "49 getVendorVersion=7; 50 vendorSpecific 3 1 p 0.5=7; 51 canDo p=7; 52 getGetTailSize=7; 53 fxIdle=7; "
              "54 getIcon=7; 55 setViewPosition 3 1=1; 56 getParameterProperties 3 p=1; 57 keysRequired=0; "
              "58 getVstVersion=7; 59 =0; ");
    EXPECT_EQ(answer(-1, 3, 1) + answer(INT32_MIN, 3, 1) + answer(INT32_MAX, 3, 1), "=0=0=0");
}

TEST(Dispatcher, ConvertsNumbersToOnAndOff) {
    // There are two programs. Each row has the opcode, the index, the value, and the answer.
    // clang-format off
    const std::tuple<int32, int32, intptr, const char*> rows[] = {
        {effSetProgram, 0, 2, "=0"}, {effSetProgram, 0, -5, "setProgram -5=0"}, {effMainsChanged, 0, 0, "suspend=0"},
        {effMainsChanged, 0, 2, "resume=0"}, {effGetChunk, 0, 1, "getChunk p 0=7"},
        {effSetChunk, 0, 1, "setChunk p 1 0=7"}, {effConnectInput, 3, -1, "inputConnected 3 1=1"},
        {effConnectOutput, 3, 0, "outputConnected 3 0=1"}, {effOfflineNotify, 0, 1, "offlineNotify p 1 0=1"},
        {effSetBypass, 0, 0, "setBypass 0=1"}};
    // clang-format on
    for (const auto& [opcode, index, value, text] : rows) EXPECT_EQ(answer(opcode, index, value), text) << opcode;
}

} // namespace

} // namespace eq
