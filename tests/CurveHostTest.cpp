#include "curve/window/SigpipeGuard.h"
#include "tests/support/HostedEffect.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/XServer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>

#include <malloc.h>

// Calls the Linux editor as badly behaved hosts do.

namespace eq {

namespace {

std::function<void()> onAutomate;
int automations = 0;

intptr hostCallback(AEffect*, int32 opcode, int32, intptr, void*, float) {
    if (opcode == audioMasterAutomate) {
        ++automations;
        if (onAutomate) onAutomate();
    }
    return opcode == audioMasterVersion ? 2400 : 0;
}

AEffect* makeEffect() {
    static const LoadedLibrary library(EQ_LIBRARY_PATH);
    return library.find<EffectMainProc>("main")(hostCallback);
}

intptr openIn(const HostedEffect& effect, xcb_window_t window) {
    return effect.dispatch(effEditOpen, reinterpret_cast<void*>(std::uintptr_t{window}));
}

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

class CurveHost : public testing::Test {
protected:
    ~CurveHost() override { onAutomate = nullptr; }

    /// Drags the node of band 2 from 0 to +6 dB, and calls idle until the host receives the change.
    void drag(const HostedEffect& effect) {
        effect.set(6, 0.5F);
        effect.dispatch(effEditIdle);
        automations = 0;
        const xcb_window_t editor = client.children(window).at(0);
        client.point(editor, XCB_BUTTON_PRESS, 302, 214);
        client.point(editor, XCB_MOTION_NOTIFY, 302, 113);
        EXPECT_TRUE(comesTrue([&] { return effect.dispatch(effEditIdle) == 0 && automations > 0; }));
    }

    XServer server;
    const XClient client;
    const xcb_window_t window = client.makeWindow(900, 500);
};

TEST_F(CurveHost, MayCallTheEditorInAnyOrder) {
    const HostedEffect effect(makeEffect());
    for (const int32 opcode : {effEditIdle, effEditClose}) effect.dispatch(opcode);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(openIn(effect, window), 1);
    effect.dispatch(effEditIdle);
    EXPECT_EQ(client.children(window).size(), 1U);
    for (const int32 opcode : {effEditClose, effEditClose, effEditIdle}) effect.dispatch(opcode);
    EXPECT_TRUE(client.children(window).empty());
    for (const xcb_window_t none : {0U, 0x7FFFFFU}) EXPECT_EQ(openIn(effect, none), 0);
    EXPECT_EQ(openIn(effect, client.makeWindow(1, 1)), 1);
    effect.dispatch(effEditIdle);
}

TEST_F(CurveHost, SeesThePictureInTheScaleOfTheDisplay) {
    const std::string_view resources = "Xft.dpi:\t120\n"; // a scale factor of 1.25
    xcb_change_property(client.get(), XCB_PROP_MODE_REPLACE, client.root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING,
                        8, static_cast<std::uint32_t>(resources.size()), resources.data());
    const xcb_window_t large = client.makeWindow(1250, 750);
    const HostedEffect effect(makeEffect());
    EXPECT_TRUE(effect.rect()->right == 1125 && effect.rect()->bottom == 625);
    ASSERT_EQ(openIn(effect, large), 1);
    const xcb_window_t editor = client.children(large).at(0);
    EXPECT_EQ(client.size(editor), std::pair(1125, 625));
    const xcb_get_window_attributes_reply_t attributes = client.attributes(editor);
    EXPECT_EQ(attributes.visual, client.screen().root_visual);
    EXPECT_EQ(attributes.all_event_masks, 0x22806FU); // keys, buttons, the pointer, exposure, structure and focus
    EXPECT_EQ(client.property(editor, "_XEMBED_INFO"), (std::vector<std::uint32_t>{0, 1}));
    EXPECT_EQ(client.property(editor, "WM_NORMAL_HINTS"),
              (std::vector<std::uint32_t>{0x110, 0, 0, 0, 0, 600, 375, 0, 0, 0, 0, 0, 0, 0, 0, 1125, 625, 0}));
    const auto shows = [&](int x, int y, std::uint32_t colour) {
        return comesTrue([&] { return effect.dispatch(effEditIdle) == 0 && client.pixel(editor, x, y) == colour; });
    };
    constexpr std::uint32_t Window = 0x24282D, Card = 0x2D3238, Band2 = 0x62C7AE;
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(shows(0, 0, Window) && shows(1124, 624, Window) && shows(1105, 600, Card) &&
                    shows(368, 267, Band2));
        xcb_unmap_window(client.get(), editor); // the server forgets the picture
        xcb_map_window(client.get(), editor);
    }
    for (const auto& [width, height] : {std::pair(1U, 1U), {1200, 700}}) client.resize(editor, width, height);
    EXPECT_TRUE(shows(1199, 699, Window) && shows(1180, 675, Card));
    effect.set(0, 0.0F); // draws the graph, the slider of the volume, and its card
    EXPECT_TRUE(shows(1120, 38, 0xF4F6F7));
}

TEST_F(CurveHost, SendsFocusKeysAndThePointerToTheEditor) {
    const HostedEffect effect(makeEffect());
    ASSERT_EQ(openIn(effect, window), 1);
    const xcb_window_t editor = client.children(window).at(0);
    const auto picture = [&] {
        effect.dispatch(effEditIdle);
        return client.picture(editor);
    };
    const auto embed = [&](std::uint32_t number, std::uint8_t format, const char* type) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = format;
        message.type = client.atom(type);
        message.data.data32[1] = number;
        client.send(editor, message);
    };
    const auto inactive = picture();
    ASSERT_EQ(inactive.size(), 900U * 500U);
    embed(4, 16, "_XEMBED");
    embed(4, 32, "_ANOTHER");
    embed(3, 32, "_XEMBED");
    EXPECT_TRUE(picture() == inactive);
    embed(4, 32, "_XEMBED"); // the focus arrives
    const auto focused = picture();
    EXPECT_FALSE(focused == inactive);
    embed(4, 32, "_ANOTHER");
    embed(5, 32, "_XEMBED"); // the focus leaves
    EXPECT_TRUE(picture() == inactive);

