#include "ui/platform/posix/QtClipboard.h"

#include "core/ImageFile/DibBlock.h"
#include "system/pictures/QtBitmap.h"
#include "ui/base/QtApplication.h"
#include "ui/base/QtText.h"
#include "ui/platform/posix/StrokesMime.h"

#include <QGuiApplication>

#include <boost/make_shared.hpp>

#include <stdexcept>

namespace {

struct TForm {
    const char* pszMime;
    TLoadedPicture (*pfnRead)(IImageCodecs& codecs, const TDibBytes& spBytes);
};

TLoadedPicture ReadPng(IImageCodecs& codecs, const TDibBytes& spBytes) {
    return codecs.LoadResource(*spBytes);
}

TLoadedPicture ReadBmp(IImageCodecs&, const TDibBytes& spBytes) { return ReadBmpFile(spBytes); }

/// The forms that are read here, the best first.
constexpr TForm FORMS[] = {
    {"image/png", ReadPng},      {"application/x-qt-windows-mime;value=\"PNG\"", ReadPng},
    {"image/bmp", ReadBmp},      {"image/x-bmp", ReadBmp},
    {"image/x-MS-bmp", ReadBmp},
};

} // namespace

std::unique_ptr<IClipboard> MakeClipboard(IImageCodecs& codecs) {
    return std::make_unique<CQtClipboard>(codecs);
}

void CQtClipboard::SetText(const std::wstring& strText) {
    if (QClipboard* pClipboard = Find()) pClipboard->setText(ToQt(strText));
}

void CQtClipboard::SetBlock(const TDibBytes& spBlock) { SetData(std::make_unique<CBlockMime>(spBlock)); }

void CQtClipboard::SetStrokes(const TStrokeForms& forms) { SetData(std::make_unique<CStrokesMime>(forms)); }

void CQtClipboard::SetData(std::unique_ptr<QMimeData> pData) {
    QClipboard* pClipboard = Find();
    const QMimeData* pSet = pData.get();
    if (pClipboard) pClipboard->setMimeData(pData.release());
    // Qt does not report that the system refused.
    if (!pClipboard || pClipboard->mimeData() != pSet)
        throw std::runtime_error("クリップボードを開けませんでした。");
}

bool CQtClipboard::SetPicture(IBitmap& bitmap) {
    QClipboard* pClipboard = Find();
    const QImage image = pClipboard ? CopyToImage(bitmap) : QImage();
    if (image.isNull()) return false;
    pClipboard->setImage(image);
    return true;
}

bool CQtClipboard::HasPicture() {
    if (!m_bPicture && Find()) {
        const QMimeData* pData = FindData();
        m_bPicture = pData && (pData->hasImage() || std::ranges::any_of(FORMS, [&](const TForm& form) {
                                   return pData->hasFormat(QLatin1String(form.pszMime));
                               }));
    }
    return m_bPicture.value_or(false);
}

TLoadedPicture CQtClipboard::GetPicture() {
    const QMimeData* pData = FindData();
    if (!pData) return EFileFailure::Missing;
    const auto* pOwn = dynamic_cast<const CBlockMime*>(pData);
    if (pOwn && pOwn->GetBlock()) return ReadDibBlock(pOwn->GetBlock());
    std::optional<EFileFailure> failure;
    for (const TForm& form : FORMS) {
        if (!pData->hasFormat(QLatin1String(form.pszMime))) continue;
        const QByteArray bytes = pData->data(QLatin1String(form.pszMime));
        const TLoadedPicture picture =
            form.pfnRead(m_codecs, boost::make_shared<std::string>(bytes.toStdString()));
        if (picture) return picture;
        if (!failure) failure = picture.failure;
    }
    if (const auto spPicture = MakeBitmap(qvariant_cast<QImage>(pData->imageData()))) return spPicture;
    return failure.value_or(pData->hasImage() ? EFileFailure::UnknownPicture : EFileFailure::Missing);
}

TDibBytes CQtClipboard::GetBlock() {
    if (const auto* pOwn = dynamic_cast<const CBlockMime*>(FindData())) return pOwn->GetBlock();
    const TLoadedPicture picture = GetPicture();
    return picture ? MakeDibBlock(*picture) : nullptr;
}

bool CQtClipboard::HasStrokes() {
    if (!m_bStrokes && Find()) {
        const QMimeData* pData = FindData();
        m_bStrokes = pData && pData->hasFormat(STROKES_MIME);
    }
    return m_bStrokes.value_or(false);
}

TStrokeBytes CQtClipboard::GetStrokes() {
    const QMimeData* pData = FindData();
    if (const auto* pOwn = dynamic_cast<const CStrokesMime*>(pData)) return pOwn->GetStrokes();
    if (!pData || !pData->hasFormat(STROKES_MIME)) return {};
    return boost::make_shared<std::string>(pData->data(STROKES_MIME).toStdString());
}

uint32_t CQtClipboard::GetChangeCount() {
    Find();
    return m_uChanges;
}

QClipboard* CQtClipboard::Find() {
    if (!EnsureApplication()) return nullptr;
    QClipboard* pClipboard = QGuiApplication::clipboard();
    if (!m_pWatch) {
        m_pWatch = std::make_unique<QObject>();
        QObject::connect(pClipboard, &QClipboard::dataChanged, m_pWatch.get(), [this] {
            ++m_uChanges;
            m_bPicture.reset();
            m_bStrokes.reset();
        });
    }
    return pClipboard;
}

const QMimeData* CQtClipboard::FindData() {
    const QClipboard* pClipboard = Find();
    return pClipboard ? pClipboard->mimeData() : nullptr;
}
