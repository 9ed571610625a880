#include "tests/faults/FaultedStart.h"

#include "core/AppModule/AppModule.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "core/Platform/Dialogs.h"
#include "session/scripts/Player.h"
#include "session/scripts/SessionPlatform.h"
#include "session/seam/SessionWindows.h"
#include "tests/faults/FailingMemory.h"
#include "tests/faults/UnfailingCodecs.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/NoPlaces.h"

#include <optional>

namespace {

// Boxes are part of the platform and need no memory of the application.
struct CCountedBoxes : IMessageBoxes {
    EBoxAnswer Show(IWindow*, const std::wstring&, const std::wstring&, EBoxKind kind) override {
        if (kind == EBoxKind::Error) ++m_nErrors;
        return kind == EBoxKind::YesNoCancelWarning ? EBoxAnswer::No : EBoxAnswer::Ok;
    }
    int m_nErrors = 0;
};

// Checks that a session has begun; idle work marks the changed document.
std::string DescribeSession() {
    const auto spFrame = g_wpActiveFrame.lock();
    if (!g_pMainFrame || !spFrame || !g_AppModule.GetMessageLoop()) return "dead";
    std::string str = std::to_string(g_lstCanvasFrame.size()) + " frame";
    for (int nId = 12800; nId < 12820; ++nId) str += g_pMainFrame->IsCommandChecked(nId) ? '1' : '0';
    if (dynamic_cast<CSessionCanvasWindow&>(*spFrame->GetWindow()).IsModified()) str += " marked";
    return str;
}

class CStart {
public:
    // Plays one session; returns its description, empty when it could not start.
    std::string Play(uint64_t uFail) {
        m_strSeen.clear();
        TScript script{"start", {{1, [this](CPlayer&) {
                                      m_uCount = CFailingMemory::GetCount();
                                      m_fault.reset();
                                      m_strSeen = DescribeSession();
                                  }}}};
        CSessionPlatform session({m_files, m_places, m_places, m_codecs}, script);
        const TPlatform& p = session.GetPlatform();
        const auto spCanvas = CreateCanvas({60, 40});
        spCanvas->GetHistory().SetModified(true);
        const TPlatform platform{p.queue, p.windows,   m_boxes,     p.fileDialogs, p.dialogs,
                                 p.files, p.locations, p.modules,   p.codecs,      p.clock,
                                 p.keys,  p.clipboard, p.snapshots, p.pen};
        m_fault.emplace(uFail);
        try {
            CSessionScope scope(platform);
            CreateMainFrame();
            g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
            scope.Run();
        } catch (const std::exception&) {
            m_bBrokenOff = true; // the program reports it and exits
        }
        m_fault.reset();
        return m_strSeen;
    }
    bool IsTold() const { return m_bBrokenOff || m_boxes.m_nErrors > 0; }
    uint64_t GetCount() const { return m_uCount; }

private:
    CMemoryFiles m_files;
    CNoPlaces m_places;
    CUnfailingCodecs m_codecs{m_files};
    CCountedBoxes m_boxes;
    std::optional<CFailingMemory> m_fault;
    std::string m_strSeen;
    uint64_t m_uCount = 0;
    bool m_bBrokenOff = false;
};

} // namespace

TPlayed PlayWithFailingStart(uint64_t uFail) {
    TPlayed played;
    CStart start;
    played.strEnd = start.Play(uFail);
    played.bTold = start.IsTold();
    played.uCount = start.GetCount();
    if (g_AppModule.HasPlatform() || g_AppModule.GetMessageLoop() || g_AppModule.GetMainWindow() ||
        g_pMainFrame || !g_lstCanvasFrame.empty())
        played.strWrong = "something of the session is left\n";
    CStart next;
    const std::string strNext = next.Play(0);
    if (next.IsTold() || !strNext.starts_with("1 frame") || !strNext.ends_with(" marked"))
        played.strWrong += "the next one: " + strNext + "\n";
    return played;
}
