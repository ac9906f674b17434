#pragma once

#include <memory>
#include <optional>
#include <string>

#include "bench/Client.h"
#include "bench/Peer.h"
#include "platform/mtkcam/IAOVStream.h"

namespace zarvo::bench {

/** The sockets' folder of this process and its children from here on, in place of an earlier one;
 * at the end of this object it is gone, and the earlier one is back. Made while no other thread
 * reads the environment. */
class RuntimeFolder {
  public:
    RuntimeFolder();
    RuntimeFolder(const RuntimeFolder&) = delete;
    RuntimeFolder& operator=(const RuntimeFolder&) = delete;
    ~RuntimeFolder();

    /** Removes the folders of all objects there are, for a process that ends at once. */
    static void RemoveAll();

  private:
    static RuntimeFolder* sInnermost;

    RuntimeFolder* const mOuter;
    const std::optional<std::string> mFormer;
    std::string mPath;
};

/**
 * A client in a process of its own, which does what it is told over its socket. It finds the
 * service by its name. Used by one thread.
 */
class ClientProcess {
  public:
    ClientProcess() : mPeer("client") {}

    /** It registers, subscribes and starts. */
    void Begin() { Order(Task::kBegin); }
    void End() { Order(Task::kEnd); }
    /** It leads so many lives. */
    OperationTimes Live(uint64_t lives) { return Order(Task::kLive, lives).times; }
    uint64_t Events() { return Order(Task::kCount).events; }
    uint64_t PageFaults() { return Order(Task::kCount).pageFaults; }
    pid_t Pid() const { return mPeer.Pid(); }

    /** The other end, on standard input until that ends. */
    static int Serve();

  private:
    enum class Task : uint64_t { kBegin, kEnd, kLive, kCount };
    struct Instruction {
        Task task;
        uint64_t lives;
    };
    struct Answer {
        OperationTimes times{};
        uint64_t events = 0;
        /** Of all its threads. */
        uint64_t pageFaults = 0;
    };

    Answer Order(Task task, uint64_t lives = 0);
    static Answer Do(Client& client, const Instruction& instruction);

    Peer mPeer;
};

/**
 * The service of this process, published: the library's rooms as a program makes them, on the
 * quiet stream. One per process, made at first use and never ended.
 */
std::shared_ptr<IAONService> TheService();

/** A whole event: from the stream's record to the vectors of a client in another process. */
class EventPair {
  public:
    EventPair();
    /** Ends the benchmark if not every event has arrived. */
    ~EventPair();
    EventPair(const EventPair&) = delete;
    EventPair& operator=(const EventPair&) = delete;

    /** Returns when the client has returned. */
    void Deliver(aov_event& event) {
        mCallback->onCallback(&event);
        ++mDelivered;
    }
    ClientProcess& Other() { return mClient; }

  private:
    const std::shared_ptr<IAONService> mService = TheService();
    ClientProcess mClient;
    std::shared_ptr<IAovStreamCallback> mCallback;
    uint64_t mDelivered = 0;
};

/** Bytes of the message that brings such an event to a client, besides its image. */
size_t OtherBytesOf(aov_event& event);

}  // namespace zarvo::bench
