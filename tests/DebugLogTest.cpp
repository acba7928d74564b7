#include "support/DebugLog.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#include "tests/support/PseudoTerminal.h"
#include "tests/support/Threads.h"
#endif

namespace {

template <typename... Arguments>
void print(int target, const char* format, Arguments... arguments) {
    *DebugOutputTargetRef() = target;
    DebugPrint(format, arguments...);
    *DebugOutputTargetRef() = DebugToDebugger;
}

} // namespace

TEST(DebugLog, SendsAtMost255CharactersToTheSelectedTargetAlone) {
    EXPECT_EQ(*DebugOutputTargetRef(), 1);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    print(DebugToCout, "%d%s", 1, (std::string(253, 'x') + "yz").c_str());
    print(DebugToClog, "%ld|", -2L);
    for (const int target : {0, -1, 9}) print(target, "nowhere");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1" + std::string(253, 'x') + "y");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "-2|");
}

TEST(DebugLog, WritesToTheFileStreamAndDropsWhatThatThrows) {
    const TemporaryFolder folder;
    std::ofstream& stream = DebugFileStream();
    stream.exceptions(std::ios::badbit | std::ios::failbit);
    print(DebugToFileStream, "to a closed stream");
    EXPECT_TRUE(stream.fail());

    stream.clear();
    stream.open(folder.path("log"));
    print(DebugToFileStream, "kept");
    EXPECT_EQ(std::filesystem::file_size(folder.path("log")), 4U);
    stream.close();
    stream.exceptions(std::ios::goodbit);
}

TEST(SharedSecurityAttributes, GiveEverybodyAllAccess) {
    const SECURITY_ATTRIBUTES* const attributes = SharedSecurityAttributes();
    ASSERT_NE(attributes, nullptr);
    EXPECT_EQ(attributes->nLength, sizeof *attributes);
    const auto* const descriptor = static_cast<const SECURITY_DESCRIPTOR*>(attributes->lpSecurityDescriptor);
    EXPECT_EQ(descriptor->Control & (SE_DACL_PRESENT | SE_DACL_DEFAULTED), SE_DACL_PRESENT);
    EXPECT_EQ(descriptor->Dacl, nullptr);
}

#ifndef _WIN32
TEST(DebugLog, SendsToTheDebugger) {
    testing::internal::CaptureStderr();
    DebugPrint("%c\n", 'x');
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "x\n");
}

TEST(DebugLog, SendsToASerialPortOnceItIsThere) {
    const char* const names[] = {"COM1", "COM2", "COM3", "COM4"};
    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(names[i]);
        const PseudoTerminal terminal;
        standin::setSerialPortPath(names[i], "/dev/no-such-port");
        print(DebugToCom1 + i, "lost");
        standin::setSerialPortPath(names[i], terminal.path());
        print(DebugToCom1 + i, "a\nb");
        EXPECT_EQ(terminal.receive(4), "a\r\nb");

        const termios settings = terminal.settings();
        EXPECT_EQ(cfgetospeed(&settings), B19200);
        EXPECT_EQ(settings.c_cflag & (CSIZE | PARENB | CSTOPB), static_cast<tcflag_t>(CS8));
    }
}

TEST(DebugLog, KeepsTheTextsOfThreadsApartOnASerialPort) {
    const PseudoTerminal terminal;
    standin::setSerialPortPath("COM1", terminal.path());
    SerialDebugPort port("COM1");
    onThreads(2, [&port](int i) {
        for (int round = 0; round < 100; ++round) port.write(i == 0 ? "abcd" : "1234");
    });
    const std::string received = terminal.receive(800);
    EXPECT_EQ(received.size(), 800U);
    for (std::size_t i = 0; i < received.size(); i += 4)
        ASSERT_TRUE(received.substr(i, 4) == "abcd" || received.substr(i, 4) == "1234") << received;
}
#endif
