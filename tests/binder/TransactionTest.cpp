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
    ScopedAParcel PrepareVisit(int32_t number = 0) {
        ScopedAParcel in = Prepare();
        AParcel_writeStrongBinder(in.get(), nullptr);
        AParcel_writeInt32(in.get(), number);
        return in;
    }
    binder_status_t Transact(ScopedAParcel in, transaction_code_t code, binder_flags_t flags = 0) {
        mOut.set(nullptr);
        const auto status = AIBinder_transact(mBinder.get(), code, in.getR(), mOut.getR(), flags);
        EXPECT_EQ(in.get(), nullptr);
        EXPECT_EQ(mOut.get() != nullptr, status == STATUS_OK);
        return status;
    }
    binder_status_t Visit(ScopedAParcel in) { return Transact(std::move(in), kVisit); }

    const SpAIBinder mBinder = GetParam() ? mRoot : mPeer->asBinder();
    ScopedAParcel mOut;
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

TEST_P(TransactionTest, ObjectsInAParcelAreReadOftenMovedAndNeverMadeUp) {
    const auto visitor = SharedRefBase::make<Peer>();
    const ScopedAParcel loose(AParcel_create());
    AParcel_writeInt32(loose.get(), 1);
    ASSERT_EQ(AParcel_writeStrongBinder(loose.get(), visitor->asBinder().get()), STATUS_OK);
    uint8_t bytes[20];
    EXPECT_EQ(AParcel_marshal(loose.get(), bytes, 0, 20), STATUS_INVALID_OPERATION);

    ScopedAParcel in = Prepare();
    const int32_t start = AParcel_getDataPosition(in.get());
    ASSERT_EQ(AParcel_appendFrom(loose.get(), in.get(), 4, 16), STATUS_OK);
    for (int i = 0; i < 2; ++i) {
        SpAIBinder read;
        AParcel_setDataPosition(in.get(), start);
        ASSERT_EQ(AParcel_readStrongBinder(in.get(), read.getR()), STATUS_OK);
        EXPECT_EQ(read, visitor->asBinder());
    }
    AParcel_writeInt32(in.get(), 5);
    EXPECT_EQ(Visit(std::move(in)), STATUS_OK);
    ASSERT_NE(mPeer->visitor, nullptr);
    EXPECT_EQ(mPeer->visitor->isRemote(), GetParam());

    // Bytes that are no address name nothing.
    in = Prepare();
    AParcel_writeInt32(in.get(), 1);
    AParcel_writeUint64(in.get(), 4);
    AParcel_writeInt32(in.get(), 12);
    AParcel_writeInt32(in.get(), 5);
    EXPECT_EQ(Visit(std::move(in)), STATUS_BAD_VALUE);
}

}  // namespace
}  // namespace tests
