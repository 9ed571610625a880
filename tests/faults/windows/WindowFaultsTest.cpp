#include "session/seam/SessionSnapshots.h"
#include "tests/faults/StartFaults.h"
#include "tests/ui/UiTest.h"
#include "ui/base/QtApplication.h"

namespace {

class CWindowStart : public CStart {
    void OnPlatform(const std::function<void(const TPlatform&)>& fn) override {
        CMessageQueue queue;
        QTimer timer; // deleted with the session, also with one whose loop never runs
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (QApplication::activeModalWidget()) return;
            timer.stop();
            Look();
            if (auto* pMain = Main()) QTimer::singleShot(0, pMain, [pMain] { pMain->close(); });
        });
        timer.start(1);
        const CQtPlatform qt(queue, m_files, m_places, m_places, m_codecs, m_snapshots);
        fn(qt.GetPlatform());
    }
    bool HasError() const override { return !m_closer.m_lstTexts.isEmpty(); }
    std::string Describe() const override {
        if (!Main()) return ", dead";
        return std::to_string(Main()->menuBar()->actions().size()) + " menus, " +
               std::to_string(Main()->findChildren<QDockWidget*>().size()) + " panels";
    }
    static QMainWindow* Main() { return dynamic_cast<QMainWindow*>(g_AppModule.GetMainWindow()); }

    CSessionSnapshots m_snapshots;
    CBoxCloser m_closer;
};

} // namespace

TEST(WindowFaults, ASessionThatCannotBeginLeavesRoomForTheNext) {
    ExpectStartSurvives<CWindowStart>(40, {.bOwn = true});
}

TEST(WindowFaults, ASessionWithoutMemoryForItsScopeHasNotBegun) {
    CUiSession session;
    ExpectScopeNeedsMemory(session.m_platform.GetPlatform(), {.bOwn = true});
}

int main(int nArguments, char** ppszArguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&nArguments, ppszArguments);
    return EnsureApplication() ? RUN_ALL_TESTS() : 1;
}
