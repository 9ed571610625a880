#include "core/AppModule/ErrorBox.h"

#include "core/AppModule/AppModule.h"
#include "core/Base/Failure.h"
#include "core/Platform/Dialogs.h"

#include <new>

namespace {

// Built when the module loads, because memory may be short later.
const std::wstring g_strTitle = L"Vellumcraft - Error";
const std::wstring g_strNoMemory = L"メモリが足りないため、例外処理中に例外が投げられました。";

} // namespace

const std::wstring g_strFileNotOpened = L"ファイルを開けませんでした。";
const std::wstring g_strImageNotOpened = L"画像ファイルを開けませんでした。";
const std::wstring g_strFileDamaged = L"データファイルが破損しています。";
const std::wstring g_strSnapshotNotWritten =
    L"復元用のデータを保存できませんでした。\n\nディスクの空きを確かめ、書類を保存してください。";

void ShowErrorBox(const std::wstring& strText) {
    if (!g_AppModule.HasPlatform()) return;
    g_AppModule.GetPlatform().boxes.Show(g_AppModule.GetMainWindow(), strText, g_strTitle, EBoxKind::Error);
}

void ReportException(const std::exception& e) noexcept {
    if (dynamic_cast<const cancelled_error*>(&e)) return;
    try {
        try {
            ShowErrorBox(DescribeException(e));
        } catch (const std::bad_alloc&) {
            ShowErrorBox(g_strNoMemory);
        }
    } catch (...) {
        // Not even the fixed box could be shown; the session continues.
    }
}

std::wstring DescribeFileFailure(const std::wstring& strSentence, const std::wstring& strPath,
                                 EFileFailure failure) {
    const std::wstring strFormat = strSentence + (strPath.empty() ? L"%1%" : L"\nFile: '%1%'") + L"\n\n%2%";
    return FormatText(strFormat.c_str(), {strPath, AdviceFor(failure)});
}

void ReportFileFailure(const std::wstring& strSentence, const std::wstring& strPath,
                       EFileFailure failure) noexcept {
    try {
        try {
            ShowErrorBox(DescribeFileFailure(strSentence, strPath, failure));
        } catch (const std::bad_alloc&) {
            ShowErrorBox(strSentence);
        }
    } catch (...) {
        // As above: without memory for the sentence, the session continues.
    }
}

namespace {

void ReportRefusal(const std::wstring& strText, const std::wstring& strPath) {
    try {
        ShowErrorBox(FormatText(L"%1%\n\nFile: '%2%'", {strText, strPath}));
    } catch (const std::bad_alloc&) {
        ShowErrorBox(strText);
    }
}

} // namespace

void ReportFileException(const std::exception& e, const std::wstring& strPath) noexcept {
    if (const auto* pImage = dynamic_cast<const loadimage_error*>(&e))
        return ReportFileFailure(g_strImageNotOpened, pImage->message, pImage->failure);
    if (const auto* pFile = dynamic_cast<const fileopen_error*>(&e))
        return ReportFileFailure(g_strFileNotOpened, pFile->message, pFile->failure);
    if (dynamic_cast<const deserialize_error*>(&e))
        return ReportFileFailure(g_strFileDamaged, strPath, EFileFailure::DamagedDocument);
    const auto* pRefused = dynamic_cast<const refused_error*>(&e);
    if (!pRefused) return ReportException(e);
    try {
        ReportRefusal(pRefused->message, strPath);
    } catch (...) {
        // As above: without memory for any text, the session continues.
    }
}
