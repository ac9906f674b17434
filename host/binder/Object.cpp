#include <android/binder_ibinder.h>
#include <unistd.h>

#include <atomic>
#include <memory>

#include "host/binder/Class.h"
#include "host/binder/LocalBinder.h"
#include "host/binder/Parcel.h"
#include "host/binder/ProxyBinder.h"
#include "host/binder/StatusNames.h"
#include "host/binder/Utf.h"
#include "host/binder/rpc/CallContext.h"

using zarvo::host::CallContext;
using zarvo::host::LocalBinder;
using zarvo::host::Ref;

namespace {

std::atomic<AIBinder_Class*> gLastClass{nullptr};

AIBinder_Class* KeepForEver(AIBinder_Class* clazz) {
    clazz->previous = gLastClass.load();
    while (!gLastClass.compare_exchange_weak(clazz->previous, clazz)) {
    }
    return clazz;
}

}  // namespace

/* Classes, and what an object tells of itself. */

AIBinder_Class* AIBinder_Class_define(const char* interfaceDescriptor,
                                      AIBinder_Class_onCreate onCreate,
                                      AIBinder_Class_onDestroy onDestroy,
                                      AIBinder_Class_onTransact onTransact) {
    if (interfaceDescriptor == nullptr || onCreate == nullptr || onDestroy == nullptr ||
        onTransact == nullptr) {
        return nullptr;
    }
    auto token = zarvo::host::Utf8ToUtf16(interfaceDescriptor);
    if (!token) return nullptr;
    return KeepForEver(new AIBinder_Class{interfaceDescriptor, *std::move(token), onCreate,
                                          onDestroy, onTransact});
}

void AIBinder_Class_setOnDump(AIBinder_Class* clazz, AIBinder_onDump onDump) {
    if (clazz != nullptr) clazz->onDump = onDump;
}

void AIBinder_Class_disableInterfaceTokenHeader(AIBinder_Class* clazz) {
    if (clazz != nullptr) clazz->hasToken = false;
}

const char* AIBinder_Class_getDescriptor(const AIBinder_Class* clazz) {
    return clazz == nullptr ? nullptr : clazz->descriptor.c_str();
}

AIBinder* AIBinder_new(const AIBinder_Class* clazz, void* args) {
    return clazz == nullptr ? nullptr : new LocalBinder(clazz, args);
}

bool AIBinder_isRemote(const AIBinder* binder) {
    return binder != nullptr && const_cast<AIBinder*>(binder)->AsProxy() != nullptr;
}

bool AIBinder_isAlive(const AIBinder* binder) {
    return binder != nullptr && binder->IsAlive();
}

binder_status_t AIBinder_dump(AIBinder* binder, int fd, const char** args, uint32_t numArgs) {
    if (binder == nullptr) return STATUS_UNEXPECTED_NULL;
    if (binder->AsLocal() == nullptr) return STATUS_BAD_TYPE;
    const AIBinder_onDump onDump = binder->Class()->onDump;
    if (onDump == nullptr) return STATUS_OK;
    return zarvo::host::PruneStatus(onDump(binder, fd, args, numArgs));
}

bool AIBinder_associateClass(AIBinder* binder, const AIBinder_Class* clazz) {
    return binder != nullptr && clazz != nullptr && binder->AssociateClass(clazz);
}

const AIBinder_Class* AIBinder_getClass(AIBinder* binder) {
    return binder == nullptr ? nullptr : binder->Class();
}

void* AIBinder_getUserData(AIBinder* binder) {
    LocalBinder* const local = binder == nullptr ? nullptr : binder->AsLocal();
    return local == nullptr ? nullptr : local->UserData();
}

uid_t AIBinder_getCallingUid() {
    const CallContext* const call = CallContext::Served();
    return call == nullptr ? getuid() : call->Caller().uid;
}

pid_t AIBinder_getCallingPid() {
    const CallContext* const call = CallContext::Served();
    return call == nullptr ? getpid() : call->Caller().pid;
}

bool AIBinder_isHandlingTransaction() {
    return CallContext::Served() != nullptr;
}

binder_status_t AIBinder_setExtension(AIBinder* binder, AIBinder* ext) {
    if (binder == nullptr) return STATUS_UNEXPECTED_NULL;
    LocalBinder* const local = binder->AsLocal();
    if (local == nullptr) return STATUS_INVALID_OPERATION;
    local->SetExtension(Ref<AIBinder>::Share(ext));
    return STATUS_OK;
}

binder_status_t AIBinder_getExtension(AIBinder* binder, AIBinder** outExt) {
    if (outExt == nullptr) return STATUS_UNEXPECTED_NULL;
    *outExt = nullptr;
    if (binder == nullptr) return STATUS_UNEXPECTED_NULL;
    if (const LocalBinder* const local = binder->AsLocal(); local != nullptr) {
        *outExt = local->Extension().Release();
        return STATUS_OK;
    }
    const std::unique_ptr<AParcel> request(binder->NewParcel());
    const std::unique_ptr<AParcel> reply(binder->NewParcel());
    const auto status =
            binder->Transact(zarvo::host::kExtensionTransaction, *request, reply.get(), 0);
    return status == STATUS_OK ? reply->ReadObject(outExt) : status;
}
