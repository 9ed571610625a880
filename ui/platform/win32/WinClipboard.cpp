#include "ui/platform/win32/WinClipboard.h"

#include "core/ImageFile/DibBlock.h"
#include "ui/platform/BlockPng.h"

#include <boost/make_shared.hpp>

#include <array>
#include <cstring>
#include <new>
#include <optional>
#include <stdexcept>

namespace {

constexpr wchar_t WINDOW_CLASS[] = L"VellumcraftClipboard";
constexpr ULONGLONG PATIENCE_MS = 200; ///< other programs hold the clipboard for moments
constexpr DWORD RETRY_MS = 10;

// Waits a moment, but handles what is sent meanwhile: who holds the clipboard may ask for a form of its
// content.
void WaitForOthers() {
    MSG msg;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, RETRY_MS, QS_SENDMESSAGE);
    PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

/// Opens the clipboard while it lives. Only with a window it can be written.
class COpenClipboard : boost::noncopyable {
public:
    explicit COpenClipboard(HWND hWnd) {
        const ULONGLONG uEnd = GetTickCount64() + PATIENCE_MS;
        while (!(m_bOpen = OpenClipboard(hWnd)) && GetTickCount64() < uEnd) WaitForOthers();
    }
    ~COpenClipboard() {
        if (m_bOpen) CloseClipboard();
    }
    bool IsOpen() const { return m_bOpen; }

private:
    bool m_bOpen = false;
};

/// Memory of the kind that the clipboard takes. Raises std::bad_alloc.
class CGlobalBytes : boost::noncopyable {
public:
    explicit CGlobalBytes(std::string_view strBytes)
        : m_hMemory(GlobalAlloc(GMEM_MOVEABLE, strBytes.size())) {
        void* pBytes = m_hMemory ? GlobalLock(m_hMemory) : nullptr;
        if (!pBytes) {
            GlobalFree(m_hMemory);
            throw std::bad_alloc();
        }
        std::memcpy(pBytes, strBytes.data(), strBytes.size());
        GlobalUnlock(m_hMemory);
    }
    ~CGlobalBytes() { GlobalFree(m_hMemory); }
    /// Passes the memory to the open clipboard; false when that refuses it.
    bool Give(UINT uFormat) {
        if (!SetClipboardData(uFormat, m_hMemory)) return false;
        m_hMemory = nullptr;
        return true;
    }

private:
    HGLOBAL m_hMemory;
};

// The data of a format; null when the clipboard cannot be opened or its owner does not supply the data. The
// clipboard is open during the copy only, since decoding takes time.
TDibBytes CopyData(HWND hWnd, UINT uFormat) {
    const COpenClipboard clipboard(hWnd);
    const HGLOBAL hMemory = clipboard.IsOpen() ? GetClipboardData(uFormat) : nullptr;
    const auto* pBytes = hMemory ? static_cast<const char*>(GlobalLock(hMemory)) : nullptr;
    if (!pBytes) return nullptr;
    const struct CUnlock {
        ~CUnlock() { GlobalUnlock(hMemory); }
        const HGLOBAL hMemory;
    } unlock{hMemory};
    return boost::make_shared<std::string>(pBytes, GlobalSize(hMemory));
}

HINSTANCE FindOwnModule() {
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&FindOwnModule), &hModule);
    return hModule;
}

} // namespace

std::unique_ptr<IClipboard> MakeClipboard(IImageCodecs& codecs) {
    return std::make_unique<CWinClipboard>(codecs);
}

CWinClipboard::CWinClipboard(IImageCodecs& codecs)
    : m_codecs(codecs), m_uPng(RegisterClipboardFormatW(L"PNG")),
      m_uStrokes(RegisterClipboardFormatW(L"Vellumcraft strokes")),
      m_uSvg(RegisterClipboardFormatW(L"image/svg+xml")) {}

CWinClipboard::~CWinClipboard() {
    if (!m_hWnd) return;
    DestroyWindow(m_hWnd); // asks for the PNG if no program has
    // The module may be unloaded, and its window procedure with it.
    UnregisterClassW(WINDOW_CLASS, FindOwnModule());
}

void CWinClipboard::SetText(const std::wstring& strText) {
    // With the final zero.
    Replace(CF_UNICODETEXT,
            {reinterpret_cast<const char*>(strText.c_str()), (strText.size() + 1) * sizeof(wchar_t)},
            nullptr);
}

void CWinClipboard::SetBlock(const TDibBytes& spBlock) {
    if (!Replace(CF_DIBV5, *spBlock, spBlock)) throw std::runtime_error("クリップボードを開けませんでした。");
}

bool CWinClipboard::SetPicture(IBitmap& bitmap) try {
    const TDibBytes spBlock = MakeDibBlock(bitmap);
    return spBlock && Replace(CF_DIBV5, *spBlock, nullptr);
} catch (const std::bad_alloc&) {
    return false;
}

