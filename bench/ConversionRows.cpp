// One event, from the stream's record to a sink that does nothing.

#include <memory>

#include "bench/Floors.h"
#include "bench/Records.h"
#include "bench/Rows.h"
#include "bench/Sinks.h"

namespace zarvo::bench {

namespace {

using Source = Records::Source;

Contestant Ours(Records& records) {
    return {"ours", Repeated([&records, translator = NewConversion()] {
                translator->onCallback(&records.Next());
            })};
}

Contestant WithImage(const char* name, Records& records, const Shape& shape,
                     void (*copy)(std::span<const uint8_t>)) {
    return {name, Repeated([&records, copy, bytes = shape.ImageBytes()] {
                copy(ImageOf(records.Next(), bytes));
            })};
}

void MeasureWithImage(Run& run, const Shape& shape, Source source) {
    Records records(shape, source);
    run.Race({Ours(records), WithImage("fresh vector", records, shape, CopyIntoFreshVector),
              WithImage("zeros, copy", records, shape, ZeroThenCopy),
              WithImage("naive, two copies", records, shape, CopyTwice)});
}

void MeasureWithoutImage(Run& run, uint32_t serviceType) {
    Shape shape = kNoImage;
    shape.serviceType = serviceType;
    Records records(shape, Source::kWarm);
    const Contestant floor{"arrays alone", Repeated([&records, shape] {
                               CopyArraysOf(shape.serviceType, shape.fusionItems,
                                            records.Next().output);
                           })};
    run.Race({Ours(records), floor});
}

}  // namespace

void AddConversionRows(RowList& rows) {
    constexpr std::pair<const char*, Shape> kSizes[] = {{"640x480", k640x480},
                                                        {"320x240", k320x240}};
    for (const auto& [name, shape] : kSizes) {
        for (const auto& [heat, source] :
             {std::pair{"cold", Source::kCold}, std::pair{"warm", Source::kWarm}}) {
            rows.push_back({"conversion/" + std::string(name) + "/" + heat,
                            [shape = shape, source = source](Run& run) {
                                MeasureWithImage(run, shape, source);
                            }});
        }
    }
    for (uint32_t serviceType = 0; serviceType <= 15; ++serviceType) {
        const char* const tens = serviceType < 10 ? "0" : "";
        rows.push_back({"conversion/types " + (tens + std::to_string(serviceType)),
                        [serviceType](Run& run) { MeasureWithoutImage(run, serviceType); }});
    }
}

}  // namespace zarvo::bench
