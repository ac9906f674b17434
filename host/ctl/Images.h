#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>

#include <string>

#include "host/ctl/Png.h"

namespace zarvo::host::ctl {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;

/** An event's picture, borrowed from it: the luma plane. */
struct EventImage {
    GreyImage image;
    /** By the frame's number; empty if the event has none. */
    std::string name;
    /** Why there is no picture; empty if there is one. */
    std::string error;
};

/** Trusts nothing that the event says. A pure function. */
EventImage FindImage(const AONCallBackInfo& info);

/**
 * Saves the pictures of events as grey PNG files in a directory, which only their owner may read:
 * they show people. The files appear whole, or not at all. Says on stderr what goes wrong. Used by
 * one thread.
 */
class ImageSaver {
  public:
    explicit ImageSaver(std::string directory) : mDirectory(std::move(directory)) {}

    /** Makes the directory if it is missing. False if there is none then. */
    bool MakeDirectory() const;
    /** False if a file could not be written. An event without a good picture is passed over. */
    bool Save(const AONCallBackInfo& info) const;

  private:
    bool Write(std::span<const uint8_t> bytes, const std::string& path) const;

    const std::string mDirectory;
};

}  // namespace zarvo::host::ctl
