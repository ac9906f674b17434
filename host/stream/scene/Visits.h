#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "host/stream/scene/Cast.h"

namespace zarvo::host {

/** A side of the picture, as a factor of distances to the right. */
enum class Side { kLeft = -1, kRight = 1 };

/** One person's visit, as one moment of it sees it. */
struct Visit {
    /** Of who was always there, or stays: long enough not to be seen walking. */
    static constexpr double kForever = 1e6;

    /** Never the same again: 1 for the first visit, more for each later one. */
    int32_t trackId = 0;
    /** Number of the person, who may have been here before; see People.h. */
    size_t person = 0;
    /** What decides how this visit goes: the same from its beginning to its end. */
    uint64_t seed = 0;
    /** Seconds since it began to walk in, and until it has walked out. */
    double sinceEntry = kForever, untilExit = kForever;
    Side cameFrom = Side::kLeft, goesTo = Side::kLeft;
    /** How far it makes room for another one: from 0, not at all, to 1. */
    float aside = 0;
    /** Where it then stands. */
    Side place = Side::kLeft;
};

/** Everybody in front of the sensor, first who came first. */
struct Company {
    static constexpr size_t kMost = 2;

    size_t count = 0;
    std::array<Visit, kMost> visits;
};

/**
 * Who is there `seconds` (at least 0) after the scene's beginning: a pure function, without jumps
 * but for people who come into being, or cease to be, out of the picture.
 *
 * The story goes in acts of 27 seconds. In each a host comes in, then a guest joins; either may
 * leave first, each stays for 10 to 25 seconds, and a few seconds with nobody end the act. So any
 * 54 seconds see nobody, one and two. The first host is already there at second 0.
 */
Company WhoIsThere(Cast cast, uint64_t seed, double seconds);

}  // namespace zarvo::host
