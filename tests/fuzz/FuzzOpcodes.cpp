// Calls the effect as an arbitrary host. The bytes of the input select opcodes, parameters, audio and editor calls in
// any order.

#include "plugin/base/AEffect.h"
#include "tests/fuzz/Require.h"
#include "tests/stress/HostWindows.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

extern "C" AEffect* pluginMain(audioMasterCallback audioMaster);

namespace eq {

namespace {

constexpr std::size_t BufferSize = 64;
constexpr char Untouched = '#';

/// The unread bytes of the input. A read beyond the end returns 0.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_left(size) {}

    [[nodiscard]] bool isEmpty() const { return m_left == 0; }
    std::uint8_t byte() {
        if (m_left == 0) return 0;
        --m_left;
        return *m_data++;
    }
    int32 integer() {
        // Most numbers are small, and some have any value.
        const std::uint8_t first = byte();
        if (first < 0xF0) return static_cast<std::int8_t>(first);
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) value = value << 8U | byte();
        return static_cast<int32>(value);
    }
    float number() { return std::bit_cast<float>(integer()); }

private:
    const std::uint8_t* m_data;
    std::size_t m_left;
};

intptr host(AEffect* effect, int32 opcode, int32 index, intptr /*value*/, void* /*ptr*/, float /*opt*/) {
    if (effect == nullptr) return opcode == audioMasterVersion ? 1 : 0;
    // The host calls the effect during the callback, and sometimes closes the editor.
    std::array<char, BufferSize> text = {};
    effect->dispatcher(effect, effGetParamDisplay, index, 0, text.data(), 0.0F);
    if (index % 4 == 3) effect->dispatcher(effect, effEditClose, 0, 0, nullptr, 0.0F);
    return 1;
}

/// One effect with a window for its editor.
class Instance {
public:
    Instance() { require(m_effect != nullptr); }
    ~Instance() {
        m_effect->dispatcher(m_effect, effClose, 0, 0, nullptr, 0.0F);
        require(hostWindows()->children(m_window) == 0);
        hostWindows()->destroy(m_window);
    }
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    void step(Input& input) {
        const int kind = input.byte() % 8;
        if (kind == 0) setParameter(input);
        if (kind == 1) process(m_effect->process, input);
        if (kind == 2) process(m_effect->processReplacing, input);
        if (kind == 3) hostWindows()->pump();
        if (kind == 3) m_effect->dispatcher(m_effect, effEditIdle, 0, 0, nullptr, 0.0F);
        if (kind == 4) m_effect->dispatcher(m_effect, effEditOpen, 0, 0, m_window, 0.0F);
        if (kind == 5) hostWindows()->destroy(m_window);
        if (kind == 5) m_window = hostWindows()->make();
        if (kind > 5) dispatch(input);
    }

private:
    void setParameter(Input& input) {
        const int32 index = input.integer();
        const float value = input.number();
        m_effect->setParameter(m_effect, index, value);
        const float kept = m_effect->getParameter(m_effect, index);
        const bool isOne = index >= 0 && index < m_effect->numParams;
        require(isOne ? std::bit_cast<int32>(kept) == std::bit_cast<int32>(value) : kept == 0.0F);
    }

    /// Sends any opcode except effClose. The opcode determines the pointer: the host's window, the place for the
    /// address of a rectangle, or a text buffer.
    void dispatch(Input& input) {
        const int32 opcode = input.integer();
        if (opcode == effClose) return;
        const int32 index = input.integer();
        intptr value = input.integer();
        // Limits the memory. Other tests exhaust it.
        if (opcode == effSetBlockSize || opcode == effSetBlockSizeAndSampleRate)
            value = std::min<intptr>(value, 1 << 20);
        std::array<char, BufferSize> buffer;
        buffer.fill(Untouched);
        const bool isText = opcode >= effSetProgramName && opcode <= effGetParamName;
        if (!isText) buffer.back() = '\0';
        void* rectangle = nullptr;
        void* pointer = buffer.data();
        if (opcode == effEditOpen) pointer = m_window;
        if (opcode == effEditGetRect) pointer = &rectangle;
        if (opcode == effSetProgramName) std::strcpy(buffer.data(), "a program");
        const intptr result = m_effect->dispatcher(m_effect, opcode, index, value, pointer, input.number());
        if (opcode == effEditGetRect) require(result == 1 && rectangle != nullptr);
        // The longest text has 27 characters and a terminator.
        if (isText) require(std::all_of(buffer.begin() + 28, buffer.end(), [](char c) { return c == Untouched; }));
    }

    /// Processes samples of moderate level, in arrays of exactly the call's size. The outputs are separate arrays, or
    /// the arrays of the inputs.
    void process(AEffectProcessProc run, Input& input) {
        const std::size_t frames = static_cast<std::size_t>(input.byte()) * 40;
        const bool isInPlace = input.byte() % 2 == 0;
        std::vector<float> sound[4];
        float* channels[4];
        for (int i = 0; i < 4; ++i) {
            sound[i].assign(frames, 0.001F * static_cast<float>(input.byte()));
            channels[i] = sound[i].data();
        }
        run(m_effect, channels, isInPlace ? channels : channels + 2, static_cast<int32>(frames));
    }

    AEffect* m_effect = pluginMain(host);
    void* m_window = hostWindows()->make();
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, std::min<std::size_t>(size, 4096));
    Instance first;
    Instance second;
    while (!input.isEmpty()) (input.byte() % 4 == 0 ? second : first).step(input);
    return 0;
}

} // namespace eq
