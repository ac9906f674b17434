#include "bench/BusPair.h"

#include <systemd/sd-bus.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "bench/Fail.h"

namespace zarvo::bench {

namespace {

constexpr char kPath[] = "/client";
constexpr char kInterface[] = "zarvo.aon.bench";

struct DropMessage {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, DropMessage>;

sd_bus* NewBus(int socket) {
    sd_bus* bus = nullptr;
    Require(sd_bus_new(&bus) >= 0 && sd_bus_set_fd(bus, socket, socket) >= 0, "no sd-bus");
    return bus;
}

int ReadVector(sd_bus_message* message, std::vector<uint8_t>* bytes) {
    const void* data = nullptr;
    size_t size = 0;
    const int result = sd_bus_message_read_array(message, 'y', &data, &size);
    if (result < 0) return result;
    const auto* const begin = static_cast<const uint8_t*>(data);
    bytes->assign(begin, begin + size);
    return 0;
}

int OnEvent(sd_bus_message* message, void* /*user*/, sd_bus_error* /*error*/) {
    std::vector<uint8_t> other;
    std::vector<uint8_t> image;
    if (ReadVector(message, &other) < 0 || ReadVector(message, &image) < 0) return -EBADMSG;
    benchmark::DoNotOptimize(other.data());
    benchmark::DoNotOptimize(image.data());
    return sd_bus_reply_method_return(message, "");
}

// The macros are the library's; what they initialise is its own.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
const sd_bus_vtable kObject[] = {SD_BUS_VTABLE_START(0),
                                 SD_BUS_METHOD("Event", "ayay", "", OnEvent, 0), SD_BUS_VTABLE_END};
#pragma GCC diagnostic pop

}  // namespace

void BusPair::CloseBus::operator()(sd_bus* bus) const {
    sd_bus_close_unref(bus);
}

BusPair::BusPair() : mPeer("bus"), mBus(NewBus(dup(mPeer.Socket()))) {
    Require(sd_bus_start(mBus.get()) >= 0, "cannot start sd-bus");
}

void BusPair::Ping() {
    Require(sd_bus_call_method(mBus.get(), nullptr, kPath, "org.freedesktop.DBus.Peer", "Ping",
                               nullptr, nullptr, nullptr) >= 0,
            "the bus peer does not answer");
}

void BusPair::Deliver(size_t otherBytes, std::span<const uint8_t> image) {
    const std::vector<uint8_t> other(otherBytes);
    const std::vector<uint8_t> pixels(image.begin(), image.end());
    Ping();
    sd_bus_message* made = nullptr;
    Require(sd_bus_message_new_method_call(mBus.get(), &made, nullptr, kPath, kInterface,
                                           "Event") >= 0,
            "no bus message");
    const Message call(made);
    Require(sd_bus_message_append_array(made, 'y', other.data(), other.size()) >= 0 &&
                    sd_bus_message_append_array(made, 'y', pixels.data(), pixels.size()) >= 0,
            "no room in a bus message");
    sd_bus_message* answer = nullptr;
    Require(sd_bus_call(mBus.get(), made, 0, nullptr, &answer) >= 0, "the bus peer is gone");
    sd_bus_message_unref(answer);
}

int ServeBus() {
    sd_bus* const bus = NewBus(STDIN_FILENO);
    sd_id128_t id{};
    Require(sd_id128_randomize(&id) >= 0 && sd_bus_set_server(bus, 1, id) >= 0 &&
                    sd_bus_set_anonymous(bus, 1) >= 0 &&
                    sd_bus_add_object_vtable(bus, nullptr, kPath, kInterface, kObject, nullptr) >=
                            0 &&
                    sd_bus_start(bus) >= 0,
            "cannot serve sd-bus");
    int result = 0;
    while (result >= 0) {
        result = sd_bus_process(bus, nullptr);
        if (result == 0) result = sd_bus_wait(bus, UINT64_MAX);
    }
    sd_bus_close_unref(bus);
    return 0;
}

}  // namespace zarvo::bench
