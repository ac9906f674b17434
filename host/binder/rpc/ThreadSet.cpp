#include "host/binder/rpc/ThreadSet.h"

#include <system_error>
#include <utility>

namespace zarvo::host {

ThreadSet::~ThreadSet() {
    const std::lock_guard lock(mState->mutex);
    for (auto& [id, thread] : mState->running)
        thread.detach();
    mState->running.clear();
    if (mState->ended.joinable()) mState->ended.detach();
}

bool ThreadSet::Spawn(std::function<void()> work) {
    // Held until the thread is listed, so that it finds itself when it ends.
    const std::lock_guard lock(mState->mutex);
    try {
        std::thread thread([state = mState, work = std::move(work)]() mutable {
            work();
            work = nullptr;
            state->End();
        });
        const auto id = thread.get_id();
        mState->running.emplace(id, std::move(thread));
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void ThreadSet::State::End() {
    std::thread before;
    {
        const std::lock_guard lock(mutex);
        const auto self = running.find(std::this_thread::get_id());
        // Somebody has taken it over, to join it or let it go.
        if (self == running.end()) return;
        before = std::exchange(ended, std::move(self->second));
        running.erase(self);
    }
    if (before.joinable()) before.join();
}

void ThreadSet::JoinAll() {
    std::map<std::thread::id, std::thread> threads;
    std::thread ended;
    {
        const std::lock_guard lock(mState->mutex);
        threads.swap(mState->running);
        ended.swap(mState->ended);
    }
    if (ended.joinable()) ended.join();
    for (auto& [id, thread] : threads) {
        if (id == std::this_thread::get_id())
            thread.detach();
        else
            thread.join();
    }
}

}  // namespace zarvo::host
