#pragma once

#include "platform/win32.h"

#include <atomic>

namespace eq {

template <typename Signature>
class SystemFunction;

/// A system function that the wedge replaces. The function is found by name at its first call. Its module must already
/// be loaded, because this class loads none. A call returns zero while the module or the function is missing.
template <typename Result, typename... Arguments>
class SystemFunction<Result(Arguments...)> {
public:
    constexpr SystemFunction(const char* module, const char* name) noexcept : m_module(module), m_name(name) {}

    Result operator()(Arguments... arguments) const {
        const Function function = resolve();
        return function ? function(arguments...) : Result{};
    }

private:
    using Function = Result(WINAPI*)(Arguments...);

    // Two threads may look up the function at the same time: both find the same address.
    Function resolve() const {
        if (const Function known = m_function.load(std::memory_order_relaxed)) return known;
        const HMODULE module = GetModuleHandleA(m_module);
        const auto found = module ? GetProcAddress(module, m_name) : nullptr;
        const auto function = reinterpret_cast<Function>(reinterpret_cast<void (*)()>(found));
        m_function.store(function, std::memory_order_relaxed);
        return function;
    }

    const char* m_module;
    const char* m_name;
    mutable std::atomic<Function> m_function{nullptr};
};

} // namespace eq
