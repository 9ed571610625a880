#include "ui/QtApplication.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <cstring>

int RunHosted(int nArguments, char** ppszArguments);

int main(int nArguments, char** ppszArguments) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    if (nArguments > 1 && std::strcmp(ppszArguments[1], "--hosted") == 0)
        return RunHosted(nArguments, ppszArguments);
    testing::InitGoogleMock(&nArguments, ppszArguments);
    return EnsureApplication() ? RUN_ALL_TESTS() : 1;
}
