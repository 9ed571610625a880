#include "ui/windows/CopyData.h"

#include "core/AppModule/ErrorBox.h"

#include <QString>

#include <cstring>
#include <string>

#include <windows.h>

namespace {

constexpr ULONG_PTR TEXT_ID = 0;

// The text before the first zero; empty unless the data is of the kind and form of a text.
QString ReadText(const COPYDATASTRUCT* pData) {
    if (!pData || pData->dwData != TEXT_ID || !pData->lpData || pData->cbData % sizeof(wchar_t) != 0)
        return {};
    // The address may be odd.
    std::wstring strText(pData->cbData / sizeof(wchar_t), L'\0');
    std::memcpy(strText.data(), pData->lpData, pData->cbData);
    return strText.ends_with(L'\0') ? QString::fromWCharArray(strText.c_str()) : QString();
}

} // namespace

bool ReceiveCopyData(const void* pMessage, qintptr& nResult,
                     const std::function<bool(const QString&)>& fnTake) {
    const MSG& msg = *static_cast<const MSG*>(pMessage);
    if (msg.message != WM_COPYDATA) return false;
    nResult = Guarded([&] {
        const QString strText = ReadText(reinterpret_cast<const COPYDATASTRUCT*>(msg.lParam));
        return !strText.isEmpty() && fnTake(strText);
    });
    return true;
}
