#include "editor/DispatchStub.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

namespace eq {

namespace {

#ifdef _WIN64
// mov rcx, object | mov rax, target | jmp rax
constexpr std::array<std::uint8_t, 22> CodeTemplate = {0x48, 0xB9, 0, 0, 0, 0, 0, 0, 0, 0, //
                                                       0x48, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, //
                                                       0xFF, 0xE0};
constexpr std::size_t ObjectOffset = 2;
constexpr std::size_t TargetOffset = 12;
#else
// mov dword ptr [esp + 4], object | mov eax, target | jmp eax
constexpr std::array<std::uint8_t, 15> CodeTemplate = {0xC7, 0x44, 0x24, 0x04, 0, 0, 0, 0, //
                                                       0xB8, 0,    0,    0,    0,          //
                                                       0xFF, 0xE0};
constexpr std::size_t ObjectOffset = 4;
constexpr std::size_t TargetOffset = 9;
#endif

template <typename Pointer>
void writeAddress(std::uint8_t* place, Pointer address) noexcept {
    std::memcpy(place, &address, sizeof address);
}

} // namespace

/// The code of a procedure, in a page of memory that is first writable, then executable, and never both.
struct DispatchStub::Code {
    Code(DialogOwner* object, Target target) noexcept {
        std::array<std::uint8_t, CodeTemplate.size()> code = CodeTemplate;
        writeAddress(code.data() + ObjectOffset, object);
        writeAddress(code.data() + TargetOffset, target);

        memory = VirtualAlloc(nullptr, code.size(), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
        if (!memory) return;
        std::memcpy(memory, code.data(), code.size());
        DWORD before = 0;
        isReady = VirtualProtect(memory, code.size(), PAGE_EXECUTE_READ, &before) != 0;
        FlushInstructionCache(GetCurrentProcess(), memory, code.size());
    }
    ~Code() {
        if (memory) VirtualFree(memory, 0, MEM_RELEASE);
    }
    Code(const Code&) = delete;
    Code& operator=(const Code&) = delete;

    void* memory = nullptr;
    bool isReady = false;
};

DispatchStub::DispatchStub() noexcept = default;
DispatchStub::~DispatchStub() = default;

DLGPROC DispatchStub::procedure(HWND /*window*/, DialogOwner* object, Target target) noexcept {
    if (!code) code.reset(new (std::nothrow) Code(object, target));
    return code && code->isReady ? reinterpret_cast<DLGPROC>(code->memory) : nullptr;
}

} // namespace eq
