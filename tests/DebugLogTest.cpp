#include "support/DebugLog.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#ifndef _WIN32
#include "platform/desktop/TestHooks.h"
#include "tests/support/Threads.h"

#include <dlfcn.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

static termios requestedSettings = {};
static bool portHasParity = false;

// A pseudo-terminal always has eight bits and no parity, so these functions replace those of the system.
extern "C" int tcgetattr(int port, termios* settings) noexcept {
    const int result = reinterpret_cast<decltype(&tcgetattr)>(dlsym(RTLD_NEXT, "tcgetattr"))(port, settings);
    if (portHasParity) settings->c_cflag = (settings->c_cflag & ~tcflag_t{CSIZE}) | CS7 | PARENB | CSTOPB;
    return result;
}

extern "C" int tcsetattr(int port, int when, const termios* settings) noexcept {
    requestedSettings = *settings;
    return reinterpret_cast<decltype(&tcsetattr)>(dlsym(RTLD_NEXT, "tcsetattr"))(port, when, settings);
}
#endif

namespace eq {

namespace {

template <typename... Arguments>
void print(int target, const char* format, Arguments... arguments) {
    *DebugOutputTargetRef() = target;
    DebugPrint(format, arguments...);
    *DebugOutputTargetRef() = DebugToDebugger;
}

} // namespace

TEST(DebugLog, SendsAtMost255CharactersToTheSelectedTargetOnly) {
    EXPECT_EQ(*DebugOutputTargetRef(), 1);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    print(DebugToCout, "%d%s", 1, (std::string(253, 'x') + "yz").c_str());
    print(DebugToClog, "%ld|", -2L);
    for (const int target : {0, -1, 9}) print(target, "nowhere");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1" + std::string(253, 'x') + "y");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "-2|");
}

TEST(DebugLog, WritesToTheFileStreamAndDropsItsExceptions) {
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

TEST(SharedSecurityAttributes, AllowAllAccessToAllUsers) {
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

TEST(DebugLog, SendsToASerialPortWhenItExistsAndDoesNotMixTheTextsOfThreads) {
    for (const int number : {1, 2, 3, 4}) {
        SCOPED_TRACE(number);
        // A pseudo-terminal acts as the port.
        int receiver = -1, sender = -1;
        ASSERT_EQ(openpty(&receiver, &sender, nullptr, nullptr, nullptr), 0);
        const std::string name = "COM" + std::to_string(number);
        standin::setSerialPortPath(name, "/dev/no-such-port");
        *DebugOutputTargetRef() = DebugToCom1 + number - 1;
        DebugPrint("lost");
        standin::setSerialPortPath(name, ttyname(sender));
        portHasParity = true;
        onThreads(2, [](int) {
            for (int round = 0; round < 100; ++round) DebugPrint("a\n");
        });
        portHasParity = false;
        *DebugOutputTargetRef() = DebugToDebugger;
        EXPECT_EQ(write(sender, "!", 1), 1);

        std::string received, expected;
        for (char byte = 0; byte != '!' && read(receiver, &byte, 1) == 1;) received += byte;
        for (int text = 0; text < 200; ++text) expected += "a\r\n";
        EXPECT_EQ(received, expected + "!");

        EXPECT_EQ(cfgetospeed(&requestedSettings), B19200);
        EXPECT_EQ(requestedSettings.c_cflag & (CSIZE | PARENB | CSTOPB), tcflag_t{CS8});
        close(sender);
        close(receiver);
    }
}
#endif

} // namespace eq
