#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>

namespace zarvo::aon {

/**
 * A small record that one thread at a time replaces and that any thread reads without a lock, so
 * that a reader never keeps a writer waiting. Replacing costs a few stores.
 */
template <typename T>
class Published {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    Published() { Set(T{}); }

    /** One caller at a time: under the lock that guards what `value` was made from. */
    void Set(const T& value) {
        Words words{};
        std::memcpy(words.data(), &value, sizeof(T));
        const uint32_t version = mVersion.load(std::memory_order_relaxed);
        mVersion.store(version + 1, std::memory_order_relaxed);
        // Released one by one: a reader that sees a new word sees the odd version before it, too.
        for (std::size_t i = 0; i < kWords; ++i)
            mWords[i].store(words[i], std::memory_order_release);
        mVersion.store(version + 2, std::memory_order_release);
    }

    /** The latest record, whole; nothing if it was replaced all the while. */
    std::optional<T> Get() const {
        for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
            const uint32_t version = mVersion.load(std::memory_order_acquire);
            Words words{};
            for (std::size_t i = 0; i < kWords; ++i)
                words[i] = mWords[i].load(std::memory_order_acquire);
            if (version % 2 != 0 || mVersion.load(std::memory_order_relaxed) != version) continue;
            T value;
            std::memcpy(static_cast<void*>(&value), words.data(), sizeof(T));
            return value;
        }
        return std::nullopt;
    }

  private:
    static constexpr int kMostAttempts = 1000;
    static constexpr std::size_t kWords = (sizeof(T) + sizeof(uint64_t) - 1) / sizeof(uint64_t);
    using Words = std::array<uint64_t, kWords>;

    /** Odd while the words are being replaced. */
    std::atomic<uint32_t> mVersion{0};
    std::array<std::atomic<uint64_t>, kWords> mWords{};
};

}  // namespace zarvo::aon
