#pragma once

#include "platform/CriticalSection.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace eq {

template <typename Pointee>
class CountedRef;
template <typename Pointee>
class CountedIndex;

/// The owner of one object on the heap. An index has one owner per address, so that all holders of the address share
/// ownership through CountedRef. A null address is valid: it means no object.
template <typename Pointee>
class Counted final {
public:
    using Pointer = typename std::unique_ptr<Pointee>::pointer;

    Counted(CountedIndex<Pointee>& owners, Pointer address) noexcept : m_index(owners), m_block(address) {}
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    virtual void OnAddRef() noexcept {}

    /// Destroys this object and its pointee if no reference is left.
    virtual void OnRelease() noexcept {
        if (m_count == 0) m_index.m_owners.erase(m_block.get());
    }

private:
    friend class CountedRef<Pointee>;

    CountedIndex<Pointee>& m_index;
    std::uint32_t m_count = 0;
    std::unique_ptr<Pointee> m_block;
};

/// The owners of all objects of one type, by address. The index must outlive every reference that was made with it.
///
/// The index's lock also guards the counts. A thread that holds this lock takes no other lock.
template <typename Pointee>
class CountedIndex {
    friend class Counted<Pointee>;
    friend class CountedRef<Pointee>;

    std::map<typename Counted<Pointee>::Pointer, std::unique_ptr<Counted<Pointee>>, std::less<>> m_owners;
    CriticalSection m_lock;
};

/// Holds one reference to an object on the heap, or none.
template <typename Pointee>
class CountedRef {
public:
    using Owner = Counted<Pointee>;
    using Pointer = typename Owner::Pointer;

    CountedRef() noexcept = default;

    /// Shares ownership of the object at `address`, or takes ownership if the index has no owner of it. Throws
    /// std::bad_alloc; the caller then still owns the object.
    CountedRef(CountedIndex<Pointee>& index, Pointer address) {
        const CriticalSectionEntry entry(index.m_lock);
        const auto place = index.m_owners.try_emplace(address).first;
        if (!place->second) {
            try {
                place->second = std::make_unique<Owner>(index, address);
            } catch (...) {
                index.m_owners.erase(place);
                throw;
            }
        }
        m_owner = place->second.get();
        addRef();
    }

    CountedRef(const CountedRef& other) noexcept : m_owner(other.m_owner) {
        if (!m_owner) return;
        const CriticalSectionEntry entry(m_owner->m_index.m_lock);
        addRef();
    }
    CountedRef(CountedRef&& other) noexcept : m_owner(std::exchange(other.m_owner, nullptr)) {}

    CountedRef& operator=(CountedRef other) noexcept {
        std::swap(m_owner, other.m_owner);
        return *this;
    }

    ~CountedRef() {
        if (!m_owner) return;
        const CriticalSectionEntry entry(m_owner->m_index.m_lock);
        --m_owner->m_count;
        m_owner->OnRelease();
    }

    [[nodiscard]] Pointer get() const noexcept { return m_owner ? m_owner->m_block.get() : nullptr; }

private:
    void addRef() noexcept {
        ++m_owner->m_count;
        m_owner->OnAddRef();
    }

    Owner* m_owner = nullptr;
};

using CountedBlock = Counted<std::byte[]>;
using CountedBlockRef = CountedRef<std::byte[]>;
using CountedBlockIndex = CountedIndex<std::byte[]>;

} // namespace eq
