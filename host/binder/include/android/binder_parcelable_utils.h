/** What generated parcelables and unions say about themselves. */
#pragma once

#include <android/binder_parcel_utils.h>

#include <cstdint>

namespace ndk {

/** How far the layout of a parcelable may be relied on. */
typedef int32_t parcelable_stability_t;
enum : int32_t {
    STABILITY_LOCAL = 0, /**< within one build */
    STABILITY_VINTF = 1, /**< across separately updated parts of the system */
};

}  // namespace ndk
