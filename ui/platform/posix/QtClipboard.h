// The clipboard as Qt reaches it.
#pragma once

#include "ui/platform/Clipboard.h"

#include <boost/noncopyable.hpp>

#include <QClipboard>
#include <QObject>

#include <optional>

/// Offers a copied block to other programs as PNG, as a bitmap file with alpha, and in the forms that Qt
/// knows; strokes also as SVG and in their own form. Reads theirs in the form that keeps most: PNG, bitmap
/// file, whatever Qt decodes.
class CQtClipboard : public IClipboard, boost::noncopyable {
public:
    explicit CQtClipboard(IImageCodecs& codecs) : m_codecs(codecs) {}

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
    /// The clipboard; null where no window can be shown.
    QClipboard* Find();
    const QMimeData* FindData();
    /// Takes the data over. Raises std::runtime_error when the system refuses it.
    void SetData(std::unique_ptr<QMimeData> pData);

    IImageCodecs& m_codecs;
    std::unique_ptr<QObject> m_pWatch; ///< removes the connection
    uint32_t m_uChanges = 1;           ///< the initial content counts as a change
    std::optional<bool> m_bPicture;    ///< asking another program takes time: once for each change
    std::optional<bool> m_bStrokes;
};
