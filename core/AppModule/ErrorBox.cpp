#include "core/AppModule/ErrorBox.h"

#include "core/AppModule/AppModule.h"
#include "core/Base/Failure.h"
#include "core/Platform/Dialogs.h"

#include <new>

namespace {

// Made when the module loads: there may be no memory for them later.
const std::wstring g_strTitle = L"Vellumcraft - Error";
const std::wstring g_strNoMemory = L"メモリが足りないため、例外処理中に例外が投げられました。";

} // namespace

const std::wstring g_strFileNotOpened = L"ファイルを開けませんでした。";
const std::wstring g_strImageNotOpened = L"画像ファイルを開けませんでした。";
const std::wstring g_strFileDamaged = L"データファイルが破損しています。";
const std::wstring g_strSnapshotNotWritten = L"復元用のデータを保存できませんでした。";

void ShowErrorBox(const std::wstring& strText) {
    if (!g_AppModule.HasPlatform()) return;
    g_AppModule.GetPlatform().boxes.Show(g_AppModule.GetMainWindow(), strText, g_strTitle, EBoxKind::Error);
}

void ReportException(const std::exception& e) noexcept {
    try {
        try {
            ShowErrorBox(DescribeException(e));
        } catch (const std::bad_alloc&) {
            ShowErrorBox(g_strNoMemory);
        }
    } catch (...) {
        // Not even the fixed box could be shown; the session goes on.
    }
}

void ReportFileFailure(const std::wstring& strSentence, const std::wstring& strPath) noexcept {
    try {
        try {
            ShowErrorBox(FormatText((strSentence + L"\nFile: '%1%'").c_str(), strPath));
        } catch (const std::bad_alloc&) {
            ShowErrorBox(strSentence);
        }
    } catch (...) {
        // As above: without memory even for the sentence, the session goes on.
    }
}
