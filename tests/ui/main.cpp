#include "ui/base/QtApplication.h"

#include <gmock/gmock.h>

#include <QByteArray>

int RunHosted(int nArguments, char** ppszArguments);

int main(int nArguments, char** ppszArguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (nArguments > 1 && std::string(ppszArguments[1]) == "--hosted")
        return RunHosted(nArguments, ppszArguments);
    testing::InitGoogleMock(&nArguments, ppszArguments);
    return EnsureApplication() ? RUN_ALL_TESTS() : 1;
}
