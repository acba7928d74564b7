#include "plugin/base/AudioEffectX.h"

#include "editor/EqualizerEditor.h"
#include "tests/support/ScriptedHost.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <numeric>
#include <string>
#include <type_traits>
#include <vector>

namespace eq {

namespace {

class PlainEffect : public AudioEffectX {
public:
    explicit PlainEffect(audioMasterCallback host = nullptr) : AudioEffectX(host, 3, 7) {}
    void process(float**, float**, int32) override {}
};

TEST(AudioEffect, FillsTheRecordAndEachSetterChangesItsField) {
    PlainEffect effect;
    AEffect& record = *effect.getAeffect();
    const auto fields = [&record] {
        return std::array{record.magic,        record.numPrograms, record.numParams, record.numInputs,
                          record.numOutputs,   record.uniqueID,    record.version,   record.realQualities,
                          record.offQualities, record.initialDelay};
    };
    EXPECT_EQ(fields(), (std::array{0x56737450, 3, 7, 1, 2, 0x4E6F4566, 1, 0, 0, 0}));
    EXPECT_EQ(record.ioRatio, 1.0f);
    EXPECT_EQ(record.object, static_cast<AudioEffect*>(&effect));
    EXPECT_EQ(record.flags, 0);
    EXPECT_EQ(effect.getSampleRate(), 44100.0f);
    EXPECT_EQ(effect.getBlockSize(), 1024);
    effect.setUniqueID(1);
    effect.setNumInputs(2);
    effect.setNumOutputs(3);
    effect.setRealtimeQualities(4);
    effect.setOfflineQualities(5);
    effect.setInitialDelay(6);
    EXPECT_EQ(fields(), (std::array{0x56737450, 3, 7, 2, 3, 1, 1, 4, 5, 6}));

    using X = AudioEffectX;
    // clang-format off
    const std::pair<void (X::*)(bool), int32> flags[] = {
        {&X::hasClip, 2}, {&X::hasVu, 4}, {&X::programsAreChunks, 32}, {&X::isSynth, 256}, {&X::noTail, 512},
        {&X::wantAsyncOperation, 1024}, {&X::hasExternalBuffer, 2048}};
    // clang-format on
    for (const auto& [set, bit] : flags) {
        record.flags = 0;
        (effect.*set)(true);
        EXPECT_EQ(std::pair(record.flags, effect.getPlugCategory()), std::pair(bit, bit == 256 ? 2 : 0));
        record.flags = -1;
        (effect.*set)(false);
        EXPECT_EQ(record.flags, ~bit);
    }
    effect.setEditor(nullptr);
    EXPECT_EQ(record.flags & effFlagsHasEditor, 0);
}

TEST(AudioEffect, StoresTheRatesAndBlockSizesOfTheHost) {
    PlainEffect effect;
    const auto stores = [&effect](float rate, int32 frames) {
        return effect.getSampleRate() == rate && effect.updateSampleRate() == rate && effect.getBlockSize() == frames &&
               effect.updateBlockSize() == frames;
    };
    effect.dispatcher(effSetSampleRate, 0, 0, nullptr, 22050.0f);
    effect.dispatcher(effSetBlockSize, 0, 64, nullptr, 0.0f);
    EXPECT_TRUE(stores(22050.0f, 64));
    EXPECT_EQ(effect.dispatcher(effSetBlockSizeAndSampleRate, 0, 512, nullptr, 96000.0f), 1);
    EXPECT_TRUE(stores(96000.0f, 512));
}

TEST(AudioEffect, HasHarmlessOperationsThatNoOtherCodeCalls) {
    PlainEffect effect;
    EXPECT_EQ(effect.getParameter(0) + effect.getChannelParameter(0, 0), 0.0f);
    EXPECT_EQ(effect.offlineGetNumPasses() + effect.offlineGetNumMetaPasses() + effect.getProgram(), 0);
    effect.setProgram(2);
    EXPECT_EQ(effect.getProgram(), 2);
    for (const int32 opcode : {effEditGetRect, effEditOpen, effEditClose, effEditIdle})
        EXPECT_EQ(effect.dispatcher(opcode, 0, 0, nullptr, 0.0f), 0); // there is no editor
}

TEST(AEffEditor, UpdatesOnceAfterEachRequest) {
    struct PlainEditor : AEffEditor {
        using AEffEditor::AEffEditor;
        void update() override {
            if (++updates == 2) postUpdate(); // the base clears the flag first, so this request counts
        }
        int updates = 0;
    };
    PlainEditor editor(nullptr);
    ERect* rect = reinterpret_cast<ERect*>(&editor);
    EXPECT_EQ(editor.open(rect) + editor.getRect(&rect), 0);
    EXPECT_EQ(rect, nullptr);
    for (const auto& [isRequested, updates] : {std::pair(false, 0), {true, 1}, {false, 1}, {true, 2}, {false, 3}}) {
        if (isRequested) editor.postUpdate();
        editor.idle();
        EXPECT_EQ(editor.updates, updates);
    }
}

TEST(AudioEffect, WritesNumbersInEightCharactersAndReturnsEmptyTextsByDefault) {
    PlainEffect effect;
    const auto written = [&effect](auto member, auto... arguments) {
        char text[16] = "as it was";
        (effect.*member)(arguments..., text);
        return std::string(text);
    };
    using A = AudioEffect;
    // clang-format off
    const std::tuple<void (A::*)(float, char*), float, const char*> levels[] = {
        {&A::dB2string, 0.0f, "  -oo   "}, {&A::dB2string, 0.1f, "-20.0000"}, {&A::dB2string, 1.0f, "0.000000"},
        {&A::dB2string, -1.0f, "  -oo   "}, {&A::Hz2string, 100.0f, "441.0000"}, {&A::Hz2string, 0.0f, "0.000000"},
        {&A::ms2string, 22050.0f, "500.0000"}};
    const std::pair<float, const char*> numbers[] = {
        {1.5f, "1.500000"}, {-1.5f, "-1.50000"}, {10.0f, "10.00000"}, {-0.0f, "0.000000"}, {NAN, "as it was"},
        {12345678.0f, "2345678."}, {99999992.0f, "9999992."}, {100000000.0f, "as it was"},
        {-1234567.0f, "-234567."}, {-9999999.0f, "-999999."}, {-10000000.0f, "as it was"}};
    // clang-format on
    for (const auto& [write, level, text] : levels) EXPECT_EQ(written(write, level), text) << level;
    for (const auto& [number, text] : numbers) EXPECT_EQ(written(&A::float2string, number), text) << number;
    for (const auto& [number, text] :
         {std::pair(5, "      5"), {99999999, "99999999"}, {100000000, " Huge!  "}, {-123456789, "-1234567"}})
        EXPECT_EQ(written(&A::long2string, number), text);
    EXPECT_EQ(written(&A::setProgramName) + written(&A::getProgramName), "");
    for (const auto text : {&A::getParameterLabel, &A::getParameterDisplay, &A::getParameterName})
        EXPECT_EQ(written(text, 0), "");
}

// The results of a host request if the host returns 0, 1 or 7, and without a host.
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

/// Calls the member function with these arguments, and returns its result as a number.
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

struct HostRow {
    intptr (*call)(PlainEffect&);
    Results results;
    int32 opcode;
    int32 index = 0;
    intptr value = 0;
    void* ptr = nullptr;
    float opt = 0;
};

void expectToCallTheHost(const HostRow& row) {
    const auto& [call, results, opcode, index, value, ptr, opt] = row;
    SCOPED_TRACE(opcode);
    for (const auto& [answer, result] : {std::pair(0, results[0]), {1, results[1]}, {7, results[2]}}) {
        const ScriptedHost host(answer);
        PlainEffect effect(ScriptedHost::callback);
        EXPECT_EQ(call(effect), result);
        EXPECT_EQ(host.calls(), (std::vector<HostCall>{{effect.getAeffect(), opcode, index, value, ptr, opt}}));
    }
    PlainEffect alone;
    EXPECT_EQ(call(alone), results[3]);
}

/// Checks operations without arguments that all have the same results.
template <auto... Members>
void expectPlainCalls(const Results& results, std::array<int32, sizeof...(Members)> opcodes) {
    std::size_t i = 0;
    (expectToCallTheHost({call<Members>, results, opcodes[i++]}), ...);
}

TEST(AudioEffect, CallsTheHostAsInThePublishedTable) {
    using X = AudioEffectX;
    expectPlainCalls<&X::getCurrentUniqueId, &X::getNumAutomatableParameters, &X::getParameterQuantization,
                     &X::getInputLatency, &X::getOutputLatency, &X::willProcessReplacing, &X::getCurrentProcessLevel,
                     &X::getAutomationState, &X::getHostVendorVersion, &X::getHostLanguage, &X::getDirectory>(
        Answer, {2, 11, 12, 18, 19, 22, 23, 24, 34, 38, 41});
    expectPlainCalls<&X::ioChanged, &X::needIdle, &X::offlineGetCurrentPass, &X::offlineGetCurrentMetaPass,
                     &X::updateDisplay>(TrueIfNonZero, {13, 14, 28, 29, 42});
    // clang-format off
    const HostRow rows[] = {
        {call<&X::setParameterAutomated, 3, 2>, Nothing, 0, 3, 0, {}, 2}, {call<&X::getMasterVersion>, {1, 1, 7, 1}, 1},
        {call<&X::masterIdle>, Nothing, 3}, {call<&X::isInputConnected, 3>, TrueIfZero, 4, 3},
        {call<&X::isOutputConnected, 3>, TrueIfZero, 4, 3, 1}, {call<&X::wantEvents, 5>, Nothing, 6, 0, 5},
        {call<&X::getTimeInfo, 5>, Answer, 7, 0, 5},
        {call<&X::sendVstEventsToHost, &object>, TrueIfOne, 8, 0, 0, &object}, {call<&X::tempoAt, 5>, Answer, 10, 0, 5},
        {call<&X::sizeWindow, 3, 5>, TrueIfNonZero, 15, 3, 5},
        {call<&X::updateSampleRate>, {44100, 44100, 44100, 44100}, 16},
        {call<&X::updateBlockSize>, {1024, 1024, 1024, 1024}, 17}, {call<&X::getPreviousPlug, 3>, Answer, 20},
        {call<&X::getNextPlug, 3>, Answer, 21},
        {call<&X::offlineStart, &object, 5, 3>, TrueIfNonZero, 25, 3, 5, &object},
        {call<&X::offlineRead, &object, 5, true>, TrueIfNonZero, 26, 1, 5, &object},
        {call<&X::offlineWrite, &object, 5>, TrueIfNonZero, 27, 0, 5, &object},
        {call<&X::setOutputSamplerate, 2>, Nothing, 30, 0, 0, {}, 2},
        {call<&X::getSpeakerArrangement, &object, &other>, TrueIfNonZero, 31, 0, asNumber(&object), &other},
        {call<&X::getHostVendorString, &object>, TrueIfNonZero, 32, 0, 0, &object},
        {call<&X::getHostProductString, &object>, TrueIfNonZero, 33, 0, 0, &object},
        {call<&X::hostVendorSpecific, 3, 5, &object, 2>, Answer, 35, 3, 5, &object, 2},
        {call<&X::canHostDo, &object>, TrueIfNonZero, 37, 0, 0, &object},
        {call<&X::openWindow, &object>, Answer, 39, 0, 0, &object},
        {call<&X::closeWindow, &object>, TrueIfNonZero, 40, 0, 0, &object},
    };
    // clang-format on
    for (const HostRow& row : rows) expectToCallTheHost(row);
}

// Returns the index of a virtual operation in its class's virtual table. The compilers of both platforms store this
// index in a pointer to the operation.
template <typename Member>
std::size_t slotOf(Member member) {
    std::uintptr_t word;
    std::memcpy(&word, &member, sizeof word);
    return (word - 1) / sizeof(void*);
}

template <typename... Member>
std::vector<std::size_t> slotsOf(Member... members) {
    return {slotOf(members)...};
}

// The destructor is the first operation, and has two entries.
TEST(AudioEffect, KeepsTheOrderOfItsVirtualTable) {
    using A = AudioEffect;
    using X = AudioEffectX;
    const std::vector<std::size_t> slots = slotsOf(
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
    std::vector<std::size_t> expected(slots.size());
    std::iota(expected.begin(), expected.end(), 2);
    EXPECT_EQ(slots, expected);
    using E = AEffEditor;
    EXPECT_EQ(slotsOf(&E::getRect, &E::open, &E::close, &E::idle, &E::update, &E::postUpdate),
              (std::vector<std::size_t>{2, 3, 4, 5, 6, 7}));
}

class ThrowingEffect : public PlainEffect {
    void process(float**, float**, int32) override { throw 1; }
    void processReplacing(float**, float**, int32) override { throw 1; }
    void setParameter(int32, float) override { throw 1; }
    float getParameter(int32) override { throw 1; }
    intptr dispatcher(int32, int32, intptr, void*, float) override { throw ++commands; }

public:
    static inline int commands = 0;
};

TEST(EntryFunctions, LetNoExceptionReachTheHost) {
    AEffect* const record = (new ThrowingEffect)->getAeffect();
    record->process(record, nullptr, nullptr, 1);
    record->processReplacing(record, nullptr, nullptr, 1);
    record->setParameter(record, 0, 1.0f);
    EXPECT_EQ(record->getParameter(record, 0), 0.0f);
    EXPECT_EQ(record->dispatcher(record, effIdentify, 0, 0, nullptr, 0.0f), 0);
    EXPECT_EQ(record->dispatcher(record, effClose, 0, 0, nullptr, 0.0f), 1);
    EXPECT_EQ(ThrowingEffect::commands, 2);
}

TEST(EqualizerEditor, LeavesNoEditorIfItsConstructorThrows) {
    ThrowingEffect effect;
    EXPECT_THROW(EqualizerEditor editor(&effect), int);
    EXPECT_EQ(effect.getAeffect()->flags, 0);
}

} // namespace

} // namespace eq
