#pragma once

#include <cstdint>

#include <cutils/properties.h>

/**
 * The system properties that steer the service. Each is read afresh at its point of use, so that
 * a `setprop` takes effect with the next frame or the next start; nothing is cached.
 */
namespace zarvo::aon::properties {

inline constexpr char kVerboseLog[] = "vendor.debug.cameralog.enable";
inline constexpr char kAovDebugMode[] = "vendor.debug.camera.utils.AovDebugMode";
inline constexpr char kAovBitDepthMain[] = "vendor.debug.camera.utils.AovBitDepth.Main";
inline constexpr char kAovBitDepthSub[] = "vendor.debug.camera.utils.AovBitDepth.Sub";
inline constexpr char kAovDebugBuffer[] = "vendor.debug.camera.utils.AovDebugBuffer";
inline constexpr char kDumpApu[] = "zarvo.aon.hal.mtk_dump_apu";

/** Whether what a frame holds is logged. Warnings about a frame are logged without it. */
inline bool VerboseLog() {
    return property_get_bool(kVerboseLog, false) != 0;
}

/** 1 or more switches the stream's debug mode on. */
inline int32_t AovDebugMode() {
    return property_get_int32(kAovDebugMode, 0);
}

/** Bits per pixel of the main image: 8, 10 or 12. */
inline int32_t AovBitDepthMain() {
    return property_get_int32(kAovBitDepthMain, 8);
}

/** Bits per pixel of the sub image: 8, 10 or 12. */
inline int32_t AovBitDepthSub() {
    return property_get_int32(kAovBitDepthSub, 8);
}

/** 2 makes the image come from the record's debug image block. */
inline int32_t AovDebugBuffer() {
    return property_get_int32(kAovDebugBuffer, 1);
}

/** 1 writes the raw regions of every frame to files. */
inline int32_t DumpApu() {
    return property_get_int32(kDumpApu, 0);
}

}  // namespace zarvo::aon::properties
