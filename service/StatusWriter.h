#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/History.h"

namespace zarvo::aon {

/**
 * Takes a report part by part and makes a text of it: for people, or for programs. Parts that
 * belong together are between a Begin and an End; a list's parts have no name.
 */
class StatusWriter {
  public:
    /** How long something is, or is ago. */
    using Span = std::chrono::nanoseconds;

    virtual ~StatusWriter() = default;

    virtual void Begin(std::string_view name) = 0;
    virtual void BeginList(std::string_view name) = 0;
    virtual void End() = 0;

    virtual void Text(std::string_view name, std::string_view text) = 0;
    virtual void Number(std::string_view name, int64_t number) = 0;
    virtual void Numbers(std::string_view name, std::span<const int32_t> numbers) = 0;
    virtual void Flag(std::string_view name, bool flag) = 0;
    /** Service types: their names for people. */
    virtual void Types(std::string_view name, int32_t types) = 0;
    /** When something happened. */
    virtual void Time(std::string_view name, Moment::Wall time) = 0;
    virtual void Duration(std::string_view name, Span duration) = 0;

    /** What was made so far; all that was begun is ended. */
    virtual std::string Result() const = 0;
};

/** Lines "name: value", indented; times in the local zone, as the log has them. */
std::unique_ptr<StatusWriter> MakeTextWriter();
/** One JSON object; times in milliseconds since 1970, durations in milliseconds. */
std::unique_ptr<StatusWriter> MakeJsonWriter();

}  // namespace zarvo::aon
