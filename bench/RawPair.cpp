#include "bench/RawPair.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <memory>

#include <benchmark/benchmark.h>

#include "bench/Fail.h"

namespace zarvo::bench {

namespace {

struct Header {
    uint64_t bytes = 0;
    std::array<uint64_t, 3> rest{};
};
static_assert(sizeof(Header) == 32);

constexpr size_t kBufferBytes = size_t{1} << 20;
constexpr int kSocket = STDIN_FILENO;

/** Takes what comes into the header and the buffer at once, and what is missing after that. */
bool ReceiveIntoBuffer(std::span<uint8_t> buffer) {
    Header header;
    std::array parts{iovec{&header, sizeof(header)}, iovec{buffer.data(), buffer.size()}};
    msghdr message{};
    message.msg_iov = parts.data();
    message.msg_iovlen = parts.size();
    const ssize_t received = recvmsg(kSocket, &message, 0);
    if (received < static_cast<ssize_t>(sizeof(header))) return false;
    const size_t have = static_cast<size_t>(received) - sizeof(header);
    if (header.bytes > buffer.size() || have > header.bytes) return false;
    return ReceiveAll(kSocket, buffer.data() + have, header.bytes - have);
}

bool ReceiveIntoVector() {
    Header header;
    if (!ReceiveValue(kSocket, &header) || header.bytes > kBufferBytes) return false;
    std::vector<uint8_t> bytes(header.bytes);
    benchmark::DoNotOptimize(bytes.data());
    return ReceiveAll(kSocket, bytes.data(), bytes.size());
}

}  // namespace

RawPair::RawPair(Landing landing)
    : mPeer(landing == Landing::kBuffer ? "raw-buffer" : "raw-vector") {}

void RawPair::Ping() {
    Ask({}, {});
}

void RawPair::Deliver(size_t otherBytes, std::span<const uint8_t> image) {
    mOther.resize(otherBytes);
    Ping();
    Ask(mOther, image);
}

void RawPair::Ask(std::span<const uint8_t> other, std::span<const uint8_t> image) {
    Header header;
    header.bytes = other.size() + image.size();
    std::array parts{iovec{&header, sizeof(header)},
                     iovec{const_cast<uint8_t*>(other.data()), other.size()},
                     iovec{const_cast<uint8_t*>(image.data()), image.size()}};
    Header answer;
    Require(SendAll(mPeer.Socket(), parts) && ReceiveValue(mPeer.Socket(), &answer),
            "the raw peer is gone");
}

int ServeRaw(RawPair::Landing landing) {
    const auto buffer = std::make_unique<std::array<uint8_t, kBufferBytes>>();
    while (landing == RawPair::Landing::kBuffer ? ReceiveIntoBuffer(*buffer)
                                                : ReceiveIntoVector()) {
        if (!SendValue(kSocket, Header())) break;
    }
    return 0;
}

}  // namespace zarvo::bench
