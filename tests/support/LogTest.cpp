#include <android/log.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <optional>
#include <thread>

#include "host/log/LogFormat.h"
#include "host/log/LogTap.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::host {
namespace {

using test::LogRecorder;
using Texts = std::vector<std::string>;

TEST(LogFormat, IsLogcatsThreadTimeForm) {
    LogLine line{.priority = ANDROID_LOG_INFO,
                 .tag = "Tag",
                 .message = "hello",
                 .time = std::chrono::system_clock::time_point(std::chrono::milliseconds(86399123)),
                 .thread = 77};
    EXPECT_EQ(FormatLogLine(line, 1234), "01-01 23:59:59.123  1234    77 I Tag: hello\n");
    line.message = "two\nlines\n\n";
    line.priority = ANDROID_LOG_ERROR;
    EXPECT_EQ(FormatLogLine(line, 1),
              "01-01 23:59:59.123     1    77 E Tag: two\n"
              "01-01 23:59:59.123     1    77 E Tag: lines\n");
    line.message.clear();
    EXPECT_EQ(FormatLogLine(line, 1), "01-01 23:59:59.123     1    77 E Tag: \n");
}

TEST(LogTap, NestsAndGivesTheLinesBack) {
    LogRecorder outer("T");
    {
        LogRecorder inner("T");
        __android_log_print(ANDROID_LOG_INFO, "T", "%s %d", "first", 1);
        EXPECT_EQ(inner.Take().at(0).thread, gettid());
    }
    __android_log_write(ANDROID_LOG_WARN, "T", "second");
    __android_log_write(ANDROID_LOG_WARN, "other", "not recorded");
    EXPECT_EQ(outer.TakeTexts(), Texts{"W: second"}) << "the first went to the inner one alone";
}

TEST(LogTap, DropsWhatASinkItselfLogs) {
    int lines = 0;
    const LogTap tap([&lines](const LogLine& line) {
        ++lines;
        __android_log_write(ANDROID_LOG_INFO, "sink", line.message.c_str());
    });
    __android_log_write(ANDROID_LOG_INFO, "T", "once");
    EXPECT_EQ(lines, 1);
}

TEST(LogTap, MayComeAndGoWhileThreadsLog) {
    std::atomic<bool> stop{false};
    LogRecorder outermost("T");
    std::thread logger([&stop] {
        while (!stop)
            __android_log_write(ANDROID_LOG_INFO, "T", "line");
    });
    EXPECT_TRUE(outermost.WaitFor("line"));
    for (int i = 0; i < 50; ++i) {
        LogRecorder log("T");
        EXPECT_TRUE(log.WaitFor("line", 2));
    }
    stop = true;
    logger.join();
}

}  // namespace
}  // namespace zarvo::host
