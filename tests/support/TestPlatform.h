// A platform for tests of a whole session: the played one of session/, with files in memory and user steps
// that are the test's own functions. After the last step the user closes the main frame.
#pragma once

#include "core/Platform/Window.h"
#include "session/seam/SessionWindows.h"
#include "system/pictures/ImageCodecs.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/NoPlaces.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

class CTestPlatform : IWindowFactory {
public:
    /// Plays one session of `fn` and expects that no window or message is left.
    void Run(const std::function<void(const TPlatform&)>& fn) {
        TScript script{"test", {}};
        script.vSteps.swap(m_vSteps);
        TSessionParts parts{m_files, m_places, m_places, m_codecs};
        parts.pSnapshots = m_pSnapshots;
        CSessionPlatform session(parts, script);
        const TPlatform& p = session.GetPlatform();
        IWindowFactory* const pOuter = std::exchange(m_pWindows, &p.windows);
        fn({p.queue, *this, m_pBoxes ? *m_pBoxes : p.boxes, p.fileDialogs, p.dialogs, p.files, p.locations,
            p.modules, p.codecs, m_pClock ? *m_pClock : p.clock, p.keys, p.clipboard, p.snapshots, p.pen,
            m_pProgress ? *m_pProgress : p.progress, m_pManual ? *m_pManual : p.manual,
            m_pRecent ? *m_pRecent : p.recent});
        m_pWindows = pOuter;
        EXPECT_FALSE(session.GetWindows().GetMain() || session.GetWindows().GetActive() || p.queue.Peek());
        for (const TShown& shown : session.GetLog().GetShown())
            if (shown.kind == TShown::EKind::Dialog || shown.strTitle == L"Vellumcraft - Error")
                m_vShown.push_back(shown.kind == TShown::EKind::Dialog ? shown.strTitle : shown.strText);
    }
    /// The same with a main frame and what `fnOpen` opens in it.
    void Play(const std::function<void()>& fnOpen) {
        Run([&](const TPlatform& platform) {
            CSessionScope scope(platform);
            CreateMainFrame();
            fnOpen();
            scope.Run();
        });
    }
    static void Open(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
        g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
    }
    /// Adds a user action to the next session, to be run when it is idle. After an error box only a step
    /// that expects is played.
    void AddStep(const TAction& fn, EStepKind kind = EStepKind::Plain) { m_vSteps.push_back({1, fn, kind}); }

    CMemoryFiles m_files;
    std::vector<std::wstring> m_vShown;     ///< names of dialogs, texts of error boxes
    IMessageBoxes* m_pBoxes = nullptr;      ///< replaces the boxes that the player answers
    ISnapshotStore* m_pSnapshots = nullptr; ///< replaces those in memory
    IClock* m_pClock = nullptr;             ///< replaces the one that only the player moves
    IProgressWindow* m_pProgress = nullptr; ///< replaces the one that shows nothing
    IManual* m_pManual = nullptr;           ///< replaces the one that shows nothing
    IRecentFiles* m_pRecent = nullptr;      ///< replaces the one that only notes
    bool m_bRefuseMain = false, m_bRefuseCanvas = false;
    int m_nCodecs = 0; ///< startups without a shutdown

private:
    struct CCountedCodecs : CImageCodecs {
        explicit CCountedCodecs(CTestPlatform& owner) : CImageCodecs(owner.m_files), m_owner(owner) {}
        uintptr_t Startup() override { return ++m_owner.m_nCodecs, CImageCodecs::Startup(); }
        void Shutdown(uintptr_t) override { --m_owner.m_nCodecs; }
        CTestPlatform& m_owner;
    };
    IMainWindow* CreateMainWindow(IWindowClient& client, const TMainWindowSetup& setup) override {
        return m_bRefuseMain ? nullptr : m_pWindows->CreateMainWindow(client, setup);
    }
    ICanvasWindow* CreateCanvasWindow(IMainWindow& parent, IWindowClient& client,
                                      const TCanvasWindowSetup& setup) override {
        return m_bRefuseCanvas ? nullptr : m_pWindows->CreateCanvasWindow(parent, client, setup);
    }
    IPanelWindow* CreatePanelWindow(IMainWindow& parent, IWindowClient& client,
                                    const TPanelSetup& setup) override {
        return m_pWindows->CreatePanelWindow(parent, client, setup);
    }

    CNoPlaces m_places;
    CCountedCodecs m_codecs{*this};
    std::vector<TStep> m_vSteps;
    IWindowFactory* m_pWindows = nullptr;
};
