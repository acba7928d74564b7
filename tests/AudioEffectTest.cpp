#include "plugin/AudioEffectX.h"

#include "tests/support/ScriptedHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <vector>

namespace {

class PlainEffect : public AudioEffectX {
public:
    explicit PlainEffect(audioMasterCallback host = nullptr) : AudioEffectX(host, 3, 7) {}
    void process(float**, float**, int32) override {}
};

TEST(AudioEffect, FillsTheRecord) {
    PlainEffect effect;
    const AEffect& record = *effect.getAeffect();
    EXPECT_EQ(record.magic, 0x56737450);
    EXPECT_EQ(record.numPrograms, 3);
    EXPECT_EQ(record.numParams, 7);
    EXPECT_EQ(record.numInputs, 1);
    EXPECT_EQ(record.numOutputs, 2);
    EXPECT_EQ(record.ioRatio, 1.0f);
    EXPECT_EQ(record.object, static_cast<AudioEffect*>(&effect));
    EXPECT_EQ(record.uniqueID, 0x4E6F4566);
    EXPECT_EQ(record.version, 1);
    for (const int32 zero :
         {record.flags, record.resvd1, record.resvd2, record.initialDelay, record.realQualities, record.offQualities})
        EXPECT_EQ(zero, 0);
    EXPECT_EQ(record.user, nullptr);
    EXPECT_TRUE(std::all_of(std::begin(record.future), std::end(record.future), [](char c) { return c == 0; }));
    EXPECT_EQ(effect.getSampleRate(), 44100.0f);
    EXPECT_EQ(effect.getBlockSize(), 1024);
    EXPECT_EQ(effect.getProgram(), 0);
}

TEST(AudioEffect, SettersReachTheirFieldOfTheRecord) {
    PlainEffect effect;
    effect.setUniqueID(1);
    effect.setNumInputs(2);
    effect.setNumOutputs(3);
    effect.setRealtimeQualities(4);
    effect.setOfflineQualities(5);
    effect.setInitialDelay(6);
    const AEffect& record = *effect.getAeffect();
    const std::array<int32, 6> fields = {record.uniqueID,      record.numInputs,    record.numOutputs,
                                         record.realQualities, record.offQualities, record.initialDelay};
    EXPECT_EQ(fields, (std::array<int32, 6>{1, 2, 3, 4, 5, 6}));
}

TEST(AudioEffect, EachFlagSetterMovesOneBit) {
    const struct {
        void (AudioEffectX::*setter)(bool);
        int32 bit;
    } cases[] = {
        {&AudioEffectX::hasClip, 2},
        {&AudioEffectX::hasVu, 4},
        {&AudioEffectX::canMono, 8},
        {&AudioEffectX::canProcessReplacing, 16},
        {&AudioEffectX::programsAreChunks, 32},
        {&AudioEffectX::isSynth, 256},
        {&AudioEffectX::noTail, 512},
        {&AudioEffectX::wantAsyncOperation, 1024},
        {&AudioEffectX::hasExternalBuffer, 2048},
    };
    for (const auto& [setter, bit] : cases) {
        PlainEffect effect;
        (effect.*setter)(true);
        EXPECT_EQ(effect.getAeffect()->flags, bit);
        effect.getAeffect()->flags = -1;
        (effect.*setter)(false);
        EXPECT_EQ(effect.getAeffect()->flags, ~bit);
    }
    PlainEffect instrument;
    EXPECT_EQ(instrument.getPlugCategory(), 0);
    instrument.isSynth(true);
    EXPECT_EQ(instrument.getPlugCategory(), 2);
}

TEST(AudioEffect, EmptiesTheTextsItDoesNotHave) {
    PlainEffect effect;
    char name[] = "name", program[] = "name", label[] = "name", display[] = "name", parameter[] = "name";
    effect.setProgramName(name);
    effect.getProgramName(program);
    effect.getParameterLabel(0, label);
    effect.getParameterDisplay(0, display);
    effect.getParameterName(0, parameter);
    for (const char* text : {name, program, label, display, parameter}) EXPECT_STREQ(text, "");
}

TEST(AudioEffect, WritesNumbersInEightCharacters) {
    using Tool = void (*)(PlainEffect&, char*);
    const struct {
        Tool write;
        const char* text;
    } cases[] = {
        {[](PlainEffect& e, char* text) { e.dB2string(0.0f, text); }, "  -oo   "},
        {[](PlainEffect& e, char* text) { e.dB2string(-1.0f, text); }, "  -oo   "},
        {[](PlainEffect& e, char* text) { e.dB2string(1.0f, text); }, "0.000000"},
        {[](PlainEffect& e, char* text) { e.dB2string(0.1f, text); }, "-20.0000"},
        {[](PlainEffect& e, char* text) { e.Hz2string(0.0f, text); }, "0.000000"},
        {[](PlainEffect& e, char* text) { e.Hz2string(100.0f, text); }, "441.0000"},
        {[](PlainEffect& e, char* text) { e.ms2string(22050.0f, text); }, "500.0000"},
        {[](PlainEffect& e, char* text) { e.float2string(1.5f, text); }, "1.500000"},
        {[](PlainEffect& e, char* text) { e.float2string(-1.5f, text); }, "-1.50000"},
        {[](PlainEffect& e, char* text) { e.float2string(64.25f, text); }, "64.25000"},
        {[](PlainEffect& e, char* text) { e.float2string(-1234567.0f, text); }, "-234567."},
        {[](PlainEffect& e, char* text) { e.float2string(12345678.0f, text); }, "2345678."},
        {[](PlainEffect& e, char* text) { e.float2string(100000000.0f, text); }, "as it was"},
        {[](PlainEffect& e, char* text) { e.float2string(-10000000.0f, text); }, "as it was"},
        {[](PlainEffect& e, char* text) { e.float2string(std::numeric_limits<float>::quiet_NaN(), text); },
         "as it was"},
        {[](PlainEffect& e, char* text) { e.long2string(99999999, text); }, "99999999"},
        {[](PlainEffect& e, char* text) { e.long2string(100000000, text); }, " Huge!  "},
        {[](PlainEffect& e, char* text) { e.long2string(5, text); }, "      5"},
        {[](PlainEffect& e, char* text) { e.long2string(-123456789, text); }, "-1234567"},
    };
    PlainEffect effect;
    for (const auto& [write, expected] : cases) {
        char text[16] = "as it was";
        write(effect, text);
        EXPECT_STREQ(text, expected);
    }
}

// What a call to the host gives for the answers 0, 1 and 7, and without a host.
using Results = std::array<intptr, 4>;
constexpr Results Nothing = {0, 0, 0, 0};
constexpr Results Answer = {0, 1, 7, 0};
constexpr Results TrueIfNonZero = {0, 1, 1, 0};
constexpr Results TrueIfOne = {0, 1, 0, 0};
constexpr Results TrueIfZero = {1, 0, 0, 1};

intptr asNumber(void* pointer) {
    return reinterpret_cast<intptr>(pointer);
}

TEST(AudioEffect, CallsTheHostAsThePublishedTableTells) {
    static char objects[2];
    static void* const p = &objects[0];
    static void* const q = &objects[1];
    const struct {
        intptr (*call)(PlainEffect&);
        HostCall sent;
        Results results;
    } cases[] = {
        {[](PlainEffect& e) -> intptr { return e.setParameterAutomated(3, 0.5f), 0; },
         {{}, 0, 3, 0, {}, 0.5f},
         Nothing},
        {[](PlainEffect& e) -> intptr { return e.getMasterVersion(); }, {{}, 1, 0, 0, {}, 0}, {1, 1, 7, 1}},
        {[](PlainEffect& e) -> intptr { return e.getCurrentUniqueId(); }, {{}, 2, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.masterIdle(), 0; }, {{}, 3, 0, 0, {}, 0}, Nothing},
        {[](PlainEffect& e) -> intptr { return e.isInputConnected(3); }, {{}, 4, 3, 0, {}, 0}, TrueIfZero},
        {[](PlainEffect& e) -> intptr { return e.isOutputConnected(3); }, {{}, 4, 3, 1, {}, 0}, TrueIfZero},
        {[](PlainEffect& e) -> intptr { return e.wantEvents(5), 0; }, {{}, 6, 0, 5, {}, 0}, Nothing},
        {[](PlainEffect& e) -> intptr { return asNumber(e.getTimeInfo(5)); }, {{}, 7, 0, 5, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.sendVstEventsToHost(p); }, {{}, 8, 0, 0, p, 0}, TrueIfOne},
        {[](PlainEffect& e) -> intptr { return e.tempoAt(5); }, {{}, 10, 0, 5, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.getNumAutomatableParameters(); }, {{}, 11, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.getParameterQuantization(); }, {{}, 12, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.ioChanged(); }, {{}, 13, 0, 0, {}, 0}, TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.needIdle(); }, {{}, 14, 0, 0, {}, 0}, TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.sizeWindow(3, 5); }, {{}, 15, 3, 5, {}, 0}, TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return static_cast<intptr>(e.updateSampleRate()); },
         {{}, 16, 0, 0, {}, 0},
         {44100, 44100, 44100, 44100}},
        {[](PlainEffect& e) -> intptr { return e.updateBlockSize(); }, {{}, 17, 0, 0, {}, 0}, {1024, 1024, 1024, 1024}},
        {[](PlainEffect& e) -> intptr { return e.getInputLatency(); }, {{}, 18, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.getOutputLatency(); }, {{}, 19, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return asNumber(e.getPreviousPlug(3)); }, {{}, 20, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return asNumber(e.getNextPlug(3)); }, {{}, 21, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.willProcessReplacing(); }, {{}, 22, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.getCurrentProcessLevel(); }, {{}, 23, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.getAutomationState(); }, {{}, 24, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.offlineStart(p, 5, 3); }, {{}, 25, 3, 5, p, 0}, TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.offlineRead(p, 5, true); }, {{}, 26, 1, 5, p, 0}, TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.offlineWrite(p, 5); }, {{}, 27, 0, 5, p, 0}, TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.offlineGetCurrentPass(); }, {{}, 28, 0, 0, {}, 0}, TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.offlineGetCurrentMetaPass(); }, {{}, 29, 0, 0, {}, 0}, TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.setOutputSamplerate(0.5f), 0; }, {{}, 30, 0, 0, {}, 0.5f}, Nothing},
        {[](PlainEffect& e) -> intptr { return e.getSpeakerArrangement(p, q); },
         {{}, 31, 0, asNumber(p), q, 0},
         TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.getHostVendorString(static_cast<char*>(p)); },
         {{}, 32, 0, 0, p, 0},
         TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.getHostProductString(static_cast<char*>(p)); },
         {{}, 33, 0, 0, p, 0},
         TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.getHostVendorVersion(); }, {{}, 34, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.hostVendorSpecific(3, 5, p, 0.5f); }, {{}, 35, 3, 5, p, 0.5f}, Answer},
        {[](PlainEffect& e) -> intptr { return e.canHostDo(static_cast<char*>(p)); },
         {{}, 37, 0, 0, p, 0},
         TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return e.getHostLanguage(); }, {{}, 38, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return asNumber(e.openWindow(p)); }, {{}, 39, 0, 0, p, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.closeWindow(p); }, {{}, 40, 0, 0, p, 0}, TrueIfNonZero},
        {[](PlainEffect& e) -> intptr { return asNumber(e.getDirectory()); }, {{}, 41, 0, 0, {}, 0}, Answer},
        {[](PlainEffect& e) -> intptr { return e.updateDisplay(); }, {{}, 42, 0, 0, {}, 0}, TrueIfNonZero},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.sent.opcode);
        const intptr answers[] = {0, 1, 7};
        for (std::size_t i = 0; i < std::size(answers); ++i) {
            const ScriptedHost host(answers[i]);
            PlainEffect effect(ScriptedHost::callback);
            HostCall sent = row.sent;
            sent.effect = effect.getAeffect();
            EXPECT_EQ(row.call(effect), row.results[i]);
            EXPECT_EQ(host.calls(), std::vector{sent});
        }
        PlainEffect alone;
        EXPECT_EQ(row.call(alone), row.results[3]);
    }
}

