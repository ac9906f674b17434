#include <android/binder_manager.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>

#include "host/binder/BinderLog.h"
#include "host/binder/LocalBinder.h"
#include "host/binder/Stability.h"
#include "host/binder/services/DirectoryWatch.h"
#include "host/binder/services/FoundServices.h"
#include "host/binder/services/PublishedServices.h"

namespace zarvo::host {

namespace {

using Clock = std::chrono::steady_clock;

/** For a service that is not there to appear. */
constexpr std::chrono::seconds kGetServiceTime{5};
/** For one that is there to answer. */
constexpr std::chrono::seconds kAnswerTime{5};
/** A service whose file is there may still refuse, for want of a connection or a descriptor. */
constexpr std::chrono::seconds kLookAgainTime{1};
/** One after the other, each between two spaces. */
constexpr std::string_view kDeclared = " " AON_DECLARED_SERVICES " ";

bool IsName(const char* instance) {
    constexpr size_t kLongest = 127;
    constexpr std::string_view kCharacters =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-./";
    if (instance == nullptr) return false;
    const std::string_view name(instance);
    return !name.empty() && name.size() <= kLongest && name.front() != '.' &&
           name.find_first_not_of(kCharacters) == std::string_view::npos;
}

bool IsDeclared(const std::string& instance) {
    return kDeclared.find(' ' + instance + ' ') != std::string_view::npos;
}

binder_exception_t Add(AIBinder* binder, const std::string& instance) {
    LocalBinder* const local = binder->AsLocal();
    if (local == nullptr) return EX_ILLEGAL_ARGUMENT;
    if (local->SettleStability() == Stability::kVintf && !IsDeclared(instance)) {
        BINDER_LOGE("%s is not declared, so it cannot have VINTF stability", instance.c_str());
        return EX_ILLEGAL_ARGUMENT;
    }
    return PublishedServices::Instance().Publish(instance, Ref<AIBinder>::Share(binder));
}

Ref<AIBinder> FindIn(const RuntimeDirectory& directory, const std::string& instance,
                     Deadline deadline) {
    if (auto own = PublishedServices::Instance().Find(instance)) return own;
    return FoundServices::Instance().Find(instance, directory.SocketPath(instance), deadline);
}

Ref<AIBinder> Find(const std::string& instance) {
    RuntimeDirectory::Fault fault{};
    const auto directory = RuntimeDirectory::Open(&fault);
    return directory ? FindIn(*directory, instance, Clock::now() + kAnswerTime) : Ref<AIBinder>();
}

Ref<AIBinder> Await(const std::string& instance, Deadline deadline) {
    RuntimeDirectory::Fault fault{};
    const auto directory = RuntimeDirectory::Open(&fault);
    if (!directory) return {};
    // Watching first: what appears between a look and the wait for the next is told.
    DirectoryWatch watch(directory->Path());
    while (true) {
        auto found = FindIn(*directory, instance, std::min(Clock::now() + kAnswerTime, deadline));
        const auto now = Clock::now();
        if (found || now >= deadline) return found;
        watch.Wait(std::min(now + kLookAgainTime, deadline));
    }
}

}  // namespace

}  // namespace zarvo::host

using namespace zarvo::host;

binder_exception_t AServiceManager_addService(AIBinder* binder, const char* instance) {
    if (binder == nullptr || !IsName(instance)) return EX_ILLEGAL_ARGUMENT;
    return Add(binder, instance);
}

AIBinder* AServiceManager_checkService(const char* instance) {
    return IsName(instance) ? Find(instance).Release() : nullptr;
}

AIBinder* AServiceManager_getService(const char* instance) {
    if (!IsName(instance)) return nullptr;
    return Await(instance, Clock::now() + kGetServiceTime).Release();
}

AIBinder* AServiceManager_waitForService(const char* instance) {
    return IsName(instance) ? Await(instance, Deadline::max()).Release() : nullptr;
}

bool AServiceManager_isDeclared(const char* instance) {
    return IsName(instance) && IsDeclared(instance);
}
