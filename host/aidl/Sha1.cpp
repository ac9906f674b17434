#include "host/aidl/Sha1.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace zarvo::host::aidl {

namespace {

constexpr size_t kBlockSize = 64;

using Digest = std::array<uint32_t, 5>;
using Schedule = std::array<uint32_t, 80>;

uint32_t BigEndian(std::string_view bytes) {
    uint32_t word = 0;
    for (const char byte : bytes.substr(0, 4)) {
        word = (word << 8) | static_cast<uint8_t>(byte);
    }
    return word;
}

Schedule Expand(std::string_view block) {
    Schedule words{};
    for (size_t i = 0; i < 16; ++i) {
        words[i] = BigEndian(block.substr(4 * i));
    }
    for (size_t i = 16; i < words.size(); ++i) {
        words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
    }
    return words;
}

/** The function and constant of a round. */
uint32_t Mix(size_t round, uint32_t b, uint32_t c, uint32_t d) {
    if (round < 20) return ((b & c) | (~b & d)) + 0x5a827999;
    if (round < 40) return (b ^ c ^ d) + 0x6ed9eba1;
    if (round < 60) return ((b & c) | (b & d) | (c & d)) + 0x8f1bbcdc;
    return (b ^ c ^ d) + 0xca62c1d6;
}

void AddBlock(Digest& digest, std::string_view block) {
    const Schedule words = Expand(block);
    auto [a, b, c, d, e] = digest;
    for (size_t round = 0; round < words.size(); ++round) {
        const uint32_t next = std::rotl(a, 5) + Mix(round, b, c, d) + e + words[round];
        e = d;
        d = c;
        c = std::rotl(b, 30);
        b = a;
        a = next;
    }
    const Digest sum = {a, b, c, d, e};
    for (size_t i = 0; i < digest.size(); ++i) {
        digest[i] += sum[i];
    }
}

/** The bytes after the last whole block, ended and filled up as the standard says. */
std::string Tail(std::string_view bytes) {
    std::string tail(bytes.substr(bytes.size() / kBlockSize * kBlockSize));
    tail += '\x80';
    while (tail.size() % kBlockSize != kBlockSize - 8) {
        tail += '\0';
    }
    const uint64_t bits = uint64_t{bytes.size()} * 8;
    for (int shift = 56; shift >= 0; shift -= 8) {
        tail += static_cast<char>(static_cast<uint8_t>(bits >> shift));
    }
    return tail;
}

std::string Hex(const Digest& digest) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const uint32_t word : digest) {
        for (int shift = 28; shift >= 0; shift -= 4) {
            text += kDigits[(word >> shift) & 0xf];
        }
    }
    return text;
}

}  // namespace

std::string Sha1Hex(std::string_view bytes) {
    Digest digest = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
    for (size_t at = 0; at + kBlockSize <= bytes.size(); at += kBlockSize) {
        AddBlock(digest, bytes.substr(at, kBlockSize));
    }
    const std::string tail = Tail(bytes);
    for (size_t at = 0; at < tail.size(); at += kBlockSize) {
        AddBlock(digest, std::string_view(tail).substr(at, kBlockSize));
    }
    return Hex(digest);
}

}  // namespace zarvo::host::aidl
