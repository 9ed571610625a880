#include "ui/base/QtApplication.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QSysInfo>

int RunHosted(int nArguments, char** ppszArguments);

int main(int nArguments, char** ppszArguments) {
    // Qt's offscreen windows have no fonts on Windows, and the tests there have a display.
    if (QSysInfo::kernelType() == QLatin1String("linux")) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (nArguments > 1 && std::string(ppszArguments[1]) == "--hosted")
        return RunHosted(nArguments, ppszArguments);
    // As Qt's X11 plug-in sets it.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents);
    testing::InitGoogleMock(&nArguments, ppszArguments);
    return EnsureApplication() ? RUN_ALL_TESTS() : 1;
}
