#include "tests/faults/windows/WindowStart.h"

#include "core/CanvasFrame/CanvasFrame.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "session/seam/SessionSnapshots.h"
#include "tests/faults/UnfailingCodecs.h"
#include "tests/support/NoPlaces.h"
#include "tests/ui/UiTest.h"

namespace {

class CWindowStart {
public:
    // Plays one session; its description is empty when it could not start.
    TPlayed Play(uint64_t uAllocation) {
        const auto spCanvas = CreateCanvas({60, 40});
        CMessageQueue queue;
        QTimer timer; // deleted with the session, also with one whose loop never runs
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (QApplication::activeModalWidget()) return;
            timer.stop();
            Look();
        });
        timer.start(1);
        m_memory.emplace(uAllocation, TFailing{.bOwn = true});
        try {
            const CQtPlatform qt(queue, m_files, m_places, m_places, m_codecs, m_snapshots);
            CSessionScope scope(qt.GetPlatform());
            CreateMainFrame();
            g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
            scope.Run();
        } catch (const std::exception&) {
            m_played.bTold = true; // the program reports it and exits
        }
        m_memory.reset();
        m_played.bTold = m_played.bTold || !m_closer.m_lstTexts.isEmpty();
        if (g_AppModule.HasPlatform() || g_AppModule.GetMainWindow() || g_pMainFrame ||
            !g_lstCanvasFrame.empty())
            m_played.strWrong = "something of the session is left\n";
        return m_played;
    }

private:
    // The session's first step: describes the session, then the user closes it.
    void Look() {
        m_played.uCount = CFailingMemory::GetCount();
        m_memory.reset();
        auto* pMain = dynamic_cast<QMainWindow*>(g_AppModule.GetMainWindow());
        if (!pMain) return;
        const auto lstMenus = pMain->menuBar()->actions();
        m_played.strEnd = std::to_string(lstMenus.size()) + " menus, " +
                          std::to_string(g_lstCanvasFrame.size()) + " frames, " +
                          std::to_string(pMain->findChildren<QDockWidget*>().size()) + " panels";
        QTimer::singleShot(0, pMain, [pMain] { pMain->close(); });
    }

    CMemoryFiles m_files;
    CUnfailingCodecs m_codecs{m_files};
    CNoPlaces m_places;
    CSessionSnapshots m_snapshots;
    CBoxCloser m_closer;
    std::optional<CFailingMemory> m_memory;
    TPlayed m_played;
};

} // namespace

TPlayed PlayStartInWindows(uint64_t uAllocation) {
    TPlayed played = CWindowStart().Play(uAllocation);
    const TPlayed next = CWindowStart().Play(0);
    if (next.bTold || next.strEnd.find("1 frames") == std::string::npos)
        played.strWrong += "the next one: " + next.strEnd + "\n" + next.strWrong;
    return played;
}
