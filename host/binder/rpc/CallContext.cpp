#include "host/binder/rpc/CallContext.h"

namespace zarvo::host {

namespace {

thread_local const CallContext* tCurrent = nullptr;

}  // namespace

CallContext::CallContext(const Session* session, Connection* connection, bool oneway)
    : mSession(session), mConnection(connection), mOneway(oneway), mOuter(tCurrent) {
    tCurrent = this;
}

CallContext::~CallContext() {
    tCurrent = mOuter;
}

const CallContext* CallContext::Current() {
    return tCurrent;
}

Connection* CallContext::WaitingCaller(const Session* session) {
    const CallContext* context = tCurrent;
    while (context != nullptr && context->mSession != session)
        context = context->mOuter;
    return context == nullptr || context->mOneway ? nullptr : context->mConnection;
}

}  // namespace zarvo::host