bool CWinClipboard::HasPicture() {
    // Windows makes a CF_DIB of any other bitmap.
    return IsClipboardFormatAvailable(m_uPng) || IsClipboardFormatAvailable(CF_DIB);
}

TLoadedPicture CWinClipboard::GetPicture() try {
    if (m_spBlock && IsOwner()) return ReadDibBlock(m_spBlock);
    std::optional<EFileFailure> failure;
    for (const UINT uFormat : std::array<UINT, 3>{m_uPng, CF_DIBV5, CF_DIB}) {
        if (!IsClipboardFormatAvailable(uFormat)) continue;
        const TDibBytes spBytes = CopyData(m_hWnd, uFormat);
        const TLoadedPicture picture = !spBytes            ? TLoadedPicture(EFileFailure::Unknown)
                                       : uFormat == m_uPng ? m_codecs.LoadResource(*spBytes)
                                                           : ReadDibBlock(spBytes);
        if (picture) return picture;
        if (!failure) failure = picture.failure;
    }
    return failure.value_or(EFileFailure::Missing);
} catch (const std::bad_alloc&) {
    return EFileFailure::NoMemory;
}

TDibBytes CWinClipboard::GetBlock() {
    if (m_spBlock && IsOwner()) return m_spBlock;
    const TLoadedPicture picture = GetPicture();
    return picture ? MakeDibBlock(*picture) : nullptr;
}

void CWinClipboard::SetStrokes(const TStrokeForms& forms) {
    std::vector<TFormat> vFormats{{m_uStrokes, *forms.spStrokes}, {m_uSvg, forms.strSvg}};
    if (forms.spPicture) vFormats.emplace_back(CF_DIBV5, *forms.spPicture);
    if (!Replace(vFormats, forms.spPicture)) throw std::runtime_error("クリップボードを開けませんでした。");
}

bool CWinClipboard::HasStrokes() { return IsClipboardFormatAvailable(m_uStrokes); }

// The system may have rounded the length up, which a reader of chunks does not notice.
TStrokeBytes CWinClipboard::GetStrokes() { return HasStrokes() ? CopyData(m_hWnd, m_uStrokes) : nullptr; }

uint32_t CWinClipboard::GetChangeCount() {
    // The system also counts a form that is made later, though the content is the same.
    return m_spBlock && IsOwner() ? m_uCopied : GetClipboardSequenceNumber();
}

HWND CWinClipboard::EnsureWindow() {
    if (m_hWnd) return m_hWnd;
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = OnMessage;
    windowClass.hInstance = FindOwnModule();
    windowClass.lpszClassName = WINDOW_CLASS;
    RegisterClassW(&windowClass); // fails while another session's is registered
    m_hWnd = CreateWindowExW(0, WINDOW_CLASS, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                             windowClass.hInstance, nullptr);
    if (m_hWnd) SetWindowLongPtrW(m_hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    return m_hWnd;
}

bool CWinClipboard::Replace(const std::vector<TFormat>& vFormats, const TDibBytes& spBlock) {
    const HWND hWnd = EnsureWindow();
    // In memory before the former content is given up.
    std::vector<std::unique_ptr<CGlobalBytes>> vBytes;
    for (const auto& [uFormat, strBytes] : vFormats)
        vBytes.push_back(std::make_unique<CGlobalBytes>(strBytes));
    if (!hWnd) return false;
    {
        const COpenClipboard clipboard(hWnd);
        if (!clipboard.IsOpen() || !EmptyClipboard()) return false;
        for (size_t n = 0; n < vFormats.size(); ++n)
            if (!vBytes[n]->Give(vFormats[n].first)) return false;
        if (spBlock) SetClipboardData(m_uPng, nullptr); // will be asked for
    }
    m_spBlock = spBlock;
    m_uCopied = GetClipboardSequenceNumber();
    return true;
}

void CWinClipboard::RenderPng() noexcept try {
    const QByteArray png = m_spBlock ? MakeBlockPng(m_spBlock) : QByteArray();
    if (!png.isEmpty()) CGlobalBytes({png.constData(), static_cast<size_t>(png.size())}).Give(m_uPng);
} catch (const std::bad_alloc&) {
    // The program that asks gets nothing.
}

void CWinClipboard::RenderAll() {
    const COpenClipboard clipboard(m_hWnd);
    if (clipboard.IsOpen() && IsOwner()) RenderPng();
}

LRESULT CALLBACK CWinClipboard::OnMessage(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam) {
    auto* pThis = reinterpret_cast<CWinClipboard*>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
    if (!pThis) return DefWindowProcW(hWnd, uMessage, wParam, lParam);
    switch (uMessage) {
    case WM_RENDERFORMAT:
        if (wParam == pThis->m_uPng) pThis->RenderPng();
        return 0;
    case WM_RENDERALLFORMATS:
        pThis->RenderAll();
        return 0;
    case WM_DESTROYCLIPBOARD:
        pThis->m_spBlock.reset();
        return 0;
    default:
        return DefWindowProcW(hWnd, uMessage, wParam, lParam);
    }
}
