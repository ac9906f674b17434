#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

#include "platform/mtkcam/aov_event.h"

namespace zarvo::test {

/** An event filled byte by byte, at offsets written as plain numbers. */
class RawEvent {
  public:
    static constexpr size_t kOutput = 34'856;
    static constexpr size_t kImage = 297'028;
    static constexpr size_t kDebugImage = 1'034'356;

    RawEvent() { Put(34'852, uint32_t{262'144}); }

    template <typename T>
    void Put(size_t offset, T value) {
        std::memcpy(reinterpret_cast<uint8_t*>(mEvent.get()) + offset, &value, sizeof(value));
    }
    template <typename T>
    void PutOutput(size_t offset, T value) {
        Put(kOutput + offset, value);
    }
    void PutImage(size_t block, uint32_t height, uint32_t stride) {
        Put(block, height);
        Put(block + 4, uint32_t{0xDEAD});
        Put(block + 8, stride);
    }

    aov_event* get() { return mEvent.get(); }
    const uint8_t* Output() const { return reinterpret_cast<uint8_t*>(mEvent.get()) + kOutput; }

  private:
    std::unique_ptr<aov_event> mEvent = std::make_unique<aov_event>();
};

}  // namespace zarvo::test
