#pragma once

#include "platform/Owners.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

template <typename Pointee>
class CountedRef;

/// The owner of one object on the heap. For any address there is one at a time, so that all who hold the address share
/// in it by way of CountedRef. Null is an address like any other: that of nothing.
template <typename Pointee>
class Counted final {
public:
    using Pointer = typename std::unique_ptr<Pointee>::pointer;

    explicit Counted(Pointer address) noexcept : block(address) {}
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    virtual void OnAddRef() noexcept {}

    /// Ends this object, and what it owns, once nobody refers to it.
    virtual void OnRelease() noexcept {
        if (count == 0) index().owners.erase(block.get());
    }

private:
    friend class CountedRef<Pointee>;

    /// Owners on different threads hold different locks, so the index has one of its own, under which the counts change
    /// too. It is the innermost of all locks.
    struct Index {
        std::map<Pointer, std::unique_ptr<Counted>, std::less<>> owners;
        platform::CriticalSection lock;
    };

    static Index& index() {
        static Index the;
        return the;
    }

    std::uint32_t count = 0;
    std::unique_ptr<Pointee> block;
};

/// Holds one reference to an object on the heap, or none.
template <typename Pointee>
class CountedRef {
public:
    using Owner = Counted<Pointee>;
    using Pointer = typename Owner::Pointer;

    /// Readies the shared index, for those who live as long as the program: it then outlives them.
    static void prepare() { Owner::index(); }

    CountedRef() noexcept = default;

    /// Shares in the object at `address`, or takes ownership if nobody has it yet. Throws std::bad_alloc, and then the
    /// caller still owns.
    explicit CountedRef(Pointer address) {
        auto& index = Owner::index();
        const platform::CriticalSectionEntry entry(index.lock);
        const auto place = index.owners.try_emplace(address).first;
        if (!place->second) {
            try {
                place->second = std::make_unique<Owner>(address);
            } catch (...) {
                index.owners.erase(place);
                throw;
            }
        }
        m_owner = place->second.get();
        addRef();
    }

    CountedRef(const CountedRef& other) noexcept : m_owner(other.m_owner) {
        if (!m_owner) return;
        const platform::CriticalSectionEntry entry(Owner::index().lock);
        addRef();
    }
    CountedRef(CountedRef&& other) noexcept : m_owner(std::exchange(other.m_owner, nullptr)) {}

    CountedRef& operator=(CountedRef other) noexcept {
        std::swap(m_owner, other.m_owner);
        return *this;
    }

    ~CountedRef() {
        if (!m_owner) return;
        const platform::CriticalSectionEntry entry(Owner::index().lock);
        --m_owner->count;
        m_owner->OnRelease();
    }

    [[nodiscard]] Pointer get() const noexcept { return m_owner ? m_owner->block.get() : nullptr; }

private:
    void addRef() noexcept {
        ++m_owner->count;
        m_owner->OnAddRef();
    }

    Owner* m_owner = nullptr;
};

using CountedBlock = Counted<std::byte[]>;
using CountedBlockRef = CountedRef<std::byte[]>;