    client.point(editor, XCB_MOTION_NOTIFY, 302, 214);
    EXPECT_FALSE(picture() == inactive); // the node under the pointer
    client.point(editor, XCB_LEAVE_NOTIFY, 302, 214);
    EXPECT_TRUE(picture() == inactive);

    // The host receives no copy of a key that it may have sent itself.
    const std::uint32_t keys = XCB_EVENT_MASK_KEY_PRESS;
    xcb_change_window_attributes(client.get(), window, XCB_CW_EVENT_MASK, &keys);
    client.point(editor, XCB_KEY_PRESS, 0, 0);
    EXPECT_TRUE(picture() == inactive);
    EXPECT_EQ(Reply(xcb_poll_for_event(client.get())), nullptr);
}

TEST_F(CurveHost, MayChangeTheKeyboardLayout) {
    XServer::useLayouts("us,fr");
    const HostedEffect effect(makeEffect());
    ASSERT_EQ(openIn(effect, window), 1);
    const xcb_window_t editor = client.children(window).at(0);
    client.point(editor, XCB_BUTTON_PRESS, 60, 473); // the frequency of band 1
    client.point(editor, XCB_BUTTON_RELEASE, 60, 473);
    constexpr std::uint16_t SecondLayout = 1 << 13, Shift = XCB_MOD_MASK_SHIFT;
    // The keys of the digits 1 and 2, and Return. In the French layout, the digits need Shift.
    for (const auto& [key, state] : {std::pair<std::uint8_t, std::uint16_t>{10, SecondLayout | Shift},
                                     {11, 0},
                                     {11, SecondLayout | Shift},
                                     {10, 0},
                                     {36, SecondLayout}}) {
        client.point(editor, XCB_KEY_PRESS, 0, 0, key, state);
        client.point(editor, XCB_KEY_RELEASE, 0, 0, key, state);
    }
    EXPECT_TRUE(comesTrue([&] { return effect.dispatch(effEditIdle) == 0 && effect.get(1) < 0.5F; }));
    EXPECT_NEAR(effect.get(1), std::log10(20000.0 / 1221.0) / 3.0, 1e-4);
}

TEST(CurveHostScreens, TheEditorOpensOnlyWhereTheScreenCanShowIt) {
    XServer server("-screen 0 640x480x16 -screen 1 1000x600x24");
    const HostedEffect effect(makeEffect());
    const XClient first;
    EXPECT_EQ(openIn(effect, first.makeWindow(600, 400)), 0);
    EXPECT_TRUE(effect.rect()->right == 900 && effect.rect()->bottom == 500);
    server.choose(1);
    const XClient client;
    const xcb_window_t window = client.makeWindow(900, 500);
    EXPECT_EQ(openIn(effect, window), 1);
    effect.dispatch(effEditIdle);
    EXPECT_EQ(client.pixel(client.children(window).at(0), 0, 0), 0x24282DU);
}

TEST(SigpipeGuard, RemovesASignalOnlyIfNoneWasPendingBefore) {
    const auto isIn = [](int (*read)(sigset_t*)) {
        sigset_t set;
        read(&set);
        return sigismember(&set, SIGPIPE) == 1;
    };
    const auto readBlocked = [](sigset_t* set) { return pthread_sigmask(SIG_SETMASK, nullptr, set); };
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    for (const bool isPending : {false, false, true}) {
        const bool isBlocked = isIn(readBlocked);
        if (isPending) pthread_kill(pthread_self(), SIGPIPE);
        {
            const SigpipeGuard guard;
            pthread_kill(pthread_self(), SIGPIPE);
        }
        EXPECT_EQ(isIn(sigpending), isPending);
        EXPECT_EQ(isIn(readBlocked), isBlocked);
        pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
    }
    const timespec none = {};
    EXPECT_EQ(sigtimedwait(&pipe, nullptr, &none), SIGPIPE);
    pthread_sigmask(SIG_UNBLOCK, &pipe, nullptr);
}

