#include "plugin/ParametricEqualizer.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <utility>

namespace {

char object;
void* const p = &object;

/// Writes down the last operation that was called, with its arguments; says true or 7 to everything.
class RecordingEffect : public AudioEffectX {
public:
    RecordingEffect() : AudioEffectX(nullptr, 2, 0) {}

    std::string last;

    void process(float**, float**, int32) override {}
    void open() override { note("open"); }
    void close() override { note("close"); }
    void setProgram(int32 program) override { note("setProgram", program); }
    int32 getProgram() override { return note("getProgram"); }
    void setProgramName(char* name) override { note("setProgramName", name); }
    void getProgramName(char* name) override { note("getProgramName", name); }
    void getParameterLabel(int32 i, char* text) override { note("getParameterLabel", i, text); }
    void getParameterDisplay(int32 i, char* text) override { note("getParameterDisplay", i, text); }
    void getParameterName(int32 i, char* text) override { note("getParameterName", i, text); }
    float getVu() override { return note("getVu"), 0.5f; }
    void setSampleRate(float rate) override { note("setSampleRate", rate); }
    void setBlockSize(int32 frames) override { note("setBlockSize", frames); }
    void suspend() override { note("suspend"); }
    void resume() override { note("resume"); }
    int32 getChunk(void** data, bool preset) override { return note("getChunk", data, preset); }
    int32 setChunk(void* data, int32 size, bool preset) override { return note("setChunk", data, size, preset); }

