// The clipboard of Windows.
#pragma once

#include "ui/platform/Clipboard.h"

#include <boost/noncopyable.hpp>

#include <string_view>
#include <utility>
#include <vector>

#include <windows.h>

/// Offers a copied block to other programs as CF_DIBV5, and as PNG that is encoded when a program asks for it
/// or when this is destroyed; strokes also as SVG and in their own form. Reads theirs in the form that keeps
/// most: PNG, CF_DIBV5, CF_DIB.
class CWinClipboard : public IClipboard, boost::noncopyable {
public:
    explicit CWinClipboard(IImageCodecs& codecs);
    ~CWinClipboard() override;

    /// Does nothing when the clipboard cannot be opened.
    void SetText(const std::wstring& strText) override;
    void SetBlock(const TDibBytes& spBlock) override;
    bool SetPicture(IBitmap& bitmap) override;
    bool HasPicture() override;
    TLoadedPicture GetPicture() override;
    TDibBytes GetBlock() override;
    void SetStrokes(const TStrokeForms& forms) override;
    bool HasStrokes() override;
    TStrokeBytes GetStrokes() override;
    uint32_t GetChangeCount() override;

private:
    static LRESULT CALLBACK OnMessage(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam);
    /// The window that owns the content; null where no window can be made.
    HWND EnsureWindow();
    bool IsOwner() const { return m_hWnd && GetClipboardOwner() == m_hWnd; }
    /// Replaces the content by data of one format, and by the PNG of `spBlock` unless that is null. False
    /// when the clipboard cannot be opened; then its content stays. Raises std::bad_alloc.
    bool Replace(UINT uFormat, std::string_view strBytes, const TDibBytes& spBlock) {
        return Replace({{uFormat, strBytes}}, spBlock);
    }
    /// The same with data of several formats, the first of which other programs take first.
    using TFormat = std::pair<UINT, std::string_view>;
    bool Replace(const std::vector<TFormat>& vFormats, const TDibBytes& spBlock);
    /// Supplies the PNG while the clipboard is open; nothing when it cannot be encoded.
    void RenderPng() noexcept;
    void RenderAll();

    IImageCodecs& m_codecs;
    const UINT m_uPng; ///< the registered formats
    const UINT m_uStrokes;
    const UINT m_uSvg;
    HWND m_hWnd = nullptr;
    TDibBytes m_spBlock;    ///< null while the content is no block that was copied here
    uint32_t m_uCopied = 0; ///< the count of changes when the block was copied
};