// The place of a virtual operation in its class's table, as the compilers of both platforms lay out such a pointer.
template <typename Member>
std::size_t slotOf(Member member) {
    std::uintptr_t word;
    std::memcpy(&word, &member, sizeof word);
    return (word - 1) / sizeof(void*);
}

TEST(AudioEffect, KeepsTheOrderOfItsVirtualTable) {
    using A = AudioEffect;
    using X = AudioEffectX;
    const std::size_t slots[] = {
        slotOf(&A::setParameter), slotOf(&A::getParameter), slotOf(&A::setParameterAutomated), slotOf(&A::process),
        slotOf(&A::processReplacing), slotOf(&A::dispatcher), slotOf(&A::open), slotOf(&A::close),
        slotOf(&A::getProgram), slotOf(&A::setProgram), slotOf(&A::setProgramName), slotOf(&A::getProgramName),
        slotOf(&A::getParameterLabel), slotOf(&A::getParameterDisplay), slotOf(&A::getParameterName), slotOf(&A::getVu),
        slotOf(&A::getChunk), slotOf(&A::setChunk), slotOf(&A::setSampleRate), slotOf(&A::setBlockSize),
        slotOf(&A::suspend), slotOf(&A::resume), slotOf(&A::setUniqueID), slotOf(&A::setNumInputs),
        slotOf(&A::setNumOutputs), slotOf(&A::hasVu), slotOf(&A::hasClip), slotOf(&A::canMono),
        slotOf(&A::canProcessReplacing), slotOf(&A::programsAreChunks), slotOf(&A::setRealtimeQualities),
        slotOf(&A::setOfflineQualities), slotOf(&A::setInitialDelay), slotOf(&A::getSampleRate),
        slotOf(&A::getBlockSize), slotOf(&A::getMasterVersion), slotOf(&A::getCurrentUniqueId), slotOf(&A::masterIdle),
        slotOf(&A::isInputConnected), slotOf(&A::isOutputConnected), slotOf(&A::dB2string), slotOf(&A::Hz2string),
        slotOf(&A::ms2string), slotOf(&A::float2string), slotOf(&A::long2string),
        // AudioEffectX
        slotOf(&X::wantEvents), slotOf(&X::getTimeInfo), slotOf(&X::tempoAt), slotOf(&X::processEvents),
        slotOf(&X::getNumAutomatableParameters), slotOf(&X::getParameterQuantization),
        slotOf(&X::canParameterBeAutomated), slotOf(&X::string2parameter), slotOf(&X::getChannelParameter),
        slotOf(&X::getNumCategories), slotOf(&X::getProgramNameIndexed), slotOf(&X::copyProgram), slotOf(&X::ioChanged),
        slotOf(&X::needIdle), slotOf(&X::sizeWindow), slotOf(&X::updateSampleRate), slotOf(&X::updateBlockSize),
        slotOf(&X::getInputLatency), slotOf(&X::getOutputLatency), slotOf(&X::getPreviousPlug), slotOf(&X::getNextPlug),
        slotOf(&X::inputConnected), slotOf(&X::outputConnected), slotOf(&X::getInputProperties),
        slotOf(&X::getOutputProperties), slotOf(&X::getPlugCategory), slotOf(&X::willProcessReplacing),
        slotOf(&X::getCurrentProcessLevel), slotOf(&X::getAutomationState), slotOf(&X::wantAsyncOperation),
        slotOf(&X::hasExternalBuffer), slotOf(&X::reportCurrentPosition), slotOf(&X::reportDestinationBuffer),
        slotOf(&X::offlineRead), slotOf(&X::offlineWrite), slotOf(&X::offlineStart), slotOf(&X::offlineGetCurrentPass),
        slotOf(&X::offlineGetCurrentMetaPass), slotOf(&X::offlineNotify), slotOf(&X::offlinePrepare),
        slotOf(&X::offlineRun), slotOf(&X::offlineGetNumPasses), slotOf(&X::offlineGetNumMetaPasses),
        slotOf(&X::setOutputSamplerate), slotOf(&X::getSpeakerArrangement), slotOf(&X::getHostVendorString),
        slotOf(&X::getHostProductString), slotOf(&X::getHostVendorVersion), slotOf(&X::hostVendorSpecific),
        slotOf(&X::canHostDo), slotOf(&X::isSynth), slotOf(&X::noTail), slotOf(&X::getHostLanguage),
        slotOf(&X::openWindow), slotOf(&X::closeWindow), slotOf(&X::getDirectory), slotOf(&X::updateDisplay),
        slotOf(&X::processVariableIo), slotOf(&X::setSpeakerArrangement), slotOf(&X::setBlockSizeAndSampleRate),
        slotOf(&X::setBypass), slotOf(&X::getEffectName), slotOf(&X::getErrorText), slotOf(&X::getVendorString),
        slotOf(&X::getProductString), slotOf(&X::getVendorVersion), slotOf(&X::vendorSpecific), slotOf(&X::canDo),
        slotOf(&X::getIcon), slotOf(&X::setViewPosition), slotOf(&X::getGetTailSize), slotOf(&X::fxIdle),
        slotOf(&X::getParameterProperties), slotOf(&X::keysRequired), slotOf(&X::getVstVersion)};
    // The destructor comes first and takes two places in this layout.
    for (std::size_t i = 0; i < std::size(slots); ++i) EXPECT_EQ(slots[i], i + 2);

    using E = AEffEditor;
    const std::size_t editorSlots[] = {slotOf(&E::getRect), slotOf(&E::open),   slotOf(&E::close),
                                       slotOf(&E::idle),    slotOf(&E::update), slotOf(&E::postUpdate)};
    for (std::size_t i = 0; i < std::size(editorSlots); ++i) EXPECT_EQ(editorSlots[i], i + 2);
}

