#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/**
 * RPC binder as it lies on a socket, version 1 (version 0 has a shorter reply). Little-endian, no
 * padding. What an announced length may be at most is said here, and checked before anything is
 * allocated for it.
 */
namespace zarvo::host::wire {

inline constexpr uint32_t kNewestVersion = 1;

/** Bytes of one request's or reply's parcel. Image events need more than the platform's 100,000:
 * a peer that is not this library may refuse them. */
inline constexpr size_t kMostParcelBytes = 4U << 20U;
/** Bytes of all oneway calls in a session that wait for one with a lower number. */
inline constexpr size_t kMostWaitingBytes = 4 * kMostParcelBytes;
/** Objects that one side may name in one session. */
inline constexpr size_t kMostAddresses = 100'000;
/** Calls inside calls that one thread serves: each takes of its stack, and the other end decides
 * how many there are. One more is refused. */
inline constexpr int kMostNestedCalls = 64;
/** Oneway calls of one object that wait for one with a lower number. */
inline constexpr size_t kMostWaitingOneways = 10'000;

inline constexpr size_t kSessionIdBytes = 32;
using SessionId = std::array<uint8_t, kSessionIdBytes>;

/** The first bytes on every socket, from who opened it; a session id may follow. */
struct ConnectionHeader {
    uint32_t version;
    uint8_t options;
    uint8_t fileDescriptorMode;
    uint8_t reserved[8];
    uint16_t sessionIdBytes;
};
static_assert(sizeof(ConnectionHeader) == 16 && offsetof(ConnectionHeader, sessionIdBytes) == 14);
/** Option: who accepted the socket will send the commands. */
inline constexpr uint8_t kIncoming = 1;

/** The answer to a header without session id. */
struct NewSession {
    uint32_t version;
    uint8_t reserved[4];
};
static_assert(sizeof(NewSession) == 8);

/** The first words of who will send commands on a socket. */
struct Init {
    std::array<char, 4> text{'c', 'c', 'i', '\0'};
    std::array<uint8_t, 4> reserved{};
};
static_assert(sizeof(Init) == 8);

enum Command : uint32_t { kTransact = 0, kReply = 1, kDecStrong = 2 };

struct CommandHeader {
    uint32_t command;
    uint32_t bodyBytes;
    uint8_t reserved[8];
};
static_assert(sizeof(CommandHeader) == 16);

/** Then the parcel, then positions of file descriptors, which are none. */
struct TransactBody {
    uint64_t address;
    uint32_t code;
    uint32_t flags;
    uint64_t asyncNumber;
    uint32_t parcelBytes;
    uint8_t reserved[12];
};
static_assert(sizeof(TransactBody) == 40);

/** The same; version 0 has the status alone. */
struct ReplyBody {
    int32_t status;
    uint32_t parcelBytes;
    uint8_t reserved[12];
};
static_assert(sizeof(ReplyBody) == 20);
inline constexpr size_t kReplyBodyBytesOfVersion0 = 4;

struct DecStrongBody {
    uint64_t address;
    uint32_t amount;
    uint32_t reserved;
};
static_assert(sizeof(DecStrongBody) == 16);

/** What the session itself answers; such calls go to address 0. */
enum SpecialCall : uint32_t { kGetRoot = 0, kGetMaxThreads = 1, kGetSessionId = 2 };

/** Addresses tell in their lower half that they are one, and whose. */
inline constexpr uint64_t kAddressCreated = 1;
inline constexpr uint64_t kAddressOfServer = 2;
inline constexpr uint64_t kAddressOptions = 0xFFFFFFFF;

inline constexpr bool IsAddress(uint64_t address) {
    const uint64_t options = address & kAddressOptions;
    return options == kAddressCreated || options == (kAddressCreated | kAddressOfServer);
}

}  // namespace zarvo::host::wire
