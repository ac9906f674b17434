#pragma once

#include <cstddef>

#include "host/stream/scene/Color.h"

namespace zarvo::host {

/** How one person looks. */
struct Person {
    enum class Hair { kShort, kParted, kLong, kBun, kNone };

    Color skin;
    Hair hairCut = Hair::kShort;
    Color hair;
    Color iris;
    Color shirt;
    bool glasses = false;
    bool beard = false;
    /** Size of the head, about 1. */
    float size = 1;
};

/** How many persons there are; each seed casts a few of them. */
inline constexpr size_t kPeople = 8;

/** The looks of a person; `number` is below kPeople. */
const Person& PersonNumber(size_t number);

}  // namespace zarvo::host