    int32 processEvents(void* events) override { return note("processEvents", events); }
    bool canParameterBeAutomated(int32 i) override { return note("canParameterBeAutomated", i); }
    bool string2parameter(int32 i, char* text) override { return note("string2parameter", i, text); }
    int32 getNumCategories() override { return note("getNumCategories"); }
    bool getProgramNameIndexed(int32 category, int32 i, char* text) override {
        return note("getProgramNameIndexed", category, i, text);
    }
    bool copyProgram(int32 destination) override { return note("copyProgram", destination); }
    void inputConnected(int32 i, bool state) override { note("inputConnected", i, state); }
    void outputConnected(int32 i, bool state) override { note("outputConnected", i, state); }
    bool getInputProperties(int32 i, void* properties) override { return note("getInputProperties", i, properties); }
    bool getOutputProperties(int32 i, void* properties) override { return note("getOutputProperties", i, properties); }
    int32 getPlugCategory() override { return note("getPlugCategory"); }
    int32 reportCurrentPosition() override { return note("reportCurrentPosition"); }
    intptr reportDestinationBuffer() override { return note("reportDestinationBuffer"); }
    bool offlineNotify(void* ptr, int32 files, bool start) override { return note("offlineNotify", ptr, files, start); }
    bool offlinePrepare(void* offline, int32 count) override { return note("offlinePrepare", offline, count); }
    bool offlineRun(void* offline, int32 count) override { return note("offlineRun", offline, count); }
    bool processVariableIo(void* varIo) override { return note("processVariableIo", varIo); }
    bool setSpeakerArrangement(void* in, void* out) override {
        return note("setSpeakerArrangement", reinterpret_cast<intptr>(in), out);
    }
    void setBlockSizeAndSampleRate(int32 frames, float rate) override {
        note("setBlockSizeAndSampleRate", frames, rate);
    }
    bool setBypass(bool on) override { return note("setBypass", on); }
    bool getEffectName(char* text) override { return note("getEffectName", text); }
    bool getErrorText(char* text) override { return note("getErrorText", text); }
    bool getVendorString(char* text) override { return note("getVendorString", text); }
    bool getProductString(char* text) override { return note("getProductString", text); }
    int32 getVendorVersion() override { return note("getVendorVersion"); }
    int32 vendorSpecific(int32 a, int32 b, void* ptr, float f) override { return note("vendorSpecific", a, b, ptr, f); }
    int32 canDo(char* text) override { return note("canDo", text); }
    int32 getGetTailSize() override { return note("getGetTailSize"); }
    int32 fxIdle() override { return note("fxIdle"); }
    intptr getIcon() override { return note("getIcon"); }
    bool setViewPosition(int32 x, int32 y) override { return note("setViewPosition", x, y); }
    bool getParameterProperties(int32 i, void* properties) override {
        return note("getParameterProperties", i, properties);
    }
    bool keysRequired() override { return note("keysRequired"); }
    int32 getVstVersion() override { return note("getVstVersion"); }

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

TEST(Dispatcher, CallsOneOperationForEachOpcode) {
    const struct {
        const char* called; // for index 3, value 1, ptr p and opt 0.5
        intptr result;
    } rows[] = {
        {"open", 0},
        {"close", 0},
        {"setProgram 1", 0},
        {"getProgram", 7},
        {"setProgramName p", 0},
        {"getProgramName p", 0},
        {"getParameterLabel 3 p", 0},
        {"getParameterDisplay 3 p", 0},
        {"getParameterName 3 p", 0},
        {"getVu", 16383}, // half of 32767, cut
        {"setSampleRate 0.5", 0},
        {"setBlockSize 1", 0},
        {"resume", 0},
        // clang-format off
        {"", 0}, {"", 0}, {"", 0}, // 13 to 15: no editor
        {"", 0}, {"", 0}, {"", 0}, {"", 0}, {"", 0}, {"", 0}, // 16 to 21: nothing to call
        // clang-format on
        {"", 0x4E764566},
        {"getChunk p 1", 7},
        {"setChunk p 1 1", 7},
        {"processEvents p", 7},
        {"canParameterBeAutomated 3", 1},
        {"string2parameter 3 p", 1},
        {"getNumCategories", 7},
        {"getProgramNameIndexed 1 3 p", 1},
        {"copyProgram 3", 1},
        {"inputConnected 3 1", 1},
        {"outputConnected 3 1", 1},
        {"getInputProperties 3 p", 1},
        {"getOutputProperties 3 p", 1},
        {"getPlugCategory", 7},
        {"reportCurrentPosition", 7},
        {"reportDestinationBuffer", 7},
        {"offlineNotify p 1 1", 1},
        {"offlinePrepare p 1", 1},
        {"offlineRun p 1", 1},
        {"processVariableIo p", 1},
        {"setSpeakerArrangement 1 p", 1},
        {"setBlockSizeAndSampleRate 1 0.5", 1},
        {"setBypass 1", 1},
        {"getEffectName p", 1},
        {"getErrorText p", 1},
        {"getVendorString p", 1},
        {"getProductString p", 1},
        {"getVendorVersion", 7},
        {"vendorSpecific 3 1 p 0.5", 7},
        {"canDo p", 7},
        {"getGetTailSize", 7},
        {"fxIdle", 7},
        {"getIcon", 7},
        {"setViewPosition 3 1", 1},
        {"getParameterProperties 3 p", 1},
        {"keysRequired", 0}, // inverted
        {"getVstVersion", 7},
    };
    ASSERT_EQ(std::size(rows), 59u);
    RecordingEffect effect;
    for (int32 opcode = 0; opcode < 59; ++opcode) {
        SCOPED_TRACE(opcode);
        effect.last.clear();
        EXPECT_EQ(effect.dispatcher(opcode, 3, 1, p, 0.5f), rows[opcode].result);
        EXPECT_EQ(effect.last, rows[opcode].called);
    }
    effect.last.clear();
    for (const int32 opcode : {-1, 59, 1000, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(effect.dispatcher(opcode, 3, 1, p, 0.5f), 0);
        EXPECT_EQ(effect.last, "");
    }
}

TEST(Dispatcher, TakesNumbersAsOnAndOff) {
    const struct {
        int32 opcode;
        int32 index;
        intptr value;
        const char* called;
    } rows[] = {
        {effSetProgram, 0, 2, ""}, // there are two programs
        {effSetProgram, 0, -5, "setProgram -5"},
        {effMainsChanged, 0, 0, "suspend"},
        {effMainsChanged, 0, 2, "resume"},
        {effGetChunk, 0, 1, "getChunk p 0"},
        {effSetChunk, 0, 1, "setChunk p 1 0"},
        {effConnectInput, 3, 0, "inputConnected 3 0"},
        {effConnectOutput, 3, -1, "outputConnected 3 1"},
        {effOfflineNotify, 0, 1, "offlineNotify p 1 0"},
        {effSetBypass, 0, 0, "setBypass 0"},
    };
    for (const auto& row : rows) {
        RecordingEffect effect;
        effect.dispatcher(row.opcode, row.index, row.value, p, 0.0f);
        EXPECT_EQ(effect.last, row.called);
    }
}

TEST(Dispatcher, AnswersForTheEqualizer) {
    ParametricEqualizer effect(nullptr);
    std::map<int32, intptr> answers = {
        {effIdentify, 0x4E764566}, {effCanBeAutomated, 1}, {effGetNumProgramCategories, 1},
        {effConnectInput, 1},      {effConnectOutput, 1},  {effSetBlockSizeAndSampleRate, 1},
        {effKeysRequired, 1},      {effGetVstVersion, 2}};
    for (int32 opcode = effEditDraw; opcode <= 59; ++opcode) {
        if (opcode == effEditIdle) continue; // the editor's own
        char text[64] = "as it was";
        EXPECT_EQ(effect.dispatcher(opcode, 500, 64, text, 48000.0f), answers[opcode]) << opcode;
        EXPECT_STREQ(text, "as it was") << opcode;
    }
    EXPECT_EQ(effect.getBlockSize(), 64);
    EXPECT_EQ(effect.getSampleRate(), 48000.0f);
    for (const auto& [program, found] : {std::pair(1, 0), std::pair(-2, -2)}) {
        effect.dispatcher(effSetProgram, 0, program, nullptr, 0.0f);
        EXPECT_EQ(effect.dispatcher(effGetProgram, 0, 0, nullptr, 0.0f), found);
    }
    char name[32] = "Mine";
    effect.dispatcher(effSetProgramName, 0, 0, name, 0.0f);
    EXPECT_STREQ(name, "");
    effect.dispatcher(effGetProgramName, 0, 0, name, 0.0f);
    EXPECT_STREQ(name, "Parametric Equalizer");
}

} // namespace
