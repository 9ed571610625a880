#include "tests/faults/DocumentCheck.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Base/Text.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/ImageFile/ImageFile.h"
#include "tests/support/ProjectBytes.h"

namespace {

// The layers' names, and a digest of everything that a file would store of them.
std::string Describe(CCanvasBuffer& canvas) {
    std::string str = canvas.IsColor() ? "color" : "grey";
    std::string strBytes;
    for (const TLayerPtr& spLayer : canvas.GetRoot().GetChildren()) {
        const TBytes vBytes = FileOf(spLayer->Serialize());
        strBytes.append(vBytes.begin(), vBytes.end());
        str += " " + ToUtf8(spLayer->GetName()) + std::to_string(spLayer->GetOpacity());
    }
    return str + " " + std::to_string(std::hash<std::string>()(strBytes));
}

} // namespace

void CDocumentCheck::Begin() {
    const auto spFrame = g_wpActiveFrame.lock();
    if (!spFrame) return;
    m_spCanvas = spFrame->GetCanvas();
    m_strBegin = Describe(*m_spCanvas);
}

void CDocumentCheck::End(const std::vector<std::wstring>& vNames) {
    if (!m_spCanvas) return;
    CCanvasBuffer& canvas = *m_spCanvas;
    canvas.CompleteWork();
    m_played.strEnd = Describe(canvas);
    CheckFiles(canvas, vNames);
    CHistoryStream& history = canvas.GetHistory();
    const size_t nUndo = history.GetUndoList().size();
    while (history.CanUndo()) history.Undo();
    if (Describe(canvas) != m_strBegin)
        Complain("undo leads to " + Describe(canvas) + " from " + m_played.strEnd + " instead of " +
                 m_strBegin);
    while (history.GetUndoList().size() < nUndo && history.CanRedo()) history.Redo();
    if (Describe(canvas) != m_played.strEnd)
        Complain("redo leads to " + Describe(canvas) + " instead of " + m_played.strEnd);
}

void CDocumentCheck::CheckFiles(CCanvasBuffer& canvas, const std::vector<std::wstring>& vNames) {
    const std::wstring strPath = canvas.GetPath();
    if (!strPath.empty() && !canvas.GetHistory().IsModified()) {
        const auto spFile = OpenDocument(strPath, m_files, m_codecs);
        if (Describe(*spFile) != m_played.strEnd) Complain("a document that differs counts as saved");
    }
    for (const std::wstring& strName : vNames)
        if (IsProjectFile(strName)) OpenDocument(strName, m_files, m_codecs);
    SaveDocument(canvas, L"end.vlm", m_files);
    if (Describe(*OpenDocument(L"end.vlm", m_files, m_codecs)) != m_played.strEnd)
        Complain("a document changes when it is saved and opened");
}

void CDocumentCheck::CheckBoxes(const std::vector<std::wstring>& vErrors, bool bMemory) {
    for (const std::wstring& strText : vErrors) {
        const bool bNoMemory = strText == L"メモリが足りません。\nexception: bad_alloc" ||
                               strText == L"メモリが足りないため、例外処理中に例外が投げられました。";
        const bool bFile = strText.starts_with(g_strFileNotOpened + L"\nFile: '") ||
                           strText.starts_with(g_strImageNotOpened + L"\nFile: '") ||
                           strText == g_strFileNotOpened || strText == g_strImageNotOpened;
        if (bMemory ? !bNoMemory && !bFile : !bFile) Complain("box: " + ToUtf8(strText));
    }
    m_played.bTold = m_played.bTold || !vErrors.empty();
}
