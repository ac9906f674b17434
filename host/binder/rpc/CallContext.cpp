#include "host/binder/rpc/CallContext.h"

namespace zarvo::host {

namespace {

thread_local const CallContext* tCurrent = nullptr;

}  // namespace

CallContext::CallContext(const Session* session, Connection* connection, bool oneway)
    : mSession(session),
      mConnection(connection),
      mOneway(oneway),
      mDepth(Depth() + 1),
      mOuter(tCurrent) {
    tCurrent = this;
}

CallContext::~CallContext() {
    tCurrent = mOuter;
}

const CallContext* CallContext::Current() {
    return tCurrent;
}

int CallContext::Depth() {
    return tCurrent == nullptr ? 0 : tCurrent->mDepth;
}

Connection* CallContext::WaitingCaller(const Session* session) {
    const CallContext* context = tCurrent;
    while (context != nullptr && context->mSession != session)
        context = context->mOuter;
    return context == nullptr || context->mOneway ? nullptr : context->mConnection;
}

}  // namespace zarvo::host
