#include <gtest/gtest.h>
#include <unistd.h>

#include "host/binder/Loopback.h"
#include "tests/binder/Hex.h"
#include "tests/binder/Peer.h"

namespace {

using aidl::tests::IPeer;
using aidl::tests::Peer;
using aidl::tests::PeerClass;
using ndk::ScopedAParcel;
using ndk::ScopedAStatus;
using ndk::SharedRefBase;
using ndk::SpAIBinder;
using tests::Hex;
using zarvo::host::Loopback;

constexpr const char* kToken = "0b000000740065007300740073002e00490050006500650072000000";

/** Calls made by hand, of a local peer (false) and through a connection (true). */
class TransactionTest : public testing::TestWithParam<bool> {
  protected:
    TransactionTest() {
        mPeer = SharedRefBase::make<Peer>([this](const auto& visitor, int32_t number, auto* text) {
            ++mVisits;
            mVisitor = visitor;
            *text = std::to_string(number);
            return ScopedAStatus::fromStatus(number < 0 ? number : STATUS_OK);
        });
        mLoopback = Loopback::Connect(mPeer->asBinder().get());
        mBinder = GetParam() ? mLoopback->Root() : mPeer->asBinder();
        AIBinder_associateClass(mBinder.get(), PeerClass());
    }

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
    binder_status_t Visit(ScopedAParcel in) {
        return Transact(std::move(in), IPeer::TRANSACTION_visit);
    }