class CountingEditor : public AEffEditor {
public:
    CountingEditor(AudioEffect* owner, int& updateCount, int& endCount)
        : AEffEditor(owner), updates(updateCount), ends(endCount) {}
    ~CountingEditor() override { ++ends; }
    void update() override { ++updates; }

private:
    int& updates;
    int& ends;
};

TEST(AEffEditor, UpdatesOncePerPostAtTheNextIdle) {
    int updates = 0;
    int ends = 0;
    CountingEditor editor(nullptr, updates, ends);
    editor.idle();
    EXPECT_EQ(updates, 0);
    editor.postUpdate();
    editor.postUpdate();
    editor.idle();
    editor.idle();
    EXPECT_EQ(updates, 1);
    ERect rect;
    ERect* answer = &rect;
    EXPECT_EQ(editor.getRect(&answer), 0);
    EXPECT_EQ(answer, nullptr);
}

TEST(AudioEffect, OwnsItsEditor) {
    int updates = 0;
    int ends = 0;
    {
        PlainEffect effect;
        effect.setEditor(new CountingEditor(&effect, updates, ends));
        EXPECT_EQ(effect.getAeffect()->flags, effFlagsHasEditor);
    }
    EXPECT_EQ(ends, 1);
    PlainEffect without;
    without.getAeffect()->flags = -1;
    without.setEditor(nullptr);
    EXPECT_EQ(without.getAeffect()->flags, ~effFlagsHasEditor);
}

class ThrowingEffect : public PlainEffect {
public:
    explicit ThrowingEffect(int& endCount) : ends(endCount) {}
    ~ThrowingEffect() override { ++ends; }
    void process(float**, float**, int32) override { throw std::runtime_error("process"); }
    void processReplacing(float**, float**, int32) override { throw std::runtime_error("processReplacing"); }
    void setParameter(int32, float) override { throw 1; }
    float getParameter(int32) override { throw 1; }
    intptr dispatcher(int32, int32, intptr, void*, float) override { throw 1; }

private:
    int& ends;
};

TEST(EntryFunctions, LetNothingThrownThrough) {
    int ends = 0;
    AEffect* const record = (new ThrowingEffect(ends))->getAeffect();
    record->process(record, nullptr, nullptr, 1);
    record->processReplacing(record, nullptr, nullptr, 1);
    record->setParameter(record, 0, 1.0f);
    EXPECT_EQ(record->getParameter(record, 0), 0.0f);
    EXPECT_EQ(record->dispatcher(record, effIdentify, 0, 0, nullptr, 0.0f), 0);
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(record->dispatcher(record, effClose, 0, 0, nullptr, 0.0f), 1);
    EXPECT_EQ(ends, 1);
}

} // namespace
