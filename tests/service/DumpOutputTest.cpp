#include "service/DumpOutput.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <future>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace zarvo::aon {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLong{20000};
constexpr milliseconds kShort{20};
constexpr std::future_status kReady = std::future_status::ready;

enum class Kind { kPipe, kSocket, kTerminal };
constexpr Kind kKinds[] = {Kind::kPipe, Kind::kSocket, Kind::kTerminal};

/** Two connected descriptors. */
class Pipe {
  public:
    explicit Pipe(Kind kind = Kind::kPipe) { EXPECT_EQ(Open(kind), 0); }
    ~Pipe() {
        close(mEnds[1]);
        CloseReader();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int Writer() const { return mEnds[1]; }
    int Reader() const { return mEnds[0]; }
    void CloseReader() { close(std::exchange(mEnds[0], -1)); }

  private:
    int Open(Kind kind) {
        if (kind == Kind::kPipe) return pipe2(mEnds.data(), O_CLOEXEC);
        if (kind == Kind::kSocket) return socketpair(AF_UNIX, SOCK_STREAM, 0, mEnds.data());
        return openpty(&mEnds[0], &mEnds[1], nullptr, nullptr, nullptr);
    }

    std::array<int, 2> mEnds{-1, -1};
};

std::string ReadAll(int fd, size_t size) {
    std::string text(size, '\0');
    size_t count = 0;
    while (count < size) {
        const ssize_t got = read(fd, text.data() + count, size - count);
        if (got <= 0) break;
        count += static_cast<size_t>(got);
    }
    text.resize(count);
    return text;
}

TEST(DumpOutput, ReachesAReaderWhoTakesItSlowly) {
    for (const Kind kind : kKinds) {
        const Pipe pipe(kind);
        std::string text(1 << 20, 'x');
        text.back() = '!';
        auto writing = std::async(std::launch::async,
                                  [&] { return WriteDump(pipe.Writer(), text, kLong); });
        EXPECT_EQ(ReadAll(pipe.Reader(), text.size()), text);
        EXPECT_EQ(writing.get(), STATUS_OK);
    }
}

TEST(DumpOutput, GivesUpOnWhoNeverReads) {
    std::string text;
    while (text.size() < 1 << 20)
        text += "lines that a terminal makes longer\n";
    for (const Kind kind : kKinds) {
        const Pipe pipe(kind);
        const int flags = fcntl(pipe.Writer(), F_GETFL);
        EXPECT_EQ(WriteDump(pipe.Writer(), text, kShort), STATUS_TIMED_OUT);
        EXPECT_EQ(fcntl(pipe.Writer(), F_GETFL), flags);
    }
}

TEST(DumpOutput, GivesUpWhenAnotherWriterTakesTheRoom) {
    const std::string text(1 << 20, 'x');
    for (int i = 0; i < 20; ++i) {
        const Pipe pipe;
        const auto write = [&] { return WriteDump(pipe.Writer(), text, kShort); };
        auto one = std::async(std::launch::async, write);
        auto other = std::async(std::launch::async, write);
        // Room for one at a time, then for nobody.
        fcntl(pipe.Reader(), F_SETFL, O_NONBLOCK);
        for (int pages = 0; pages < 20 && other.wait_for(milliseconds(0)) != kReady;)
            pages += ReadAll(pipe.Reader(), PIPE_BUF).empty() ? 0 : 1;
        EXPECT_EQ(one.get(), STATUS_TIMED_OUT);
        EXPECT_EQ(other.get(), STATUS_TIMED_OUT);
        EXPECT_EQ(fcntl(pipe.Writer(), F_GETFL) & O_NONBLOCK, 0);
    }
}

TEST(DumpOutput, SurvivesDescriptorsThatCannotBeWritten) {
    Pipe pipe;
    EXPECT_EQ(WriteDump(-1, "text", kLong), STATUS_UNKNOWN_ERROR);
    EXPECT_EQ(WriteDump(pipe.Reader(), "text", kShort), STATUS_TIMED_OUT);
    pipe.CloseReader();
    EXPECT_EQ(WriteDump(pipe.Writer(), "text", kLong), STATUS_UNKNOWN_ERROR);
    Pipe connection(Kind::kSocket);
    connection.CloseReader();
    EXPECT_EQ(WriteDump(connection.Writer(), "text", kLong), STATUS_UNKNOWN_ERROR);
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(WriteDump(full, "text", kLong), STATUS_UNKNOWN_ERROR);
    close(full);
    for (const int other : {eventfd(0, EFD_CLOEXEC), open("/", O_RDONLY | O_CLOEXEC),
                            open("/dev/null", O_PATH | O_CLOEXEC)}) {
        EXPECT_EQ(WriteDump(other, "text", kLong), STATUS_UNKNOWN_ERROR);
        close(other);
    }
}

}  // namespace
}  // namespace zarvo::aon
