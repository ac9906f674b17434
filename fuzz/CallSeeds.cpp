// A client's life in calls of the service, and calls of the host control.

#include "fuzz/Samples.h"
#include "fuzz/Seeds.h"

namespace zarvo::fuzz {
namespace {

/** In place of a part's bytes: objects of the fuzzers. */
constexpr char kFirstObject = '\xF0', kNull = '\xFF';

std::string Part(const std::string& bytes) {
    return static_cast<char>(bytes.size()) + bytes;
}
/** What CallWithParts takes. */
std::string Call(uint8_t code, const std::vector<std::string>& parts) {
    std::string call{static_cast<char>(code), static_cast<char>(parts.size())};
    for (const std::string& part : parts)
        call += part;
    return call + '\0';
}
std::string Text(const std::string& text) {
    const std::string units = [&] {
        std::string all;
        for (const char c : text)
            all += std::string{c, '\0'};
        return all;
    }();
    const std::string bytes = Raw(static_cast<int32_t>(text.size())) + units + std::string(2, 0);
    return Part(bytes + std::string((4 - bytes.size() % 4) % 4, '\0'));
}
template <typename T>
std::string Number(T number) {
    return Part(Raw(number));
}

/** Things that happen to the service: a byte for what, and a call or a camera's number. */
const std::string kFrame(1, 0);
std::string OpenCamera(char device) {
    return {1, device};
}
std::string CloseCamera(char device) {
    return {2, device};
}
const std::string kDeath(1, 3);
std::string Service(uint8_t code, const std::vector<std::string>& parts) {
    return '\5' + Call(code, parts);
}

void AddServiceCalls(const SeedFolder& seeds) {
    const std::string handle = Number(int64_t{1});
    const std::string is(Number(1)), types = Number(15);
    const std::string config = Part(ParcelOf(Config(15)));
    const std::string arrives = Service(1, {std::string(1, kFirstObject), types}) + Service(2, {}) +
                                Service(3, {handle, is, config}) + Service(4, {handle, types});
    const std::string leaves =
            Service(5, {handle, Number(3)}) + kFrame + Service(6, {handle}) + Service(7, {handle});
    seeds.Add("transactions", "life", arrives + kFrame + leaves);
    seeds.Add("transactions", "death", arrives + kFrame + kDeath);
    seeds.Add("transactions", "camera",
              arrives + OpenCamera(0) + kFrame + CloseCamera(0) + Service(4, {handle, types}));
    const std::string asked = Call(0xFF, {}) + '\5' + Call(0xFE, {});
    seeds.Add("transactions", "versions", '\5' + asked + '\4' + asked);
    seeds.Add("transactions", "none", Service(1, {std::string(1, kNull), types}));
    seeds.Add("transactions", "state",
              '\4' + Call(2, {handle, is, Part(ParcelOf(AONSensorStateInfo()))}));
    seeds.Add("transactions", "event",
              '\4' + Call(1, {handle, is, Part(ParcelOf(AONCallBackInfo()))}));
}

void AddControlCalls(const SeedFolder& seeds) {
    const std::string turns = Call(1, {Number(int64_t{7})}) + Call(2, {Number(2)}) +
                              Call(3, {Number(0.5F)}) + Call(4, {}) + Call(5, {});
    const std::string cameras =
            Call(6, {Number(1)}) + Call(7, {Number(1)}) + Call(8, {Number(1), Number(3)});
    const std::string stormOnOpenCamera = Call(6, {Number(1)}) + Call(8, {Number(1), Number(0)});
    const std::string lies = Part(Raw(40) + Raw(int64_t{-1}) + Raw(int64_t{31}) + Raw(int64_t{-1}) +
                                  Raw(int64_t{-1}) + Raw(1));
    const std::string one = Number(int64_t{1});
    const std::string faults = Call(9, {}) + Call(10, {Text("stream.start"), one, one}) +
                               Call(11, {Number(1), lies, one, one}) + Call(12, {Number(3)}) +
                               Call(13, {Number(20)}) + Call(14, {});
    const std::string properties = Call(16, {Text("a.b"), Text("1")}) + Call(15, {Text("a.b")});
    seeds.Add("control", "turns", turns);
    seeds.Add("control", "cameras", cameras);
    seeds.Add("control", "storm-on-open-camera", stormOnOpenCamera);
    seeds.Add("control", "faults", faults);
    seeds.Add("control", "properties", properties);
    seeds.Add("control", "dump", Call(17, {Number(1), Text("--json")}) + Call(17, {Number(0)}));
}

}  // namespace

void AddCalls(const SeedFolder& seeds) {
    AddServiceCalls(seeds);
    AddControlCalls(seeds);
}

}  // namespace zarvo::fuzz
