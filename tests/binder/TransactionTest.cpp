#include "host/binder/BinderFaults.h"
#include "tests/binder/Hex.h"
#include "tests/binder/Peer.h"

namespace tests {
namespace {

constexpr transaction_code_t kVisit = FIRST_CALL_TRANSACTION;

/** Calls made by hand, of a local peer (false) and through a connection (true). */
class TransactionTest : public ConnectionTest, public testing::WithParamInterface<bool> {
  protected:
    ScopedAParcel Prepare() {
        ScopedAParcel in;
        EXPECT_EQ(AIBinder_prepareTransaction(mBinder.get(), in.getR()), STATUS_OK);
        return in;
    }
    /** A whole request to visit. */
    ScopedAParcel PrepareVisit() {
        ScopedAParcel in = Prepare();
        AParcel_writeStrongBinder(in.get(), nullptr);
        AParcel_writeInt32(in.get(), 0);
        return in;
    }
    binder_status_t Transact(ScopedAParcel in, transaction_code_t code, binder_flags_t flags = 0) {
        ScopedAParcel out;
        const auto status = AIBinder_transact(mBinder.get(), code, in.getR(), out.getR(), flags);
        EXPECT_EQ(in.get(), nullptr);
        EXPECT_EQ(out.get() != nullptr, status == STATUS_OK);
        return status;
    }
    binder_status_t Visit(ScopedAParcel in) { return Transact(std::move(in), kVisit); }

    const SpAIBinder mBinder = GetParam() ? mRoot : mPeer->asBinder();
};

INSTANTIATE_TEST_SUITE_P(Binder, TransactionTest, testing::Bool(),
                         [](const auto& test) { return test.param ? "remote" : "local"; });

TEST_P(TransactionTest, RequestIsRefusedBeforeTheMethodRuns) {
    for (const transaction_code_t code : {0u, 50u, 0x01000000u, 0x5F504E47u})
        EXPECT_EQ(Transact(PrepareVisit(), code), STATUS_UNKNOWN_TRANSACTION) << code;
    EXPECT_EQ(Transact(PrepareVisit(), kVisit, 0x02), STATUS_BAD_VALUE);
    const SpAIBinder other = SharedRefBase::make<Peer>()->asBinder();
    ScopedAParcel forOther;
    ASSERT_EQ(AIBinder_prepareTransaction(other.get(), forOther.getR()), STATUS_OK);
    EXPECT_EQ(Visit(std::move(forOther)), STATUS_BAD_VALUE);
    EXPECT_EQ(Visit(ScopedAParcel(AParcel_create())), STATUS_BAD_VALUE);
    EXPECT_EQ(Visit(ScopedAParcel()), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(Visit(Prepare()), STATUS_NOT_ENOUGH_DATA);
    zarvo::host::BinderFaults::Instance().transact.FailCalls(1);
    EXPECT_EQ(Visit(PrepareVisit()), STATUS_FAILED_TRANSACTION);
    EXPECT_EQ(mPeer->visits, 0);
    EXPECT_EQ(Transact(PrepareVisit(), kVisit, 0x20), STATUS_OK);
    EXPECT_EQ(mPeer->visits, 1);
}

}  // namespace
}  // namespace tests
