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
    // In the end what it replaces, whose threads may look for services: it ends with no lock held.
    Service service{std::move(object), nullptr};
    const std::lock_guard lock(mMutex);
    const auto known = mServices.find(instance);
    const Listener* const replaced =
            known == mServices.end() ? nullptr : known->second.listener.get();
    // Under the lock, for whoever is told of the name must find the object itself.
    const auto result =
            Listener::Open(*directory, instance, std::move(server),
                           ThreadPool::Instance().IsServing(), replaced, &service.listener);
    if (result != EX_NONE) return result;
    std::swap(service, mServices[instance]);
    return EX_NONE;
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
    std::map<std::string, Service> withdrawn;
    const std::lock_guard lock(mMutex);
    // Whoever loses one service finds no other that is about to end.
    RemoveFilesLocked();
    withdrawn.swap(mServices);
}

void PublishedServices::RemoveFiles() {
    const std::lock_guard lock(mMutex);
    RemoveFilesLocked();
}

void PublishedServices::RemoveFilesLocked() {
    for (const auto& [instance, service] : mServices) {
        if (service.listener != nullptr) service.listener->RemoveFile();
    }
}

}  // namespace zarvo::host
