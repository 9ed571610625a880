// Saving and exporting a document.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Text.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/CanvasFrame/JpegDialog.h"
#include "core/ImageFile/ImageFile.h"
#include "core/ImageFile/RecentPictures.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/Dialogs.h"
#include "core/Platform/Platform.h"
#include "core/Platform/Progress.h"

#include <exception>

namespace {

constexpr wchar_t EXPORT_SECTION[] = L"Export";
constexpr wchar_t KIND_KEY[] = L"Kind";
constexpr wchar_t QUALITY_KEY[] = L"JpegQuality";
constexpr wchar_t FIRST_KIND[] = L"png";
/// Pixels of a picture whose JPEG file can be measured while a slider is dragged.
constexpr int64_t MOST_MEASURED = 4 << 20;

bool IsJpegFile(const std::wstring& strPath) {
    const std::wstring_view strExtension = ExtensionOf(strPath);
    return EqualNoCase(strExtension, L".jpg") || EqualNoCase(strExtension, L".jpeg");
}

TPictureEncoding ReadEncoding(CIniConfig& settings) {
    return {CJpegDialog::Limit(
        settings.GetSection(EXPORT_SECTION)->GetInt(QUALITY_KEY, TPictureEncoding().nJpegQuality))};
}

// The document's own path, or its title, with the extension of a kind of picture.
std::wstring NameFor(const CCanvasBuffer& canvas, const std::wstring& strKind) {
    std::wstring strName = canvas.GetPath().empty() ? canvas.GetTitle() : canvas.GetPath();
    if (IsProjectFile(strName) || !canvas.GetPath().empty())
        strName.resize(strName.size() - ExtensionOf(strName).size());
    return strName + L'.' + strKind;
}

// False when the user cancelled.
bool AskQuality(CCanvasBuffer& canvas, const TPlatform& platform, IWindow* pOwner,
                TPictureEncoding& encoding) {
    const CSize sz = canvas.GetSize();
    CBitmapSession session;
    if (int64_t{sz.cx} * sz.cy <= MOST_MEASURED) session = MakePicture(canvas, platform.codecs);
    CJpegDialog dialog(encoding.nJpegQuality, [&](int nQuality) {
        return session.spBitmap ? platform.codecs.CountJpegBytes(*session.spBitmap, nQuality) : 0;
    });
    if (!platform.dialogs.Run(pOwner, dialog)) return false;
    encoding.nJpegQuality = dialog.GetQuality();
    return true;
}

} // namespace

void CCanvasFrame::Save(bool bAs, bool bMayCancel) {
    const TPlatform& platform = m_pOutside->platform;
    std::wstring strPath = m_spCanvas->GetPath();
    try {
        const CPreviewOut previewOut;
        m_spCanvas->CompleteWork();
        // A document that came from a picture is no project yet: saving must not put a project into the
        // picture.
        if (bAs || !IsProjectFile(strPath)) {
            TFileDialog dialog{true, strPath.empty() ? m_spCanvas->GetTitle() : strPath, L"vlm",
                               GetSaveFilters()};
            strPath = platform.fileDialogs.Ask(m_pWindow, dialog);
            if (strPath.empty()) return;
            if (!IsProjectFile(strPath)) return WritePicture(strPath, ReadEncoding(m_pOutside->settings));
        }
        CLongWork work(platform, {m_pWindow, L"保存", bMayCancel});
        const bool bSamples = m_pOutside->settings.GetSection(L"Global")->GetInt(L"SaveInkSamples", 1) != 0;
        SaveDocument(*m_spCanvas, strPath, platform.files, work,
                     bSamples ? EInkSamples::Kept : EInkSamples::LeftOut);
        for (const auto& spFrame : g_lstCanvasFrame)
            if (spFrame->m_spCanvas == m_spCanvas) spFrame->UpdateTitle();
        PostToMainFrame(WM_ADD_RECENT, 0, strPath);
        KeepPicture();
    } catch (const std::exception& e) {
        ReportFileException(e, strPath);
    }
}

void CCanvasFrame::KeepPicture() {
    if (!g_bFilterBuild) Guarded([&] { m_pOutside->pictures.Keep(*m_spCanvas); });
}

void CCanvasFrame::Export() {
    const TPlatform& platform = m_pOutside->platform;
    std::wstring strPath = m_spCanvas->GetTitle();
    try {
        const CPreviewOut previewOut;
        m_spCanvas->CompleteWork();
        const auto spSection = m_pOutside->settings.GetSection(EXPORT_SECTION);
        std::wstring strKind = spSection->GetString(KIND_KEY, FIRST_KIND);
        if (!CanExport(L"." + strKind, platform.codecs)) strKind = FIRST_KIND;
        const TFileDialog dialog{true, NameFor(*m_spCanvas, strKind), strKind, GetExportFilters(),
                                 L"書き出し"};
        const std::wstring strChosen = platform.fileDialogs.Ask(m_pWindow, dialog);
        if (strChosen.empty()) return;
        strPath = strChosen;
        TPictureEncoding encoding = ReadEncoding(m_pOutside->settings);
        if (IsJpegFile(strPath) && !AskQuality(*m_spCanvas, platform, m_pWindow, encoding)) return;
        WritePicture(strPath, encoding);
        spSection->SetString(KIND_KEY, std::wstring(ExtensionOf(strPath).substr(1)));
        spSection->SetInt(QUALITY_KEY, encoding.nJpegQuality);
    } catch (const std::exception& e) {
        ReportFileException(e, strPath);
    }
}

void CCanvasFrame::WritePicture(const std::wstring& strPath, const TPictureEncoding& encoding) {
    const TPlatform& platform = m_pOutside->platform;
    CLongWork work(platform, {m_pWindow, L"書き出し", true});
    ExportImage(*m_spCanvas, strPath, platform.files, platform.codecs, encoding, work);
}
