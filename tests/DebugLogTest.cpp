#include "support/DebugLog.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#include "tests/support/PseudoTerminal.h"
#endif

namespace {

/// Catches the standard streams, and leaves the log as it was.
class DebugLog : public testing::Test {
protected:
    DebugLog() : coutBuffer(std::cout.rdbuf(cout.rdbuf())), clogBuffer(std::clog.rdbuf(clog.rdbuf())) {}
    ~DebugLog() override {
        std::cout.rdbuf(coutBuffer);
        std::clog.rdbuf(clogBuffer);
        *DebugOutputTargetRef() = DebugToDebugger;
    }

    template <typename... Arguments>
    static void print(int target, const char* format, Arguments... arguments) {
        *DebugOutputTargetRef() = target;
        DebugPrint(format, arguments...);
    }

    std::ostringstream cout;
    std::ostringstream clog;

private:
    std::streambuf* coutBuffer;
    std::streambuf* clogBuffer;
};

class ThrowingBuffer : public std::streambuf {
protected:
    int_type overflow(int_type) override { throw std::runtime_error("full"); }
};

} // namespace

TEST_F(DebugLog, SendsAtMost255CharactersToTheSelectedTargetAlone) {
    EXPECT_EQ(*DebugOutputTargetRef(), 1);
    print(DebugToCout, "%d%s", 1, (std::string(253, 'x') + "yz" + std::string(45, 'z')).c_str());
    print(DebugToClog, "%ld|", -2L);
    for (const int target : {0, -1, 9}) print(target, "nowhere");
    EXPECT_EQ(cout.str(), "1" + std::string(253, 'x') + "y");
    EXPECT_EQ(clog.str(), "-2|");
}

TEST_F(DebugLog, DropsWhatATargetThrows) {
    ThrowingBuffer buffer;
    std::clog.rdbuf(&buffer);
    std::clog.exceptions(std::ios::badbit);
    EXPECT_NO_THROW(print(DebugToClog, "text"));
    EXPECT_TRUE(std::clog.bad());
    std::clog.exceptions(std::ios::goodbit);
    std::clog.clear();
}

TEST_F(DebugLog, WritesToTheFileStreamWhileItIsGood) {
    const char* const path = "DebugLogTest.txt";
    std::ofstream& stream = DebugFileStream();
    print(DebugToFileStream, "to a closed stream");
    EXPECT_TRUE(stream.fail());

    stream.open(path);
    stream.setstate(std::ios::failbit);
    DebugPrint("to a failed stream");
    stream.clear();
    DebugPrint("kept");
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    EXPECT_EQ(content.str(), "kept");
    stream.close();
    std::remove(path);
}

TEST(SharedSecurityAttributes, GiveEverybodyAllAccess) {
    const SECURITY_ATTRIBUTES* const attributes = SharedSecurityAttributes();
    ASSERT_NE(attributes, nullptr);
    EXPECT_EQ(attributes, SharedSecurityAttributes());
    EXPECT_EQ(attributes->nLength, sizeof *attributes);
    EXPECT_FALSE(attributes->bInheritHandle);
    const auto* const descriptor = static_cast<const SECURITY_DESCRIPTOR*>(attributes->lpSecurityDescriptor);
    EXPECT_EQ(descriptor->Revision, 1);
    EXPECT_EQ(descriptor->Control & (SE_DACL_PRESENT | SE_DACL_DEFAULTED), SE_DACL_PRESENT);
    EXPECT_EQ(descriptor->Dacl, nullptr);
}

TEST_F(DebugLog, KeepsQuietWithoutTheSerialPort) {
    SerialDebugPort port("no such port");
    for (int i = 0; i < 2; ++i) EXPECT_NO_THROW(port.write("text"));
}

#ifndef _WIN32
TEST_F(DebugLog, SendsToTheDebugger) {
    testing::internal::CaptureStderr();
    DebugPrint("%c\n", 'x');
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "x\n");
}

TEST_F(DebugLog, SendsToASerialPortOnceItIsThere) {
    const char* const names[] = {"COM1", "COM2", "COM3", "COM4"};
    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(names[i]);
        const PseudoTerminal terminal;
        standin::setSerialPortPath(names[i], "/dev/no-such-port");
        print(DebugToCom1 + i, "lost");
        standin::setSerialPortPath(names[i], terminal.path());
        DebugPrint("a\nb");
        EXPECT_EQ(terminal.receive(4), "a\r\nb");

        const termios settings = terminal.settings();
        EXPECT_EQ(cfgetospeed(&settings), B19200);
        EXPECT_EQ(settings.c_cflag & (CSIZE | PARENB | CSTOPB), static_cast<tcflag_t>(CS8));
    }
}

TEST_F(DebugLog, KeepsTheTextsOfThreadsApartOnASerialPort) {
    constexpr int texts = 100;
    const PseudoTerminal terminal;
    standin::setSerialPortPath("COM1", terminal.path());
    SerialDebugPort port("COM1");
    const auto sendMany = [&port](const char* text) {
        for (int i = 0; i < texts; ++i) port.write(text);
    };
    std::thread first(sendMany, "abcd");
    std::thread second(sendMany, "1234");
    first.join();
    second.join();
    // Whole texts, of which none is lost.
    const std::string received = terminal.receive(2 * texts * 4);
    std::map<std::string, int> counts;
    for (std::size_t i = 0; i < received.size(); i += 4) ++counts[received.substr(i, 4)];
    EXPECT_EQ(counts, (std::map<std::string, int>{{"abcd", texts}, {"1234", texts}}));
}
#endif