    int mVisits = 0;
    std::shared_ptr<IPeer> mVisitor;
    std::shared_ptr<Peer> mPeer;
    std::shared_ptr<Loopback> mLoopback;
    SpAIBinder mBinder;
    ScopedAParcel mOut;
};

INSTANTIATE_TEST_SUITE_P(Binder, TransactionTest, testing::Bool(),
                         [](const auto& test) { return test.param ? "remote" : "local"; });

TEST_P(TransactionTest, RequestBeginsWithTheInterfacesName) {
    EXPECT_EQ(Hex(Prepare().get()), kToken);
    ScopedAParcel in;
    EXPECT_EQ(AIBinder_prepareTransaction(nullptr, in.getR()), STATUS_UNEXPECTED_NULL);
}

TEST_P(TransactionTest, WholeRequestIsServedAndWhatFollowsItIgnored) {
    ScopedAParcel in = PrepareVisit(42);
    AParcel_writeInt32(in.get(), 7);
    EXPECT_EQ(Visit(std::move(in)), STATUS_OK);
    EXPECT_EQ(Hex(mOut.get()), "00000000020000003400320000000000");
    EXPECT_EQ(mVisits, 1);
}

TEST_P(TransactionTest, RequestIsRefusedBeforeTheMethodRuns) {
    EXPECT_EQ(Transact(PrepareVisit(), 0), STATUS_UNKNOWN_TRANSACTION);
    EXPECT_EQ(Transact(PrepareVisit(), 0x01000000), STATUS_UNKNOWN_TRANSACTION);
    EXPECT_EQ(Transact(PrepareVisit(), 0x5F504E47), STATUS_UNKNOWN_TRANSACTION);
    EXPECT_EQ(Transact(PrepareVisit(), 50), STATUS_UNKNOWN_TRANSACTION);
    EXPECT_EQ(Transact(PrepareVisit(), 1, 0x02), STATUS_BAD_VALUE);
    EXPECT_EQ(Visit(ScopedAParcel(AParcel_create())), STATUS_BAD_VALUE);
    EXPECT_EQ(Visit(ScopedAParcel()), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(Visit(Prepare()), STATUS_NOT_ENOUGH_DATA);
    EXPECT_EQ(mVisits, 0);
    EXPECT_EQ(Transact(PrepareVisit(), IPeer::TRANSACTION_visit, 0x20), STATUS_OK);
    EXPECT_EQ(mVisits, 1);
}

TEST_P(TransactionTest, ParcelIsForTheObjectItWasPreparedFor) {
    const SpAIBinder other = SharedRefBase::make<Peer>()->asBinder();
    ScopedAParcel in;
    ASSERT_EQ(AIBinder_prepareTransaction(other.get(), in.getR()), STATUS_OK);
    EXPECT_EQ(Visit(std::move(in)), STATUS_BAD_VALUE);
}

TEST_P(TransactionTest, WrongTokenIsABadType) {
    const char* const tokens[] = {
            "",
            "ffffffff",
            "0b000000",
            "0a00000074006500730074007300 2e0049005000650065000000",
            "0b00000054006500730074007300 2e00490050006500650072000000 0000",
            "00000080ffffffff4e4b4e55",
    };
    for (const char* const token : tokens) {
        SCOPED_TRACE(token);
        ScopedAParcel in = Prepare();
        const ScopedAParcel bytes = tests::ParcelOf(token);
        AParcel_reset(in.get());
        AParcel_appendFrom(bytes.get(), in.get(), 0, AParcel_getDataSize(bytes.get()));
        EXPECT_EQ(Visit(std::move(in)), STATUS_BAD_TYPE);
    }
    EXPECT_EQ(mVisits, 0);
}

TEST_P(TransactionTest, StatusNobodyKnowsBecomesUnknownError) {
    EXPECT_EQ(Visit(PrepareVisit(STATUS_TIMED_OUT)), STATUS_TIMED_OUT);
    EXPECT_EQ(Visit(PrepareVisit(-12345)), STATUS_UNKNOWN_ERROR);
}

TEST_P(TransactionTest, ObjectOfAnotherInterfaceArrivesAsNull) {
    const SpAIBinder stranger(
            AIBinder_new(AIBinder_Class_define(
                                 "tests.IStranger", [](void* args) { return args; }, [](void*) {},
                                 [](AIBinder*, transaction_code_t, const AParcel*,
                                    AParcel*) -> binder_status_t { return STATUS_OK; }),
                         nullptr));
    ScopedAParcel in = Prepare();
    AParcel_writeStrongBinder(in.get(), stranger.get());
    AParcel_writeInt32(in.get(), 0);
    EXPECT_EQ(Visit(std::move(in)), STATUS_OK);
    EXPECT_EQ(mVisits, 1);
    EXPECT_EQ(mVisitor, nullptr);
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
    ASSERT_NE(mVisitor, nullptr);
    EXPECT_EQ(mVisitor->isRemote(), GetParam());

    // The same bytes, written as numbers, name nothing.
    in = Prepare();
    AParcel_writeInt32(in.get(), 1);
    AParcel_writeUint64(in.get(), 1);
    AParcel_writeInt32(in.get(), 12);
    AParcel_writeInt32(in.get(), 5);
    EXPECT_EQ(Visit(std::move(in)), STATUS_BAD_VALUE);
}

TEST_P(TransactionTest, CallerIsThisProcess) {
    EXPECT_EQ(AIBinder_getCallingUid(), getuid());
    EXPECT_EQ(AIBinder_getCallingPid(), getpid());
    EXPECT_FALSE(AIBinder_isHandlingTransaction());
}

TEST(SessionParcel, ObjectsCarryTheAddressOfTheEndThatHasThem) {
    const SpAIBinder root = SharedRefBase::make<Peer>()->asBinder();
    AIBinder_markVintfStability(root.get());
    const auto loopback = Loopback::Connect(root.get());
    const SpAIBinder proxy = loopback->Root();
    const SpAIBinder first = SharedRefBase::make<Peer>()->asBinder();
    const SpAIBinder second = SharedRefBase::make<Peer>()->asBinder();
    ASSERT_TRUE(AIBinder_associateClass(proxy.get(), PeerClass()));
    ScopedAParcel in;
    ASSERT_EQ(AIBinder_prepareTransaction(proxy.get(), in.getR()), STATUS_OK);
    const int32_t start = AParcel_getDataPosition(in.get());
    for (const SpAIBinder& binder : {first, second, first, proxy}) {
        ASSERT_EQ(AParcel_writeStrongBinder(in.get(), binder.get()), STATUS_OK);
    }
    AParcel_setDataPosition(in.get(), start);
    const uint64_t addresses[] = {0x1, 0x100000001, 0x1, 0x3};
    const int32_t levels[] = {12, 12, 12, 63};
    for (size_t i = 0; i < 4; ++i) {
        int32_t present = 0;
        uint64_t address = 0;
        int32_t level = 0;
        AParcel_readInt32(in.get(), &present);
        AParcel_readUint64(in.get(), &address);
        AParcel_readInt32(in.get(), &level);
        EXPECT_EQ(present, 1);
        EXPECT_EQ(address, addresses[i]);
        EXPECT_EQ(level, levels[i]);
    }
}

}  // namespace
