#pragma once

#include "platform/CriticalSection.h"

#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace eq {

/// An ordered map with its own lock. Each operation holds the lock only until it returns.
template <typename Key, typename Value>
class GuardedMap {
public:
    void put(Key key, Value value) {
        const CriticalSectionEntry entry(m_lock);
        m_values.insert_or_assign(key, std::move(value));
    }

    [[nodiscard]] std::optional<Value> find(Key key) const {
        const CriticalSectionEntry entry(m_lock);
        const auto found = m_values.find(key);
        return found == m_values.end() ? std::nullopt : std::optional(found->second);
    }

    /// Removes an entry and returns its value, or nothing if the key is absent. The caller destroys the value, outside
    /// the lock.
    std::optional<Value> take(Key key) noexcept {
        const CriticalSectionEntry entry(m_lock);
        const auto found = m_values.find(key);
        if (found == m_values.end()) return std::nullopt;
        std::optional<Value> value(std::move(found->second));
        m_values.erase(found);
        return value;
    }

private:
    std::map<Key, Value, std::less<>> m_values;
    mutable CriticalSection m_lock;
};

} // namespace eq
