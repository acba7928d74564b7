#pragma once

#include "platform/standin/Types.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace eq::standin {

/// Returns a number that no handle has had before. All tables share the numbers, so no handle is valid in two tables.
inline std::uintptr_t newHandleNumber() noexcept {
    static std::atomic<std::uintptr_t> last = 0;
    return last += 4;
}

/// Maps handles to objects. An unknown or closed handle finds nothing. An object that another thread uses outlives its
/// handle.
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
        // `removed` is destroyed after the lock is released, because the object's destructor may be slow.
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
