// A session inside a host that is a Qt program itself: run in a process of its own, started by the test
// below.
#include "UiTest.h"

#include <QPointer>
#include <QProcess>
#include <QStyle>
#include <QTimer>

#include <cstdio>

namespace {

int g_nFailures = 0;

void Check(bool bCondition, const char* pszWhat) {
    if (bCondition) return;
    ++g_nFailures;
    std::fprintf(stderr, "failed: %s\n", pszWhat);
}

void RunSessionInHandler() {
    // What the host left for later before it called us is still in its hands.
    auto* pHostObject = new QObject;
    const QPointer<QObject> pHostGuard = pHostObject;
    pHostObject->deleteLater();
    QPointer<QWidget> pMainGuard;
    {
        CUiSession session;
        std::vector<std::string> vLog;
        CTestClient client("main", vLog), canvas("canvas", vLog);
        IMainWindow* pMain =
            session.m_platform.GetWindows().CreateMainWindow(client, {L"Vellumcraft", {}, {}});
        pMainGuard = dynamic_cast<QWidget*>(pMain);
        pMain->Show();
        session.m_platform.GetWindows().CreateCanvasWindow(*pMain, canvas, {L"絵", {}})->Show();
        session.Turn();
        Check(QApplication::activeModalWidget() == pMainGuard, "the host's windows take no input");
        pMainGuard->close();
        session.Turn();
        Check(!vLog.empty() && vLog.back() == "main: final", "closing goes through messages");
        Check(pMainGuard.isNull(), "the windows are freed at the host's level of the loop");
        Check(!pHostGuard.isNull(), "the host's object is left to the host");
    }
    qApp->exit(g_nFailures);
}

} // namespace

int RunHosted(int nArguments, char** ppszArguments) {
    QApplication application(nArguments, ppszArguments);
    const QFont font = application.font();
    const QPalette palette = application.palette();
    QString strStyle = application.style()->name();
    QTimer::singleShot(0, RunSessionInHandler);
    // The session's window is the only one and closes: the host must not end by that, but by our exit.
    const int nResult = application.exec();
    Check(nResult == 0, "the host's loop ended otherwise");
    Check(!OwnsApplication(), "the application object is the host's");
    Check(application.font() == font && application.palette() == palette, "font and palette as before");
    Check(application.style()->name() == strStyle && application.styleSheet().isEmpty(), "style as before");
    Check(application.quitOnLastWindowClosed(), "quitOnLastWindowClosed as before");
    return g_nFailures;
}

TEST(Hosted, LeavesTheHostsApplicationAlone) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QCoreApplication::applicationFilePath(), {"--hosted"});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
}
