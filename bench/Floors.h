#pragma once

#include <cstdint>
#include <span>

namespace zarvo::bench {

// What the image's bytes alone cost, each way into memory that is the result's own.

/** One copy, into a vector made from the range. */
void CopyIntoFreshVector(std::span<const uint8_t> bytes);
/** Zeros first, then the copy. */
void ZeroThenCopy(std::span<const uint8_t> bytes);
/** The same into a local vector, which is copied into another. */
void CopyTwice(std::span<const uint8_t> bytes);

/** The list of results, reserved once, and a fresh vector for each array of the service types. */
void CopyArraysOf(uint32_t serviceType, uint32_t fusionItems, const uint8_t* output);

}  // namespace zarvo::bench
