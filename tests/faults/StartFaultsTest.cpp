#include "tests/faults/StartFaults.h"
#include "session/seam/SessionWindows.h"

namespace {

// Boxes are part of the platform and need no memory of the application.
class CHeadlessStart : public CStart, IMessageBoxes {
public:
    CHeadlessStart() { m_bModified = true; }

private:
    EBoxAnswer Show(IWindow*, const std::wstring&, const std::wstring&, EBoxKind kind) override {
        m_bError = m_bError || kind == EBoxKind::Error;
        return kind == EBoxKind::YesNoCancelWarning ? EBoxAnswer::No : EBoxAnswer::Ok;
    }
    void OnPlatform(const std::function<void(const TPlatform&)>& fn) override {
        CSessionPlatform session({m_files, m_places, m_places, m_codecs},
                                 {"start", {{1, [this](CPlayer&) { Look(); }}}});
        const TPlatform& p = session.GetPlatform();
        fn({p.queue, p.windows, *this, p.fileDialogs, p.dialogs, p.files, p.locations, p.modules, p.codecs,
            p.clock, p.keys, p.clipboard, p.snapshots, p.pen, p.progress, p.manual, p.recent});
    }
    bool HasError() const override { return m_bError; }
    // Idle work marks the changed document.
    std::string Describe() const override {
        const auto spFrame = g_wpActiveFrame.lock();
        if (!g_pMainFrame || !spFrame) return ", dead";
        std::string str;
        for (int nId = 12800; nId < 12820; ++nId) str += g_pMainFrame->IsCommandChecked(nId) ? '1' : '0';
        return str + std::to_string(dynamic_cast<CSessionCanvasWindow&>(*spFrame->GetWindow()).IsModified());
    }
    bool m_bError = false;
};

} // namespace

TEST(Faults, ASessionThatCannotBeginLeavesRoomForTheNext) { ExpectStartSurvives<CHeadlessStart>(80); }

TEST(Faults, ASessionWithoutMemoryForItsScopeHasNotBegun) {
    CMemoryFiles files;
    CNoPlaces places;
    CUnfailingCodecs codecs(files);
    CSessionPlatform session({files, places, places, codecs}, {});
    ExpectScopeNeedsMemory(session.GetPlatform());
}
