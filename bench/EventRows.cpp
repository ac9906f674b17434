// A whole event, from the stream's record to a client's vectors in another process.

#include <utility>

#include "bench/BusPair.h"
#include "bench/EventPair.h"
#include "bench/RawPair.h"
#include "bench/Records.h"
#include "bench/Rows.h"

namespace zarvo::bench {

namespace {

/** Delivers so many records through the pair. */
template <typename Pair>
Contestant Through(const char* name, Pair& pair, Records& records, const Shape& shape,
                   size_t otherBytes) {
    return {name, Repeated([&pair, &records, otherBytes, bytes = shape.ImageBytes()] {
                pair.Deliver(otherBytes, ImageOf(records.Next(), bytes));
            })};
}

void MeasureEvent(Run& run, const Shape& shape, Records::Source source) {
    Records records(shape, source);
    const size_t otherBytes = OtherBytesOf(records.Next());
    EventPair ours;
    RawPair buffer(RawPair::Landing::kBuffer);
    RawPair vector(RawPair::Landing::kVector);
    BusPair bus;
    run.Race({{"ours", Repeated([&] { ours.Deliver(records.Next()); })},
              Through("F0: raw socket", buffer, records, shape, otherBytes),
              Through("F1: raw, fresh vector", vector, records, shape, otherBytes),
              Through("sd-bus", bus, records, shape, otherBytes)});
}

}  // namespace

void AddEventRows(RowList& rows) {
    // A type that no decoder knows: the image and the frame's numbers alone.
    constexpr uint32_t kNoResults = 16;
    constexpr std::pair<const char*, Shape> kShapes[] = {
            {"64 bytes", k64Bytes},
            {"no results, 64 bytes",
             {.serviceType = kNoResults, .stride = k64Bytes.stride, .height = k64Bytes.height}},
            {"320x240", k320x240},
            {"640x480", k640x480},
            {"640x768", k640x768}};
    for (const auto& [name, shape] : kShapes) {
        rows.push_back({"event/" + std::string(name), [shape = shape](Run& run) {
                            MeasureEvent(run, shape, Records::Source::kCold);
                        }});
    }
    rows.push_back({"event/warm, 640x480",
                    [](Run& run) { MeasureEvent(run, k640x480, Records::Source::kWarm); }});
}

}  // namespace zarvo::bench
