#include "service/DumpOutput.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <future>
#include <string>

#include <gtest/gtest.h>

namespace zarvo::aon {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLong{20000};
constexpr milliseconds kShort{20};

/** Two connected descriptors. */
class Pipe {
  public:
    explicit Pipe(bool socket = false) {
        const int result = socket ? socketpair(AF_UNIX, SOCK_STREAM, 0, mEnds.data())
                                  : pipe2(mEnds.data(), O_CLOEXEC);
        EXPECT_EQ(result, 0);
    }
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
    for (const bool socket : {false, true}) {
        const Pipe pipe(socket);
        std::string text(1 << 20, 'x');
        text.back() = '!';
        auto writing = std::async(std::launch::async,
                                  [&] { return WriteDump(pipe.Writer(), text, kLong); });
        EXPECT_EQ(ReadAll(pipe.Reader(), text.size()), text);
        EXPECT_EQ(writing.get(), STATUS_OK);
    }
}

TEST(DumpOutput, GivesUpOnWhoNeverReads) {
    for (const bool socket : {false, true}) {
        const Pipe pipe(socket);
        const std::string text(1 << 20, 'x');
        EXPECT_EQ(WriteDump(pipe.Writer(), text, kShort), STATUS_TIMED_OUT);
    }
}

TEST(DumpOutput, SurvivesDescriptorsThatCannotBeWritten) {
    Pipe pipe;
    EXPECT_EQ(WriteDump(-1, "text", kLong), STATUS_UNKNOWN_ERROR);
    EXPECT_EQ(WriteDump(pipe.Reader(), "text", kShort), STATUS_TIMED_OUT);
    pipe.CloseReader();
    EXPECT_EQ(WriteDump(pipe.Writer(), "text", kLong), STATUS_UNKNOWN_ERROR);
    Pipe connection(true);
    connection.CloseReader();
    EXPECT_EQ(WriteDump(connection.Writer(), "text", kLong), STATUS_UNKNOWN_ERROR);
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(WriteDump(full, "text", kLong), STATUS_UNKNOWN_ERROR);
    close(full);
}

}  // namespace
}  // namespace zarvo::aon
