#include "tests/wayland/Compositor.h"
#include "tests/wayland/WaylandTest.h"
#include "ui/base/QtApplication.h"

#include <gmock/gmock.h>

CCompositor* g_pCompositor = nullptr;

int main(int nArguments, char** ppszArguments) {
    testing::InitGoogleMock(&nArguments, ppszArguments);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    CCompositor compositor(qEnvironmentVariableIntValue("VELLUM_SCREEN_SCALE") == 2 ? 2 : 1);
    g_pCompositor = &compositor;
    qputenv("QT_QPA_PLATFORM", "wayland");
    // No display server of the machine is meant.
    qunsetenv("DISPLAY");
    if (!EnsureApplication()) return 1;
    const int nResult = RUN_ALL_TESTS();
    EndApplication();
    return nResult;
}
