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

void ReportFileFailure(const wchar_t* pszSentence, const std::wstring& strPath) noexcept {
    try {
        try {
            ShowErrorBox(FormatText((std::wstring(pszSentence) + L"\nFile: '%1%'").c_str(), strPath));
        } catch (const std::bad_alloc&) {
            ShowErrorBox(pszSentence);
        }
    } catch (...) {
        // As above: without memory even for the sentence, the session goes on.
    }
}
