// The player's window on Windows: what each message does, and what its making leaves behind.
#include "platform/win32/surface.h"

#include "platform/shell_state.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace {

// What messages have changed of the state that a run begins with.
std::string changes() {
    const ShellState begin, &now = shellState();
    std::ostringstream text;
    if (now.clientWidth != begin.clientWidth) text << now.clientWidth << 'x' << now.clientHeight << ' ';
    if (now.pendingSceneStep) text << "step " << now.pendingSceneStep << ' ';
    if (now.pendingSeekSeconds != 0.0f) text << "seek " << now.pendingSeekSeconds << ' ';
    text << (now.cursorHidden ? "hidden " : "") << (now.running ? "" : "stopped ") << now.exitReason;
    return text.str();
}

// True when WM_QUIT is waiting; takes all messages away.
bool takeQuit() {
    bool quit = false;
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) quit |= message.message == WM_QUIT;
    return quit;
}

class WindowTest : public testing::Test {
protected:
    void SetUp() override {
        takeQuit();
        shellState() = ShellState();
    }
    void TearDown() override { SetUp(); }
};

TEST_F(WindowTest, EachMessageChangesWhatItMeans) {
    struct Message {
        UINT message;
        WPARAM wParam = 0;
        LPARAM lParam = 0;
    };
    const struct {
        const char* name;
        std::vector<Message> messages;
        const char* changes;
        LRESULT result = 0; // of the last one
    } cases[] = {
        {"size in all 16 bits", {{WM_SIZE, SIZE_RESTORED, MAKELPARAM(65535, 40000)}}, "65535x40000 "},
        {"minimized", {{WM_SIZE, SIZE_RESTORED, MAKELPARAM(64, 36)}, {WM_SIZE, SIZE_MINIMIZED, 0}}, "64x36 "},
        {"close", {{WM_CLOSE}}, "stopped WM_CLOSE"},
        {"cursor", {{WM_SETCURSOR}}, "hidden ", 1},
        {"cursor back when destroyed", {{WM_SETCURSOR}, {WM_SETCURSOR}, {WM_DESTROY}}, "stopped WM_DESTROY"},
        {"Escape", {{WM_KEYDOWN, 27}}, "stopped ESC"},
        {"Right", {{WM_KEYDOWN, 39}}, "step 1 "},
        {"a step replaces the one before", {{WM_KEYDOWN, 39}, {WM_KEYDOWN, 39}, {WM_KEYDOWN, 37}}, "step -1 "},
        {"seeks add up", {{WM_KEYDOWN, 38}, {WM_KEYDOWN, 38}, {WM_KEYDOWN, 40}, {WM_KEYDOWN, 38}}, "seek 20 "},
        {"other keys", {{WM_KEYDOWN, 'A'}, {WM_KEYDOWN, VK_RETURN}, {WM_KEYDOWN, VK_SPACE}}, ""},
        {"keys let go", {{WM_KEYUP, 27}, {WM_KEYUP, 39}, {WM_CHAR, 27}}, ""},
        {"left to the system", {{WM_ERASEBKGND}}, "", DefWindowProcW(nullptr, WM_ERASEBKGND, 0, 0)},
        {"the first reason wins", {{WM_CLOSE}, {WM_KEYDOWN, 27}, {WM_DESTROY}}, "stopped WM_CLOSE"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        shellState() = ShellState();
        LRESULT result = -1;
        for (const Message& m : c.messages) result = windowProc(nullptr, m.message, m.wParam, m.lParam);
        EXPECT_EQ(result, c.result);
        EXPECT_EQ(changes(), c.changes);
        EXPECT_EQ(takeQuit(), !shellState().running);
    }
}

TEST_F(WindowTest, OpensAndTakesItsMessagesThroughTheQueue) {
    const LogCapture log;
    Surface* surface = createPlayerWindow(320, 200, false);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(log.text(), "[WIN] Client size: 320x200 (requested=320x200, fullscreen=false)\n");
    EXPECT_NE(glGetString(GL_VERSION), nullptr);
    wchar_t name[64] = {};
    GetClassNameW(surface->window, name, 64);
    EXPECT_STREQ(name, L"DemoNativePlayer");
    EXPECT_EQ(GetWindowLongW(surface->window, GWL_STYLE) & ~WS_CLIPSIBLINGS,
              static_cast<LONG>(WS_OVERLAPPEDWINDOW | WS_VISIBLE));

    const EXECUTION_STATE awake = ES_CONTINUOUS | ES_DISPLAY_REQUIRED | ES_SYSTEM_REQUIRED;
    EXPECT_EQ(SetThreadExecutionState(awake), awake); // gives the one before

    // Closing only asks; the window is there until the surface is destroyed.
    for (const WPARAM key : {VK_UP, VK_LEFT, VK_UP}) PostMessageW(surface->window, WM_KEYDOWN, key, 0);
    PostMessageW(surface->window, WM_CLOSE, 0, 0);
    pumpMessages(surface);
    EXPECT_EQ(changes(), "320x200 step -1 seek 20 hidden stopped WM_CLOSE");
    const HWND window = surface->window;
    EXPECT_TRUE(IsWindow(window));
    destroySurface(surface);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(SetThreadExecutionState(ES_CONTINUOUS), static_cast<EXECUTION_STATE>(ES_CONTINUOUS));
    EXPECT_EQ(changes(), "320x200 step -1 seek 20 stopped WM_CLOSE");
}

TEST_F(WindowTest, APostedQuitStopsTheRun) {
    PostQuitMessage(3);
    pumpMessages(nullptr);
    EXPECT_EQ(changes(), "stopped WM_QUIT");
}

} // namespace
