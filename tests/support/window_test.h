// What tests with windows share: the one Application of the process, and a fixture that leaves nothing behind.
//
// A test folder's main.cpp is this:
//     #include "support/window_test.h"
//     int main(int argc, char** argv) { return jotlet::RunWindowTests(argc, argv); }
#pragma once

#include <gmock/gmock.h>

#include <cstdlib>

#include "platform/desktop/application.h"
#include "platform/desktop/native_window.h"

namespace jotlet {

// The Application that RunWindowTests made.
inline Application*& TheApplication()
{
    static Application* application = nullptr;
    return application;
}

inline int RunWindowTests(int argc, char** argv)
{
    // Without a display by default; QT_QPA_PLATFORM=xcb runs the same tests on one.
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    testing::InitGoogleMock(&argc, argv);
    Application application(argc, argv);
    TheApplication() = &application;
    return RUN_ALL_TESTS();
}

// Serves what waits before and after each test, so that no posted message reaches the next one.
class WindowTest : public testing::Test {
protected:
    WindowTest() { ServeEvents(); }
    ~WindowTest() override { ServeEvents(); }
};

}  // namespace jotlet
