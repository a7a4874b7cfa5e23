// The player's window on Windows: what each message does, and what its making leaves behind.
#include "platform/win32/surface.h"

#include "platform/shell_state.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

// Everything that messages may change, in one line.
std::string describe(const ShellState& state) {
    char text[160];
    std::snprintf(text, sizeof text, "%dx%d%s reason '%s' cursor %s step %d seek %g", state.clientWidth, state.clientHeight,
                  state.running ? " running" : " stopped", state.exitReason.c_str(), state.cursorHidden ? "hidden" : "shown",
                  state.pendingSceneStep, static_cast<double>(state.pendingSeekSeconds));
    return text;
}

// True when WM_QUIT is waiting; takes all messages away.
bool takeQuit() {
    bool quit = false;
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) quit |= message.message == WM_QUIT;
    return quit;
}

class WindowProcTest : public testing::Test {
protected:
    void SetUp() override {
        takeQuit();
        shellState() = ShellState();
    }
    void TearDown() override { SetUp(); }
};

struct Message {
    UINT message;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
};

TEST_F(WindowProcTest, EachRowOfTheTable) {
    const struct {
        const char* name;
        std::vector<Message> messages;
        LRESULT result; // of the last one
        bool quits;
        const char* state;
    } cases[] = {
        {"destroyed", {{WM_DESTROY}}, 0, true, "1280x720 stopped reason 'WM_DESTROY' cursor shown step 0 seek 0"},
        {"size", {{WM_SIZE, SIZE_RESTORED, MAKELPARAM(640, 360)}}, 0, false, "640x360 running reason '' cursor shown step 0 seek 0"},
        {"size in all 16 bits", {{WM_SIZE, 0, MAKELPARAM(65535, 40000)}}, 0, false, "65535x40000 running reason '' cursor shown step 0 seek 0"},
        {"minimized", {{WM_SIZE, SIZE_MINIMIZED, 0}}, 0, false, "0x0 running reason '' cursor shown step 0 seek 0"},
        {"close", {{WM_CLOSE}}, 0, true, "1280x720 stopped reason 'WM_CLOSE' cursor shown step 0 seek 0"},
        {"cursor", {{WM_SETCURSOR}}, 1, false, "1280x720 running reason '' cursor hidden step 0 seek 0"},
        {"cursor back when destroyed", {{WM_SETCURSOR}, {WM_SETCURSOR}, {WM_DESTROY}}, 0, true,
         "1280x720 stopped reason 'WM_DESTROY' cursor shown step 0 seek 0"},
        {"Escape", {{WM_KEYDOWN, 27}}, 0, true, "1280x720 stopped reason 'ESC' cursor shown step 0 seek 0"},
        {"Right", {{WM_KEYDOWN, 39}}, 0, false, "1280x720 running reason '' cursor shown step 1 seek 0"},
        {"Left", {{WM_KEYDOWN, 37}}, 0, false, "1280x720 running reason '' cursor shown step -1 seek 0"},
        {"Up", {{WM_KEYDOWN, 38}}, 0, false, "1280x720 running reason '' cursor shown step 0 seek 10"},
        {"Down", {{WM_KEYDOWN, 40}}, 0, false, "1280x720 running reason '' cursor shown step 0 seek -10"},
        {"another key", {{WM_KEYDOWN, 'A'}, {WM_KEYDOWN, VK_RETURN}, {WM_KEYDOWN, VK_SPACE}}, 0, false,
         "1280x720 running reason '' cursor shown step 0 seek 0"},
        {"keys let go", {{WM_KEYUP, 27}, {WM_KEYUP, 39}, {WM_CHAR, 27}}, 0, false,
         "1280x720 running reason '' cursor shown step 0 seek 0"},
        {"left to the system", {{WM_ERASEBKGND}}, DefWindowProcW(nullptr, WM_ERASEBKGND, 0, 0), false,
         "1280x720 running reason '' cursor shown step 0 seek 0"},
        {"a step replaces the one before", {{WM_KEYDOWN, 39}, {WM_KEYDOWN, 39}, {WM_KEYDOWN, 37}}, 0, false,
         "1280x720 running reason '' cursor shown step -1 seek 0"},
        {"seeks add up", {{WM_KEYDOWN, 38}, {WM_KEYDOWN, 38}, {WM_KEYDOWN, 40}, {WM_KEYDOWN, 38}}, 0, false,
         "1280x720 running reason '' cursor shown step 0 seek 20"},
        {"the first reason wins", {{WM_CLOSE}, {WM_KEYDOWN, 27}, {WM_DESTROY}}, 0, true,
         "1280x720 stopped reason 'WM_CLOSE' cursor shown step 0 seek 0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        shellState() = ShellState();
        LRESULT result = -1;
        for (const Message& m : c.messages) result = windowProc(nullptr, m.message, m.wParam, m.lParam);
        EXPECT_EQ(result, c.result);
        EXPECT_EQ(describe(shellState()), c.state);
        EXPECT_EQ(takeQuit(), c.quits);
    }
}

class PlayerWindowTest : public WindowProcTest {};

TEST_F(PlayerWindowTest, OpensAndTakesItsMessagesThroughTheQueue) {
    const LogCapture log;
    Surface* surface = createPlayerWindow(320, 200, false);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(log.text(), "[WIN] Client size: 320x200 (requested=320x200, fullscreen=false)\n");
    EXPECT_STREQ(reinterpret_cast<const char*>(glGetString(GL_VERSION)) ? "" : "no context", "");
    wchar_t name[64] = {};
    GetClassNameW(surface->window, name, 64);
    EXPECT_STREQ(name, L"DemoNativePlayer");
    GetWindowTextW(surface->window, name, 64);
    EXPECT_STREQ(name, L"Quillon DemoScene - Native Player");
    EXPECT_EQ(GetWindowLongW(surface->window, GWL_STYLE) & ~WS_CLIPSIBLINGS, static_cast<LONG>(WS_OVERLAPPEDWINDOW | WS_VISIBLE));
    EXPECT_TRUE(shellState().cursorHidden);

    for (const WPARAM key : {VK_UP, VK_LEFT, VK_UP, VK_RIGHT, VK_UP}) PostMessageW(surface->window, WM_KEYDOWN, key, 0);
    pumpMessages(surface);
    EXPECT_EQ(describe(shellState()), "320x200 running reason '' cursor hidden step 1 seek 30");
    RECT client = {};
    // A window manager that takes the window only now gives it its first size once more.
    for (int tries = 0; tries < 100 && client.right <= 400; ++tries) {
        SetWindowPos(surface->window, nullptr, 0, 0, 500, 400, SWP_NOMOVE | SWP_NOZORDER);
        Sleep(20);
        pumpMessages(surface);
        GetClientRect(surface->window, &client);
    }
    EXPECT_EQ(shellState().clientWidth, client.right);
    EXPECT_EQ(shellState().clientHeight, client.bottom);
    EXPECT_GT(client.right, 400);

    // Closing only asks; the window is there until the surface is destroyed.
    PostMessageW(surface->window, WM_CLOSE, 0, 0);
    PostMessageW(surface->window, WM_KEYDOWN, VK_ESCAPE, 0);
    pumpMessages(surface);
    EXPECT_TRUE(IsWindow(surface->window));
    EXPECT_EQ(shellState().exitReason, "WM_CLOSE");
    const HWND window = surface->window;
    destroySurface(surface);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_FALSE(shellState().cursorHidden);
    EXPECT_EQ(shellState().exitReason, "WM_CLOSE");
}

TEST_F(PlayerWindowTest, FullScreenTakesTheScreensSize) {
    const LogCapture log;
    Surface* surface = createPlayerWindow(64, 48, true);
    ASSERT_NE(surface, nullptr);
    const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    EXPECT_EQ(log.text(), "[WIN] Client size: " + size + " (requested=64x48, fullscreen=true)\n");
    EXPECT_EQ(GetWindowLongW(surface->window, GWL_STYLE) & ~WS_CLIPSIBLINGS, static_cast<LONG>(WS_POPUP | WS_VISIBLE));
    RECT place = {};
    GetWindowRect(surface->window, &place);
    EXPECT_TRUE(place.left == 0 && place.top == 0 && place.right == width && place.bottom == height);
    destroySurface(surface);
}

TEST_F(PlayerWindowTest, APostedQuitStopsTheRun) {
    Surface* surface = createHeadlessSurface(4, 4);
    ASSERT_NE(surface, nullptr);
    pumpMessages(surface);
    EXPECT_TRUE(shellState().running);
    PostQuitMessage(3);
    pumpMessages(surface);
    EXPECT_EQ(shellState().exitReason, "WM_QUIT");
    EXPECT_FALSE(shellState().running);
    destroySurface(surface);
}

} // namespace
