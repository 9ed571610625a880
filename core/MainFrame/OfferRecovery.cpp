// Recovery of documents from broken sessions at the start of the desktop program.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Failure.h"
#include "core/ImageFile/ImageFile.h"
#include "core/MainFrame/MainFrame.h"
#include "core/Platform/Dialogs.h"
#include "core/Platform/Files.h"
#include "core/Platform/Progress.h"
#include "core/Recovery/Recovery.h"

#include <algorithm>
#include <optional>

namespace {

constexpr wchar_t QUESTION[] = L"前回の作業が保存されずに終了しました。復元しますか？";
/// maximum of names listed, so that the box fits on the screen
constexpr size_t MAX_NAMED = 10;
constexpr size_t PIECE = 1 << 18; ///< bytes of a file held in memory

std::wstring DescribeLeft(const std::vector<TLeftSnapshot>& vLeft) {
    std::wstring strText = std::wstring(QUESTION) + L"\n";
    for (size_t i = 0; i < std::min(vLeft.size(), MAX_NAMED); ++i) {
        const TSnapshotNote& note = vLeft[i].note;
        strText += L"\n" + note.GetShownTitle();
        if (!note.strTime.empty()) strText += L"  (" + note.strTime + L")";
    }
    return vLeft.size() > MAX_NAMED ? strText + L"\n..." : strText;
}

// The copy of a file that was being written, which is no document to open.
bool IsUnfinishedFile(const TLeftSnapshot& left) {
    return left.bFileCopy && !IsProjectFile(left.note.strPath);
}

bool HandOn(IFileReader& reader, const TWriteBytes& fnWrite) {
    std::string strPiece;
    for (uint64_t uAt = 0; uAt < reader.GetSize(); uAt += strPiece.size()) {
        strPiece.resize(static_cast<size_t>(std::min<uint64_t>(PIECE, reader.GetSize() - uAt)));
        if (!reader.Read(uAt, reinterpret_cast<uint8_t*>(strPiece.data()), strPiece.size()) ||
            !fnWrite(strPiece))
            return false;
    }
    return true;
}

// Releases the remaining reservations, also after an exception.
struct CReservation : boost::noncopyable {
    explicit CReservation(CRecovery& r) : recovery(r) {}
    ~CReservation() { recovery.ReleaseLeft(); }
    CRecovery& recovery;
};

} // namespace

void CMainFrame::OfferRecovery() {
    CRecovery& recovery = g_AppModule.GetRecovery();
    std::vector<TLeftSnapshot> vUnfinished;
    {
        const CReservation reservation(recovery);
        const std::vector<TLeftSnapshot> vLeft = recovery.FindLeft();
        if (vLeft.empty()) return;
        const EBoxAnswer answer = g_AppModule.GetPlatform().boxes.Show(
            m_pWindow, DescribeLeft(vLeft), L"Vellumcraft", EBoxKind::YesNoCancelWarning);
        for (const TLeftSnapshot& left : vLeft) {
            if (answer == EBoxAnswer::No) recovery.Drop(left);
            if (answer != EBoxAnswer::Yes) continue;
            if (IsUnfinishedFile(left))
                vUnfinished.push_back(left);
            else
                RestoreDocument(left);
        }
    }
    // Writing a file reserves its copy itself.
    for (const TLeftSnapshot& left : vUnfinished) FinishFile(left);
}

void CMainFrame::RestoreLeft(const std::wstring& strName) {
    CRecovery& recovery = g_AppModule.GetRecovery();
    std::optional<TLeftSnapshot> unfinished;
    {
        const CReservation reservation(recovery);
        for (const TLeftSnapshot& left : recovery.FindLeft()) {
            if (left.strName != strName) continue;
            if (IsUnfinishedFile(left))
                unfinished = left;
            else
                RestoreDocument(left);
        }
    }
    if (unfinished) FinishFile(*unfinished);
}

void CMainFrame::FinishFile(const TLeftSnapshot& left) {
    CRecovery& recovery = g_AppModule.GetRecovery();
    IFileStore& files = g_AppModule.GetPlatform().files;
    const auto upCopy = recovery.Open(left);
    const auto fill = [&](const TWriteBytes& fnWrite) { return HandOn(*upCopy, fnWrite); };
    const CFileOutcome outcome =
        upCopy ? files.ReplaceBy(left.note.strPath, fill) : CFileOutcome(EFileFailure::Missing);
    if (outcome)
        recovery.Drop(left);
    else
        ReportFileFailure(g_strFileNotOpened, left.note.strPath, outcome.GetFailure());
}

void CMainFrame::RestoreDocument(const TLeftSnapshot& left) {
    CRecovery& recovery = g_AppModule.GetRecovery();
    boost::shared_ptr<CCanvasFrame> spFrame;
    try {
        const auto restore = [&] {
            // A snapshot whose restoring was cancelled is offered again at the next start.
            CLongWork work(g_AppModule.GetPlatform(), {m_pWindow, L"復元", true});
            return recovery.Restore(left, work);
        };
        spFrame = CreateCanvasFrame(restore());
        OpenFrame(spFrame);
        PostToMainFrame(WM_REFRESH_ALL);
    } catch (const deserialize_error&) {
        // Set aside, or it would be offered at every start.
        ReportFileFailure(g_strFileDamaged, recovery.SetAside(left), EFileFailure::DamagedDocument);
    } catch (const std::exception& e) {
        AbandonFrame(spFrame);
        ReportFileException(e, left.note.strPath);
    }
}
