#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

class IAovStreamCallback;

/**
 * The start record of the always-on-vision stream. Fields that this system does not set stay
 * zero. The stream keeps no pointer to the record, but shares the callback from `start` to
 * `stop`.
 */
struct user_param {
    uint8_t reserved0[4];
    int32_t sensorId;
    uint8_t reserved1[36];
    /** Image format code of the main sensor. */
    int32_t mainFormat;
    uint8_t reserved2[8];
    /** Image format code of the sub sensor. */
    int32_t subFormat;
    /** Rate the stream runs at, frames per second. */
    int32_t frameRate;
    int32_t serviceType;
    uint8_t reserved3[4];
    /** 0 or 1. */
    int32_t debugMode;
    uint8_t reserved4[68];
    /** In md mode the rate that was asked for, frames per second; else 0. */
    int32_t mdFrameRate;
    uint8_t reserved5[44];
    int32_t frameWidth;
    int32_t frameHeight;
    std::shared_ptr<IAovStreamCallback> AovStreamCallback;
};

static_assert(offsetof(user_param, sensorId) == 4);
static_assert(offsetof(user_param, mainFormat) == 44);
static_assert(offsetof(user_param, subFormat) == 56);
static_assert(offsetof(user_param, frameRate) == 60);
static_assert(offsetof(user_param, serviceType) == 64);
static_assert(offsetof(user_param, debugMode) == 72);
static_assert(offsetof(user_param, mdFrameRate) == 144);
static_assert(offsetof(user_param, frameWidth) == 192);
static_assert(offsetof(user_param, frameHeight) == 196);
static_assert(offsetof(user_param, AovStreamCallback) == 200);
static_assert(sizeof(user_param) == 216);
