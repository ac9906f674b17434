#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include <aidl/vendor/zarvo/hardware/camera/aon/AONResult.h>

namespace zarvo::aon {

using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using aidl::vendor::zarvo::hardware::camera::aon::AONResultValue;

/** Appends one item; the value is made in its place from `arguments`. */
template <AONResultValue::Tag kTag, typename... Arguments>
void AppendResult(std::vector<AONResult>& results, int32_t key, Arguments&&... arguments) {
    AONResult& result = results.emplace_back();
    result.key = key;
    result.value.set<kTag>(std::forward<Arguments>(arguments)...);
}

inline void AppendInt(std::vector<AONResult>& results, int32_t key, int32_t value) {
    AppendResult<AONResultValue::Tag::intValue>(results, key, value);
}

/** Appends the bytes with one allocation and one copy. */
inline void AppendBytes(std::vector<AONResult>& results, int32_t key,
                        std::span<const uint8_t> bytes) {
    AppendResult<AONResultValue::Tag::byteArray>(results, key, bytes.begin(), bytes.end());
}

}  // namespace zarvo::aon
