// Documents that broken sessions left come back at the start of the desktop program.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Failure.h"
#include "core/MainFrame/MainFrame.h"
#include "core/Platform/Dialogs.h"
#include "core/Recovery/Recovery.h"

#include <algorithm>

namespace {

constexpr wchar_t QUESTION[] = L"前回の作業が保存されずに終了しました。復元しますか？";
constexpr wchar_t LOST_TITLE[] = L"名称未設定";
/// So many are named; a box must fit on the screen.
constexpr size_t MAX_NAMED = 10;

std::wstring DescribeLeft(const std::vector<TLeftSnapshot>& vLeft) {
    std::wstring strText = std::wstring(QUESTION) + L"\n";
    for (size_t i = 0; i < std::min(vLeft.size(), MAX_NAMED); ++i) {
        const TSnapshotNote& note = vLeft[i].note;
        strText += L"\n" + (note.strTitle.empty() ? LOST_TITLE : note.strTitle);
        if (!note.strTime.empty()) strText += L"  (" + note.strTime + L")";
    }
    return vLeft.size() > MAX_NAMED ? strText + L"\n..." : strText;
}

// Gives back what is still reserved, also when restoring breaks off.
struct CReservation : boost::noncopyable {
    explicit CReservation(CRecovery& r) : recovery(r) {}
    ~CReservation() { recovery.ReleaseLeft(); }
    CRecovery& recovery;
};

} // namespace

void CMainFrame::OfferRecovery() {
    CRecovery& recovery = g_AppModule.GetRecovery();
    const CReservation reservation(recovery);
    const std::vector<TLeftSnapshot> vLeft = recovery.FindLeft();
    if (vLeft.empty()) return;
    const EBoxAnswer answer = g_AppModule.GetPlatform().boxes.Show(
        m_pWindow, DescribeLeft(vLeft), L"Vellumcraft", EBoxKind::YesNoCancelWarning);
    for (const TLeftSnapshot& left : vLeft) {
        if (answer == EBoxAnswer::Yes) RestoreDocument(left);
        if (answer == EBoxAnswer::No) recovery.Drop(left);
    }
}

void CMainFrame::RestoreDocument(const TLeftSnapshot& left) {
    CRecovery& recovery = g_AppModule.GetRecovery();
    boost::shared_ptr<CCanvasFrame> spFrame;
    try {
        spFrame = CreateCanvasFrame(recovery.Restore(left));
        OpenFrame(spFrame);
        PostToMainFrame(WM_REFRESH_ALL);
    } catch (const deserialize_error&) {
        // Out of the way, or it would be offered at every start.
        ReportFileFailure(g_strFileDamaged, recovery.SetAside(left));
    } catch (const fileopen_error& e) {
        ReportFileFailure(g_strFileNotOpened, e.message);
    } catch (const std::exception& e) {
        AbandonFrame(spFrame);
        ReportException(e);
    }
}
