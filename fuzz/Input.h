#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

namespace zarvo::fuzz {

/** A fuzzer's input, taken piece by piece from its front; what is missing at its end is zero. */
class Input {
  public:
    Input(const uint8_t* data, size_t size) : mRest(data, size) {}

    bool IsEmpty() const { return mRest.empty(); }

    template <typename T>
    T Take() {
        static_assert(std::is_integral_v<T> && !std::is_same_v<T, bool>);
        T value{};
        const std::span<const uint8_t> bytes = TakeBytes(sizeof(T));
        if (!bytes.empty()) std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }
    std::span<const uint8_t> TakeBytes(size_t length) {
        const auto taken = mRest.first(std::min(length, mRest.size()));
        mRest = mRest.subspan(taken.size());
        return taken;
    }
    /** A piece that begins with its length in two bytes. */
    std::span<const uint8_t> TakePiece() { return TakeBytes(Take<uint16_t>()); }
    std::span<const uint8_t> TakeRest() { return TakeBytes(mRest.size()); }

  private:
    std::span<const uint8_t> mRest;
};

inline std::string_view Text(std::span<const uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace zarvo::fuzz
