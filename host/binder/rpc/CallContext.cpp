#include "host/binder/rpc/CallContext.h"

namespace zarvo::host {

namespace {

thread_local const CallContext* tCurrent = nullptr;

}  // namespace

CallContext::CallContext(const Session* session, Connection* connection, Role role)
    : mSession(session),
      mConnection(connection),
      mRole(role),
      mOuter(tCurrent),
      mDepth(Depth() + (role == Role::kCalls ? 0 : 1)) {
    tCurrent = this;
}

CallContext::~CallContext() {
    tCurrent = mOuter;
}

const CallContext* CallContext::Served() {
    const CallContext* context = tCurrent;
    while (context != nullptr && context->mRole == Role::kCalls)
        context = context->mOuter;
    return context;
}

Connection* CallContext::WaitingCaller(const Session* session) {
    const CallContext* context = tCurrent;
    while (context != nullptr && context->mSession != session)
        context = context->mOuter;
    return context == nullptr || context->mRole != Role::kServes ? nullptr : context->mConnection;
}

int CallContext::Depth() {
    return tCurrent == nullptr ? 0 : tCurrent->mDepth;
}

}  // namespace zarvo::host
