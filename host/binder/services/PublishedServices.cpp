#include "host/binder/services/PublishedServices.h"

#include <cstdlib>
#include <utility>

#include "host/binder/services/ThreadPool.h"

namespace zarvo::host {

PublishedServices& PublishedServices::Instance() {
    static auto* const services = [] {
        std::atexit([] { Instance().RemoveFiles(); });
        return new PublishedServices();
    }();
    return *services;
}

binder_exception_t PublishedServices::Publish(const std::string& instance, Ref<AIBinder> object) {
    RuntimeDirectory::Fault fault{};
    const auto directory = RuntimeDirectory::Open(&fault);
    if (!directory) {
        return fault == RuntimeDirectory::Fault::kForeign ? EX_SECURITY : EX_ILLEGAL_STATE;
    }
    const RpcServer::Settings settings{.threads = ThreadPool::Instance().Threads()};
    auto server = std::make_shared<RpcServer>(settings, object);
    // Its threads may look for services: they end with no lock held.
    Services::node_type replaced = Take(instance);
    replaced = {};
    Service service{std::move(object), nullptr};
    const std::lock_guard lock(mMutex);
    // Under the lock, for whoever is told of the name must find the object itself.
    const auto result = Listener::Open(*directory, instance, std::move(server), &service.listener);
    if (result != EX_NONE) return result;
    if (ThreadPool::Instance().IsStarted()) service.listener->Start();
    // Not empty if somebody took the file of another thread's away.
    std::swap(service, mServices[instance]);
    return EX_NONE;
}

PublishedServices::Services::node_type PublishedServices::Take(const std::string& instance) {
    const std::lock_guard lock(mMutex);
    return mServices.extract(instance);
}

Ref<AIBinder> PublishedServices::Find(const std::string& instance) const {
    const std::lock_guard lock(mMutex);
    const auto service = mServices.find(instance);
    return service == mServices.end() ? Ref<AIBinder>() : service->second.object;
}

void PublishedServices::Start() {
    const std::lock_guard lock(mMutex);
    for (const auto& [instance, service] : mServices) {
        if (service.listener != nullptr) service.listener->Start();
    }
}

void PublishedServices::WithdrawAll() {
    Services withdrawn;
    const std::lock_guard lock(mMutex);
    withdrawn.swap(mServices);
}

void PublishedServices::RemoveFiles() {
    const std::lock_guard lock(mMutex);
    for (const auto& [instance, service] : mServices) {
        if (service.listener != nullptr) service.listener->RemoveFile();
    }
}

}  // namespace zarvo::host
