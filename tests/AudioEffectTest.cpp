#include "plugin/AudioEffectX.h"

#include "tests/support/ScriptedHost.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <type_traits>
#include <utility>
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
    EXPECT_EQ(record.flags, 0);
    EXPECT_EQ(record.initialDelay, 0);
    EXPECT_EQ(effect.getSampleRate(), 44100.0f);
    EXPECT_EQ(effect.getBlockSize(), 1024);
    EXPECT_EQ(effect.getProgram(), 0);
}

TEST(AudioEffect, SettersReachTheirPlaceInTheRecord) {
    PlainEffect effect;
    effect.setUniqueID(1);
    effect.setNumInputs(2);
    effect.setNumOutputs(3);
    effect.setRealtimeQualities(4);
    effect.setOfflineQualities(5);
    effect.setInitialDelay(6);
    AEffect& record = *effect.getAeffect();
    const std::array<int32, 6> fields = {record.uniqueID,      record.numInputs,    record.numOutputs,
                                         record.realQualities, record.offQualities, record.initialDelay};
    EXPECT_EQ(fields, (std::array<int32, 6>{1, 2, 3, 4, 5, 6}));

    using X = AudioEffectX;
    const std::pair<void (X::*)(bool), int32> flags[] = {{&X::hasClip, 2},
                                                         {&X::hasVu, 4},
                                                         {&X::canMono, 8},
                                                         {&X::canProcessReplacing, 16},
                                                         {&X::programsAreChunks, 32},
                                                         {&X::isSynth, 256},
                                                         {&X::noTail, 512},
                                                         {&X::wantAsyncOperation, 1024},
                                                         {&X::hasExternalBuffer, 2048}};
    for (const auto& [setter, bit] : flags) {
        record.flags = 0;
        (effect.*setter)(true);
        EXPECT_EQ(record.flags, bit);
        EXPECT_EQ(effect.getPlugCategory(), bit == 256 ? 2 : 0);
        record.flags = -1;
        (effect.*setter)(false);
        EXPECT_EQ(record.flags, ~bit);
    }
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
        {[](PlainEffect& e, char* text) { e.dB2string(0.1f, text); }, "-20.0000"},
        {[](PlainEffect& e, char* text) { e.Hz2string(100.0f, text); }, "441.0000"},
        {[](PlainEffect& e, char* text) { e.ms2string(22050.0f, text); }, "500.0000"},
        {[](PlainEffect& e, char* text) { e.float2string(-1.5f, text); }, "-1.50000"},
        {[](PlainEffect& e, char* text) { e.float2string(-1234567.0f, text); }, "-234567."},
        {[](PlainEffect& e, char* text) { e.float2string(100000000.0f, text); }, "as it was"},
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

char object;
char other;

intptr asNumber(void* pointer) {
    return reinterpret_cast<intptr>(pointer);
}

/// Calls the member function with these arguments, and gives its result as a number.
template <auto Member, auto... Arguments>
intptr call(PlainEffect& effect) {
    using Result = decltype((effect.*Member)(Arguments...));
    if constexpr (std::is_void_v<Result>)
        return (effect.*Member)(Arguments...), 0;
    else if constexpr (std::is_pointer_v<Result>)
        return asNumber((effect.*Member)(Arguments...));
    else
        return static_cast<intptr>((effect.*Member)(Arguments...));
}

TEST(AudioEffect, CallsTheHostAsThePublishedTableTells) {
    using X = AudioEffectX;
    const struct {
        intptr (*call)(PlainEffect&);
        HostCall sent;
        Results results;
    } cases[] = {
        {call<&X::setParameterAutomated, 3, 0.5f>, {{}, 0, 3, 0, {}, 0.5f}, Nothing},
        {call<&X::getMasterVersion>, {{}, 1, 0, 0, {}, 0}, {1, 1, 7, 1}},
        {call<&X::getCurrentUniqueId>, {{}, 2, 0, 0, {}, 0}, Answer},
        {call<&X::masterIdle>, {{}, 3, 0, 0, {}, 0}, Nothing},
        {call<&X::isInputConnected, 3>, {{}, 4, 3, 0, {}, 0}, TrueIfZero},
        {call<&X::isOutputConnected, 3>, {{}, 4, 3, 1, {}, 0}, TrueIfZero},
        {call<&X::wantEvents, 5>, {{}, 6, 0, 5, {}, 0}, Nothing},
        {call<&X::getTimeInfo, 5>, {{}, 7, 0, 5, {}, 0}, Answer},
        {call<&X::sendVstEventsToHost, &object>, {{}, 8, 0, 0, &object, 0}, TrueIfOne},
        {call<&X::tempoAt, 5>, {{}, 10, 0, 5, {}, 0}, Answer},
        {call<&X::getNumAutomatableParameters>, {{}, 11, 0, 0, {}, 0}, Answer},
        {call<&X::getParameterQuantization>, {{}, 12, 0, 0, {}, 0}, Answer},
        {call<&X::ioChanged>, {{}, 13, 0, 0, {}, 0}, TrueIfNonZero},
        {call<&X::needIdle>, {{}, 14, 0, 0, {}, 0}, TrueIfNonZero},
        {call<&X::sizeWindow, 3, 5>, {{}, 15, 3, 5, {}, 0}, TrueIfNonZero},
        {call<&X::updateSampleRate>, {{}, 16, 0, 0, {}, 0}, {44100, 44100, 44100, 44100}},
        {call<&X::updateBlockSize>, {{}, 17, 0, 0, {}, 0}, {1024, 1024, 1024, 1024}},
        {call<&X::getInputLatency>, {{}, 18, 0, 0, {}, 0}, Answer},
        {call<&X::getOutputLatency>, {{}, 19, 0, 0, {}, 0}, Answer},
        {call<&X::getPreviousPlug, 3>, {{}, 20, 0, 0, {}, 0}, Answer},
        {call<&X::getNextPlug, 3>, {{}, 21, 0, 0, {}, 0}, Answer},
        {call<&X::willProcessReplacing>, {{}, 22, 0, 0, {}, 0}, Answer},
        {call<&X::getCurrentProcessLevel>, {{}, 23, 0, 0, {}, 0}, Answer},
        {call<&X::getAutomationState>, {{}, 24, 0, 0, {}, 0}, Answer},
        {call<&X::offlineStart, &object, 5, 3>, {{}, 25, 3, 5, &object, 0}, TrueIfNonZero},
        {call<&X::offlineRead, &object, 5, true>, {{}, 26, 1, 5, &object, 0}, TrueIfNonZero},
        {call<&X::offlineWrite, &object, 5>, {{}, 27, 0, 5, &object, 0}, TrueIfNonZero},
        {call<&X::offlineGetCurrentPass>, {{}, 28, 0, 0, {}, 0}, TrueIfNonZero},
        {call<&X::offlineGetCurrentMetaPass>, {{}, 29, 0, 0, {}, 0}, TrueIfNonZero},
        {call<&X::setOutputSamplerate, 0.5f>, {{}, 30, 0, 0, {}, 0.5f}, Nothing},
        {call<&X::getSpeakerArrangement, &object, &other>, {{}, 31, 0, asNumber(&object), &other, 0}, TrueIfNonZero},
        {call<&X::getHostVendorString, &object>, {{}, 32, 0, 0, &object, 0}, TrueIfNonZero},
        {call<&X::getHostProductString, &object>, {{}, 33, 0, 0, &object, 0}, TrueIfNonZero},
        {call<&X::getHostVendorVersion>, {{}, 34, 0, 0, {}, 0}, Answer},
        {call<&X::hostVendorSpecific, 3, 5, &object, 0.5f>, {{}, 35, 3, 5, &object, 0.5f}, Answer},
        {call<&X::canHostDo, &object>, {{}, 37, 0, 0, &object, 0}, TrueIfNonZero},
        {call<&X::getHostLanguage>, {{}, 38, 0, 0, {}, 0}, Answer},
        {call<&X::openWindow, &object>, {{}, 39, 0, 0, &object, 0}, Answer},
        {call<&X::closeWindow, &object>, {{}, 40, 0, 0, &object, 0}, TrueIfNonZero},
        {call<&X::getDirectory>, {{}, 41, 0, 0, {}, 0}, Answer},
        {call<&X::updateDisplay>, {{}, 42, 0, 0, {}, 0}, TrueIfNonZero},
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

template <typename... Member>
std::array<std::size_t, sizeof...(Member)> slotsOf(Member... members) {
    return {slotOf(members)...};
}

TEST(AudioEffect, KeepsTheOrderOfItsVirtualTable) {
    using A = AudioEffect;
    using X = AudioEffectX;
    const auto slots = slotsOf(
        &A::setParameter, &A::getParameter, &A::setParameterAutomated, &A::process, &A::processReplacing,
        &A::dispatcher, &A::open, &A::close, &A::getProgram, &A::setProgram, &A::setProgramName, &A::getProgramName,
        &A::getParameterLabel, &A::getParameterDisplay, &A::getParameterName, &A::getVu, &A::getChunk, &A::setChunk,
        &A::setSampleRate, &A::setBlockSize, &A::suspend, &A::resume, &A::setUniqueID, &A::setNumInputs,
        &A::setNumOutputs, &A::hasVu, &A::hasClip, &A::canMono, &A::canProcessReplacing, &A::programsAreChunks,
        &A::setRealtimeQualities, &A::setOfflineQualities, &A::setInitialDelay, &A::getSampleRate, &A::getBlockSize,
        &A::getMasterVersion, &A::getCurrentUniqueId, &A::masterIdle, &A::isInputConnected, &A::isOutputConnected,
        &A::dB2string, &A::Hz2string, &A::ms2string, &A::float2string, &A::long2string, &X::wantEvents, &X::getTimeInfo,
        &X::tempoAt, &X::processEvents, &X::getNumAutomatableParameters, &X::getParameterQuantization,
        &X::canParameterBeAutomated, &X::string2parameter, &X::getChannelParameter, &X::getNumCategories,
        &X::getProgramNameIndexed, &X::copyProgram, &X::ioChanged, &X::needIdle, &X::sizeWindow, &X::updateSampleRate,
        &X::updateBlockSize, &X::getInputLatency, &X::getOutputLatency, &X::getPreviousPlug, &X::getNextPlug,
        &X::inputConnected, &X::outputConnected, &X::getInputProperties, &X::getOutputProperties, &X::getPlugCategory,
        &X::willProcessReplacing, &X::getCurrentProcessLevel, &X::getAutomationState, &X::wantAsyncOperation,
        &X::hasExternalBuffer, &X::reportCurrentPosition, &X::reportDestinationBuffer, &X::offlineRead,
        &X::offlineWrite, &X::offlineStart, &X::offlineGetCurrentPass, &X::offlineGetCurrentMetaPass, &X::offlineNotify,
        &X::offlinePrepare, &X::offlineRun, &X::offlineGetNumPasses, &X::offlineGetNumMetaPasses,
        &X::setOutputSamplerate, &X::getSpeakerArrangement, &X::getHostVendorString, &X::getHostProductString,
        &X::getHostVendorVersion, &X::hostVendorSpecific, &X::canHostDo, &X::isSynth, &X::noTail, &X::getHostLanguage,
        &X::openWindow, &X::closeWindow, &X::getDirectory, &X::updateDisplay, &X::processVariableIo,
        &X::setSpeakerArrangement, &X::setBlockSizeAndSampleRate, &X::setBypass, &X::getEffectName, &X::getErrorText,
        &X::getVendorString, &X::getProductString, &X::getVendorVersion, &X::vendorSpecific, &X::canDo, &X::getIcon,
        &X::setViewPosition, &X::getGetTailSize, &X::fxIdle, &X::getParameterProperties, &X::keysRequired,
        &X::getVstVersion);
    // The destructor comes first and takes two places in this layout.
    for (std::size_t i = 0; i < std::size(slots); ++i) EXPECT_EQ(slots[i], i + 2);

    using E = AEffEditor;
    const auto editorSlots = slotsOf(&E::getRect, &E::open, &E::close, &E::idle, &E::update, &E::postUpdate);
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

TEST(AudioEffect, OwnsItsEditorWhichUpdatesOncePerPostAtTheNextIdle) {
    int updates = 0;
    int ends = 0;
    {
        PlainEffect effect;
        auto* const editor = new CountingEditor(&effect, updates, ends);
        effect.setEditor(editor);
        EXPECT_EQ(effect.getAeffect()->flags, effFlagsHasEditor);
        editor->idle();
        EXPECT_EQ(updates, 0);
        editor->postUpdate();
        editor->postUpdate();
        editor->idle();
        editor->idle();
        EXPECT_EQ(updates, 1);
        ERect rect;
        ERect* answer = &rect;
        EXPECT_EQ(editor->getRect(&answer), 0);
        EXPECT_EQ(answer, nullptr);
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
