#include "host/binder/rpc/ThreadSet.h"

#include <system_error>
#include <utility>

namespace zarvo::host {

ThreadSet::~ThreadSet() {
    const std::lock_guard lock(mState->mutex);
    ReapLocked();
    for (const auto& member : mState->members)
        member->thread.detach();
}

bool ThreadSet::Spawn(std::function<void()> work) {
    const std::lock_guard lock(mState->mutex);
    ReapLocked();
    const auto member = std::make_shared<Member>();
    try {
        member->thread = std::thread([state = mState, member, work = std::move(work)]() mutable {
            work();
            work = nullptr;
            const std::lock_guard endLock(state->mutex);
            member->ended = true;
        });
    } catch (const std::system_error&) {
        return false;
    }
    mState->members.push_back(member);
    return true;
}

void ThreadSet::JoinAll() {
    std::list<std::shared_ptr<Member>> members;
    {
        const std::lock_guard lock(mState->mutex);
        members.swap(mState->members);
    }
    for (const auto& member : members) {
        if (member->thread.get_id() == std::this_thread::get_id())
            member->thread.detach();
        else
            member->thread.join();
    }
}

void ThreadSet::ReapLocked() {
    // What has ended needs this lock no more, so joining it is over at once.
    mState->members.remove_if([](const auto& member) {
        if (member->ended) member->thread.join();
        return member->ended;
    });
}

}  // namespace zarvo::host
