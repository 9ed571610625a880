#include "ui/base/QtApplication.h"

#include <QByteArray>
#include <QCoreApplication>

int RunHosted(int nArguments, char** ppszArguments);

int main(int nArguments, char** ppszArguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (nArguments > 1 && std::string(ppszArguments[1]) == "--hosted")
        return RunHosted(nArguments, ppszArguments);
    // As Qt's X11 plug-in sets it.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents);
    testing::InitGoogleMock(&nArguments, ppszArguments);
    return EnsureApplication() ? RUN_ALL_TESTS() : 1;
}
