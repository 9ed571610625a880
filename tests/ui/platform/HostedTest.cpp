#include "tests/ui/UiTest.h"

#include "TestPaths.h"

namespace {

void RunSessionInHandler() {
    // An object that the host left to deleteLater before the call must still exist.
    const QPointer<QObject> pHostObject = new QObject;
    pHostObject->deleteLater();
    {
        CUiSession session;
        TLog vLog;
        CTestClient client("main", vLog), canvas("canvas", vLog);
        IMainWindow* pMain = session.CreateMain(client);
        const QPointer<QWidget> pMainGuard = dynamic_cast<QWidget*>(pMain);
        pMain->Show();
        session.m_windows.CreateCanvasWindow(*pMain, canvas, {})->Show();
        session.Turn();
        EXPECT_EQ(QApplication::activeModalWidget(), pMainGuard) << "the host's windows would take input";
        pMainGuard->close();
        session.Turn();
        EXPECT_EQ(vLog.back(), "main final");
        EXPECT_TRUE(pMainGuard.isNull()) << "not freed at the host's level of the loop";
        EXPECT_FALSE(pHostObject.isNull());
    }
    qApp->exit(7);
}

} // namespace

int RunHosted(int nArguments, char** ppszArguments) {
    QApplication application(nArguments, ppszArguments);
    const auto look = [&] {
        return std::tuple(application.font(), application.palette(), application.style()->name(),
                          application.styleSheet(), application.quitOnLastWindowClosed(),
                          QGuiApplication::desktopFileName());
    };
    const auto lookBefore = look();
    QTimer::singleShot(0, RunSessionInHandler);
    // The session's window is the only one and closes: the host must end by our exit, not by that.
    EXPECT_EQ(application.exec(), 7);
    EXPECT_FALSE(OwnsApplication());
    EXPECT_TRUE(look() == lookBefore);
    return testing::UnitTest::GetInstance()->Passed() ? 0 : 1;
}

TEST(Application, IsNamedAsItsDesktopEntry) {
    const QDir packaging(QStringLiteral(VELLUM_SOURCE "/packaging"));
    EXPECT_TRUE(packaging.exists(QGuiApplication::desktopFileName() + ".desktop"));
}

TEST(Hosted, LeavesTheHostsApplicationAlone) {
    EXPECT_EQ(QProcess::execute(QCoreApplication::applicationFilePath(), {"--hosted"}), 0);
}