TEST_F(CurveHost, MayDestroyTheWindowOrTheEffectFirst) {
    const HostedEffect effect(makeEffect());
    const xcb_window_t other = client.makeWindow(900, 500);
    {
        const HostedEffect second(makeEffect());
        EXPECT_TRUE(openIn(effect, window) == 1 && openIn(second, other) == 1);
        for (int i = 0; i < 10; ++i) {
            effect.dispatch(effEditIdle);
            second.dispatch(effEditIdle);
        }
        EXPECT_EQ(client.children(other).size(), 1U);
    } // effClose, while the editor is open
    EXPECT_TRUE(client.children(other).empty());
    client.destroy(window);
    for (const int32 opcode : {effEditIdle, effEditIdle, effEditClose}) effect.dispatch(opcode);
    EXPECT_EQ(openIn(effect, other), 1);
    effect.dispatch(effEditIdle);
    client.destroy(other); // the host never closes the editor
}

TEST_F(CurveHost, MayCallTheEditorFromItsCallback) {
    const HostedEffect effect(makeEffect());
    ASSERT_EQ(openIn(effect, window), 1);
    intptr reopened = -1;
    onAutomate = [&] {
        effect.dispatch(effEditIdle);
        effect.set(3, 0.1F);
        reopened = openIn(effect, window);
        effect.dispatch(effEditClose);
    };
    drag(effect);
    EXPECT_EQ(automations, 1);
    EXPECT_EQ(reopened, 0);
    EXPECT_NEAR(effect.get(6), 0.2F, 0.001F);
    EXPECT_TRUE(client.children(window).empty()); // the editor was closed when idle ended
    onAutomate = nullptr;
    EXPECT_EQ(openIn(effect, window), 1);
}

TEST_F(CurveHost, ContinuesAfterTheLossOfTheDisplay) {
    const HostedEffect effect(makeEffect());
    const HostedEffect second(makeEffect());
    ASSERT_TRUE(openIn(effect, window) == 1 && openIn(second, window) == 1);
    server.kill();
    for (int i = 0; i < 3; ++i) {
        effect.set(5, 0.1F * static_cast<float>(i)); // so that there is something to draw
        effect.dispatch(effEditIdle);
    }
    effect.dispatch(effEditClose);
    EXPECT_EQ(openIn(effect, window), 0);
    EXPECT_TRUE(effect.rect()->right == 900 && effect.rect()->bottom == 500);
    second.dispatch(effEditClose); // without an idle call after the loss of the server
}

TEST_F(CurveHost, MayOpenTheEditorRepeatedlyWithoutALeak) {
    const HostedEffect effect(makeEffect());
    const auto cycles = [&](int count) {
        for (int i = 0; i < count; ++i) {
            ASSERT_EQ(openIn(effect, window), 1);
            drag(effect);
            effect.dispatch(effEditClose);
        }
    };
    cycles(3); // fills the caches of fonts
    const std::size_t descriptors = openDescriptors();
    [[maybe_unused]] const std::size_t memory = mallinfo2().uordblks;
    cycles(100);
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_TRUE(client.children(window).empty());
#ifndef __SANITIZE_ADDRESS__                          // AddressSanitizer finds leaks itself
    EXPECT_LT(mallinfo2().uordblks, memory + 20'000); // at most 200 bytes per cycle
#endif
}

TEST(CurveHostWithoutModule, HasNoEditor) {
    const TemporaryFolder folder;
    const std::filesystem::path source = EQ_LIBRARY_PATH;
    for (const char* const name : {"Parametric Equalizer.so", "Equalizer1033.lng"})
        std::filesystem::copy(source.parent_path() / name, folder.path());
    const auto flagsOf = [](const std::string& path) {
        const LoadedLibrary library(path);
        const HostedEffect effect(library.find<EffectMainProc>("main")(hostCallback));
        EXPECT_EQ(effect.dispatch(effEditOpen, reinterpret_cast<void*>(1)), 0);
        return effect.record->flags & effFlagsHasEditor;
    };
    EXPECT_EQ(flagsOf(folder.path("Parametric Equalizer.so")), 0);
    // The effect detects a file that is no module only when the host opens the editor.
    folder.write("Parametric Equalizer.editor", "no module");
    EXPECT_EQ(flagsOf(folder.path("Parametric Equalizer.so")), effFlagsHasEditor);
}

} // namespace

} // namespace eq
