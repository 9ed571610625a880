#include "core/Recovery/Recovery.h"

#include "core/ImageFile/ImageFile.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/Platform/System.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace {

/// Idle time required: the pen is then likely to be off the canvas.
constexpr uint32_t PAUSE_MS = 1000;
constexpr uint32_t MS_A_SECOND = 1000;

} // namespace

TFillBytes SerializeDocument(const CCanvasBuffer& canvas) {
    const auto spFile = boost::make_shared<CSerializer>();
    spFile->WriteTop(canvas.Serialize());
    return [spFile](const TWriteBytes& fnWrite) { return spFile->WriteOut(fnWrite); };
}

CRecovery::TEntry& CRecovery::FindEntry(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
    TEntry& entry = m_mapEntries[spCanvas.get()];
    // Another document may have had this address; its snapshot stays.
    if (entry.wpCanvas.lock() != spCanvas) entry = {.wpCanvas = spCanvas, .uKey = m_uNextKey++};
    return entry;
}

void CRecovery::NoteChanges(TEntry& entry, uint32_t uChanges) {
    if (entry.uChanges == uChanges) return;
    entry.uChanges = uChanges;
    entry.uLastChange = m_clock.GetTickCount();
    if (!entry.bPending) entry.uFirstChange = entry.uLastChange;
    entry.bPending = true;
}

bool CRecovery::IsDue(const TEntry& entry) const {
    if (!entry.bPending || entry.bGivenUp || m_switches.m_nAutoSave <= 0) return false;
    const uint32_t uNow = m_clock.GetTickCount();
    const uint32_t uInterval = static_cast<uint32_t>(m_switches.m_nAutoSave) * MS_A_SECOND;
    const uint32_t uWaiting = uNow - entry.uFirstChange;
    // Without a pause in the work the wait is limited.
    return uWaiting >= uInterval && (uNow - entry.uLastChange >= PAUSE_MS || uWaiting / 2 >= uInterval);
}

void CRecovery::Watch(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
    const CHistoryStream& history = spCanvas->GetHistory();
    if (!history.IsModified()) return Forget(*spCanvas);
    TEntry& entry = FindEntry(spCanvas);
    NoteChanges(entry, history.GetChangeCount());
    if (history.IsUnfinished() || !IsDue(entry) || m_store.IsBusy()) return;
    Write(entry, *spCanvas);
}

void CRecovery::Write(TEntry& entry, const CCanvasBuffer& canvas) {
    entry.bPending = false;
    entry.bGivenUp = true;
    m_store.Write(entry.uKey, SerializeDocument(canvas), {canvas.GetPath(), canvas.GetTitle(), {}});
    entry.bGivenUp = false;
}

bool CRecovery::Keep(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
    TEntry& entry = FindEntry(spCanvas);
    NoteChanges(entry, spCanvas->GetHistory().GetChangeCount());
    if (!entry.bPending && m_store.Finish(entry.uKey)) return true;
    Write(entry, *spCanvas);
    return m_store.Finish(entry.uKey);
}

void CRecovery::Forget(const CCanvasBuffer& canvas) {
    const auto it = m_mapEntries.find(&canvas);
    if (it == m_mapEntries.end()) return;
    if (it->second.wpCanvas.lock().get() == &canvas) m_store.Remove(it->second.uKey);
    m_mapEntries.erase(it);
}

boost::shared_ptr<CCanvasBuffer> CRecovery::Restore(const TLeftSnapshot& left, IProgress& progress) {
    const auto spCanvas = ReadProject(m_store.Open(left.strName), left.note.strTitle, progress);
    if (left.bHasFile) spCanvas->SetPath(left.note.strPath);
    if (!left.note.strTitle.empty()) spCanvas->SetTitle(left.note.strTitle);
    spCanvas->GetHistory().SetModified(true);
    TEntry& entry = FindEntry(spCanvas);
    entry.uChanges = spCanvas->GetHistory().GetChangeCount();
    m_store.Adopt(left.strName, entry.uKey);
    return spCanvas;
}
