#include "tests/support/LanguageSettings.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/XServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <tuple>

#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

// Opens the editor of the LV2 bundle in a host's window.

namespace eq {

namespace {

// Indices of the stereo plug-in's ports, which are two inputs, two outputs, the parameters and `enabled`.
constexpr std::uint32_t Frequency2 = 6;
constexpr std::uint32_t Gain2 = 10;
constexpr std::uint32_t Enabled = 17;
constexpr const char* Stereo = "urn:tavrin:parametric-equalizer#stereo";

const LV2UI_Descriptor* descriptor() {
    static const LoadedLibrary library(EQ_LV2_BUNDLE "/parametric-equalizer-editor.so");
    return library.find<const LV2UI_Descriptor* (*)(std::uint32_t)>("lv2ui_descriptor")(0);
}

class Lv2Editor : public testing::Test {
protected:
    ~Lv2Editor() override { cleanup(); }

    static void write(LV2UI_Controller controller, std::uint32_t port, std::uint32_t size, std::uint32_t format,
                      const void* buffer) {
        EXPECT_TRUE(size == sizeof(float) && format == 0);
        std::memcpy(&static_cast<Lv2Editor*>(controller)->written[port], buffer, sizeof(float));
    }
    bool open(const char* uri, bool hasParent) {
        const LV2_Feature parent = {LV2_UI__parent, reinterpret_cast<void*>(std::uintptr_t{window})};
        std::vector<const LV2_Feature*> features = moreFeatures;
        if (hasParent) features.push_back(&parent);
        features.push_back(nullptr);
        LV2UI_Widget widget = nullptr;
        editor = descriptor()->instantiate(descriptor(), uri, bundle.c_str(), write, this, &widget, features.data());
        if (!editor) return false;
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(widget), client.children(window).at(0));
        return true;
    }
    void cleanup() {
        if (editor) descriptor()->cleanup(std::exchange(editor, nullptr));
    }
    template <typename Interface>
    static const Interface& extension(const char* uri) {
        return *static_cast<const Interface*>(descriptor()->extension_data(uri));
    }
    [[nodiscard]] int idle() const { return extension<LV2UI_Idle_Interface>(LV2_UI__idleInterface).idle(editor); }
    void port(std::uint32_t index, float value) const {
        descriptor()->port_event(editor, index, sizeof value, 0, &value);
    }
    void drag(int fromX, int fromY, int toX, int toY) const {
        const xcb_window_t child = client.children(window).at(0);
        client.point(child, XCB_BUTTON_PRESS, fromX, fromY);
        client.point(child, XCB_MOTION_NOTIFY, toX, toY);
        client.point(child, XCB_BUTTON_RELEASE, toX, toY);
    }

