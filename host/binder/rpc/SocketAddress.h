#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>
#include <optional>
#include <string>

namespace zarvo::host {

/** The address of a socket in the file system. A value. */
class SocketAddress {
  public:
    /** Nothing if the path is empty or too long for an address. */
    static std::optional<SocketAddress> Of(const std::string& path) {
        SocketAddress address;
        if (path.empty() || path.size() >= sizeof(address.mAddress.sun_path)) return std::nullopt;
        address.mAddress.sun_family = AF_UNIX;
        std::memcpy(address.mAddress.sun_path, path.c_str(), path.size() + 1);
        return address;
    }

    const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&mAddress); }
    socklen_t Size() const { return sizeof(mAddress); }

  private:
    SocketAddress() = default;

    sockaddr_un mAddress{};
};

}  // namespace zarvo::host
