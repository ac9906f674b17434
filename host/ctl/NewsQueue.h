#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <variant>

#include "host/ctl/Client.h"

namespace zarvo::host::ctl {

/** Somebody wants the client to end. */
struct Leave {};
/** The service is dead. */
struct Died {};

/** Something that happened to the client. */
struct News {
    ClientSink::Time arrival;
    std::variant<Leave, Died, AONCallBackInfo, AONSensorStateInfo> what;
};

/** What the threads of the process tell the main one. Thread-safe. */
class NewsQueue {
  public:
    /** Of a reader who cannot follow, events are passed over and counted, never anything else. */
    void Push(News news) {
        const bool isEvent = std::holds_alternative<AONCallBackInfo>(news.what);
        const std::lock_guard lock(mMutex);
        if (isEvent && mEvents >= kMostEvents) {
            ++mMissed;
            return;
        }
        mEvents += isEvent ? 1 : 0;
        mNews.push_back(std::move(news));
        mChanged.notify_one();
    }
    /** The next, or a wish to leave once the time has come. */
    News Next(std::optional<ClientSink::Time> end) {
        std::unique_lock lock(mMutex);
        const auto ready = [this] { return !mNews.empty(); };
        if (!end) mChanged.wait(lock, ready);
        if (end && !mChanged.wait_until(lock, *end, ready)) return {*end, Leave()};
        News news = std::move(mNews.front());
        mNews.pop_front();
        mEvents -= std::holds_alternative<AONCallBackInfo>(news.what) ? 1 : 0;
        return news;
    }
    uint64_t EventsMissed() const {
        const std::lock_guard lock(mMutex);
        return mMissed;
    }

  private:
    /** Half a megabyte each, with a picture. */
    static constexpr size_t kMostEvents = 32;

    mutable std::mutex mMutex;
    std::condition_variable mChanged;
    std::deque<News> mNews;
    size_t mEvents = 0;
    uint64_t mMissed = 0;
};

}  // namespace zarvo::host::ctl