    XServer server;
    const XClient client;
    const xcb_window_t window = client.makeWindow(900, 500);
    LV2UI_Handle editor = nullptr;
    std::string bundle = EQ_LV2_BUNDLE "/";
    std::vector<const LV2_Feature*> moreFeatures;
    std::map<std::uint32_t, float> written;
};

TEST_F(Lv2Editor, OpensOnlyForItsPlugInsAndInAHostsWindow) {
    EXPECT_FALSE(open(Stereo, false));
    EXPECT_FALSE(open("urn:another", true));
    EXPECT_EQ(descriptor()->extension_data("urn:another"), nullptr);
    for (const char* const uri : {Stereo, "urn:tavrin:parametric-equalizer#mono"}) {
        EXPECT_TRUE(open(uri, true));
        cleanup();
        EXPECT_TRUE(client.children(window).empty());
    }
}

TEST_F(Lv2Editor, WritesThePortsThatTheUserChangesAndFollowsTheHost) {
    ASSERT_TRUE(open(Stereo, true));
    port(Frequency2, 1000.0F);
    port(Gain2, -6.0F);
    for (const std::uint32_t other : {0U, 3U, 18U, 99U}) port(other, 1.0F); // these ports are no controls
    descriptor()->port_event(editor, Gain2, 2, 0, "");                      // the size is not that of a float
    descriptor()->port_event(editor, Gain2, 4, 7, "abc");                   // the protocol is unknown
    EXPECT_EQ(idle(), 0);
    EXPECT_TRUE(written.empty());
    // The node of band 2 is now at 1 kHz. 24 dB have 404 pixels, and three decades have 751 pixels.
    drag(477, 315, 477 + 250, 315 - 101);
    EXPECT_TRUE(comesTrue([&] { return idle() == 0 && written.size() == 2; }));
    EXPECT_NEAR(written[Frequency2], 1000.0 * std::pow(10.0, 250.0 * 3.0 / 751.0), 1.0);
    EXPECT_NEAR(written[Gain2], 0.0, 0.01);

    for (int i = 0; i < 2; ++i) {
        written.clear();
        drag(856, 26, 856, 26); // clicks the bypass
        EXPECT_TRUE(comesTrue([&] { return idle() == 0 && written.contains(Enabled); }));
        EXPECT_EQ(written[Enabled], 0.0F);
        port(Enabled, 1.0F);
    }
}

TEST_F(Lv2Editor, ShowsTheRateAndTheLanguage) {
    const auto picture = [&] {
        EXPECT_TRUE(open(Stereo, true));
        port(Gain2, 6.0F);
        port(Frequency2, 15000.0F);
        EXPECT_EQ(idle(), 0);
        auto pixels = client.picture(client.children(window).at(0));
        EXPECT_EQ(pixels.size(), 900U * 500U);
        cleanup();
        return pixels;
    };
    const auto common = picture();
    LV2_URID_Map map = {nullptr, [](LV2_URID_Map_Handle, const char* uri) -> LV2_URID {
                            return std::strcmp(uri, LV2_PARAMETERS__sampleRate) == 0 ? 7 : 8;
                        }};
    const LV2_Feature mapping = {LV2_URID__map, &map};
    const float other = 8000.0F;
    const std::tuple<LV2_URID, std::uint32_t, float, bool> rows[] = {{7, 4, 192000.0F, true}, {7, 4, 32000.0F, true},
                                                                     {8, 4, 96000.0F, false}, {7, 8, 96000.0F, false},
                                                                     {7, 4, 0.0F, false},     {7, 4, 1e9F, false}};
    for (const auto& [key, size, rate, isUsed] : rows) {
        LV2_Options_Option options[] = {{LV2_OPTIONS_INSTANCE, 0, 9, sizeof other, 0, &other},
                                        {LV2_OPTIONS_INSTANCE, 0, key, size, 0, &rate},
                                        {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
        const LV2_Feature feature = {LV2_OPTIONS__options, options};
        moreFeatures = {&feature, &mapping};
        EXPECT_NE(picture() == common, isUsed) << rate;
    }
    moreFeatures.clear();

    const LanguageSettings german(0, 0x0407);
    const auto translated = picture();
    EXPECT_FALSE(translated == common);
    bundle = EQ_LV2_BUNDLE;
    EXPECT_TRUE(picture() == translated);
    bundle = "/no such folder/";
    EXPECT_FALSE(picture() == translated);
}

TEST_F(Lv2Editor, UsesTheHostsFunctionsForSizeAndTouch) {
    using Calls = std::vector<std::pair<int, int>>;
    Calls calls;
    LV2UI_Resize resize = {&calls, [](LV2UI_Feature_Handle handle, int width, int height) {
                               static_cast<Calls*>(handle)->emplace_back(width, height);
                               return 0;
                           }};
    LV2UI_Touch touch = {&calls, [](LV2UI_Feature_Handle handle, std::uint32_t port, bool state) {
                             static_cast<Calls*>(handle)->emplace_back(port, state);
                         }};
    const LV2_Feature resizing = {LV2_UI__resize, &resize};
    const LV2_Feature touching = {LV2_UI__touch, &touch};
    moreFeatures = {&resizing, &touching};
    ASSERT_TRUE(open(Stereo, true));
    EXPECT_EQ(calls, (Calls{{900, 500}}));
    calls.clear();
    drag(302, 214, 302, 113);
    EXPECT_TRUE(comesTrue([&] { return idle() == 0 && calls.size() >= 4; }));
    std::ranges::sort(calls);
    EXPECT_EQ(calls, (Calls{{Frequency2, 0}, {Frequency2, 1}, {Gain2, 0}, {Gain2, 1}}));
}

TEST_F(Lv2Editor, ResizesAndEndsWithTheHostsWindow) {
    ASSERT_TRUE(open(Stereo, true));
    extension<LV2UI_Resize>(LV2_UI__resize).ui_resize(editor, 640, 400);
    EXPECT_TRUE(comesTrue([&] { return client.size(client.children(window).at(0)) == std::pair(640, 400); }));
    EXPECT_EQ(idle(), 0);
    extension<LV2UI_Resize>(LV2_UI__resize).ui_resize(editor, 0, 0);
    EXPECT_TRUE(comesTrue([&] { return client.size(client.children(window).at(0)) == std::pair(1, 1); }));
    client.destroy(window);
    EXPECT_TRUE(comesTrue([&] { return idle() != 0; }));
    server.kill();
    EXPECT_NE(idle(), 0);
}

} // namespace

} // namespace eq
