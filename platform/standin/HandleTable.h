#pragma once

#include "platform/standin/Types.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace eq::standin {

/// A number that no handle has had. Tables share them, so that a handle of one kind is never taken for another.
inline std::uintptr_t newHandleNumber() noexcept {
    static std::atomic<std::uintptr_t> last = 0;
    return last += 4;
}

/// Objects behind handles. A handle that was never given out or is closed already finds nothing; an object in use by
/// another thread outlives its handle.
template <typename Object>
class HandleTable {
public:
    HANDLE add(std::shared_ptr<Object> object) {
        const std::lock_guard guard(m_lock);
        const std::uintptr_t number = newHandleNumber();
        m_objects.emplace(number, std::move(object));
        return handleOfNumber<HANDLE>(number);
    }

    std::shared_ptr<Object> find(HANDLE handle) {
        const std::lock_guard guard(m_lock);
        const auto found = m_objects.find(reinterpret_cast<std::uintptr_t>(handle));
        return found == m_objects.end() ? nullptr : found->second;
    }

    bool remove(HANDLE handle) {
        // The object ends behind the lock: its destructor may take its time.
        typename Map::node_type removed;
        const std::lock_guard guard(m_lock);
        removed = m_objects.extract(reinterpret_cast<std::uintptr_t>(handle));
        return !removed.empty();
    }

    std::size_t size() {
        const std::lock_guard guard(m_lock);
        return m_objects.size();
    }

    template <typename Action>
    void forEach(Action action) {
        const std::lock_guard guard(m_lock);
        for (const auto& [number, object] : m_objects) action(handleOfNumber<HANDLE>(number), *object);
    }

private:
    using Map = std::map<std::uintptr_t, std::shared_ptr<Object>>;

    std::mutex m_lock;
    Map m_objects;
};

} // namespace eq::standin
