// SPDX-License-Identifier: MIT
// A slot of a hash table: key, value and state, in this order and without gaps of its own. Key and
// value exist only while the slot is live, so an empty table owns nothing but its slots.
#pragma once

#include "kortools/core/relocate.h"
#include "kortools/export.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace kortools::core {

enum SlotState : unsigned { live_slot = 0, empty_slot = 1, deleted_slot = 2 };

// Memory of the library's heap, in large pages where that pays. Null when there is none.
KORTOOLS_API void *allocate_table(std::size_t size_bytes, std::size_t alignment) noexcept;
KORTOOLS_API void free_table(void *block, std::size_t alignment) noexcept;

template <typename SLOT> struct SlotHeap {
    static void *operator new[](std::size_t size_bytes, std::nothrow_t const &) noexcept
    {
        return allocate_table(size_bytes, alignof(SLOT));
    }
    static void operator delete[](void *block) noexcept { free_table(block, alignof(SLOT)); }
    static void operator delete[](void *block, std::nothrow_t const &) noexcept
    {
        free_table(block, alignof(SLOT));
    }
};

template <typename K, typename V> struct HashSlot : SlotHeap<HashSlot<K, V>> {
    static constexpr bool is_plain
        = std::is_trivially_copyable_v<
              K> && std::is_trivially_copyable_v<V> && std::is_trivially_destructible_v<K> && std::is_trivially_destructible_v<V>;
    static constexpr bool is_relocatable
        = is_trivially_relocatable<K> && is_trivially_relocatable<V>;

    union {
        K key;
    };
    union {
        V value;
    };
    SlotState state;

    HashSlot()
        : state(empty_slot)
    {
    }
    HashSlot(HashSlot const &) = delete;
    HashSlot &operator=(HashSlot const &) = delete;
    ~HashSlot() { } // the table ends live entries: it knows without looking here which slots are

    // Brings an entry to life. Changes nothing when a constructor throws.
    template <typename KEY, typename VALUE> void Fill(KEY &&new_key, VALUE &&new_value)
    {
        std::construct_at(std::addressof(key), std::forward<KEY>(new_key));
        if constexpr (std::is_nothrow_constructible_v<V, VALUE>) {
            std::construct_at(std::addressof(value), std::forward<VALUE>(new_value));
        } else {
            try {
                std::construct_at(std::addressof(value), std::forward<VALUE>(new_value));
            } catch (...) {
                std::destroy_at(std::addressof(key));
                throw;
            }
        }
        state = live_slot;
    }
    void CopyFrom(HashSlot const &other) { Fill(other.key, other.value); }

    // Moves an entry here. When it throws, `other` is as it was if it can be copied at all.
    void TakeFrom(HashSlot &other)
    {
        if constexpr (is_relocatable)
            std::memcpy(static_cast<void *>(this), &other, sizeof other);
        else if constexpr (std::is_nothrow_move_constructible_v<
                               K> && std::is_nothrow_move_constructible_v<V>)
            Fill(std::move(other.key), std::move(other.value));
        else if constexpr (std::is_copy_constructible_v<K> && std::is_copy_constructible_v<V>)
            Fill(std::as_const(other.key), std::as_const(other.value));
        else
            Fill(std::move(other.key), std::move(other.value));
    }
    void End(SlotState new_state)
    {
        std::destroy_at(std::addressof(value));
        std::destroy_at(std::addressof(key));
        state = new_state;
    }

#if __cpp_concepts >= 202002L // older compilers do not choose a destructor by its constraint
    ~HashSlot() requires(is_plain) = default;
#endif
};

template <typename K> struct HashSlot<K, void> : SlotHeap<HashSlot<K, void>> {
    static constexpr bool is_plain = std::is_trivially_copyable_v<K>;
    static constexpr bool is_relocatable = is_trivially_relocatable<K>;

    union {
        K key;
    };
    SlotState state;

    HashSlot()
        : state(empty_slot)
    {
    }
    HashSlot(HashSlot const &) = delete;
    HashSlot &operator=(HashSlot const &) = delete;
    ~HashSlot() { }

    template <typename KEY> void Fill(KEY &&new_key)
    {
        std::construct_at(std::addressof(key), std::forward<KEY>(new_key));
        state = live_slot;
    }
    void CopyFrom(HashSlot const &other) { Fill(other.key); }
    void TakeFrom(HashSlot &other)
    {
        if constexpr (is_relocatable)
            std::memcpy(static_cast<void *>(this), &other, sizeof other);
        else
            Fill(std::move_if_noexcept(other.key));
    }
    void End(SlotState new_state)
    {
        std::destroy_at(std::addressof(key));
        state = new_state;
    }

#if __cpp_concepts >= 202002L // older compilers do not choose a destructor by its constraint
    ~HashSlot() requires(is_plain) = default;
#endif
};

} // namespace kortools::core
