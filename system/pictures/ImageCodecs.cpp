#include "system/pictures/ImageCodecs.h"

#include "core/Base/Text.h"
#include "core/Platform/Files.h"
#include "system/pictures/CodePage932.h"
#include "system/pictures/ColorQuantizer.h"
#include "system/pictures/GifWriter.h"
#include "system/pictures/PictureCheck.h"
#include "system/pictures/QtBitmap.h"
#include "system/pictures/WatchedBuffer.h"

#include <QImageReader>
#include <QImageWriter>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <new>

namespace {

constexpr int64_t MAX_DECODED_BYTES = int64_t{2} << 30;
constexpr int TIFF_LZW = 1;
/// The beginnings of files that other code writes and nothing reads: PSD and SVG.
constexpr std::string_view WRITE_ONLY[] = {"8BPS", "<?xml", "<svg"};

const char* FormatOf(EPictureKind kind) {
    switch (kind) {
    case EPictureKind::Png:
        return "png";
    case EPictureKind::Jpeg:
        return "jpeg";
    case EPictureKind::Bmp:
        return "bmp";
    case EPictureKind::Gif:
        return "gif";
    case EPictureKind::Tiff:
        return "tiff";
    case EPictureKind::Unknown:
        break;
    }
    return "";
}

EPictureKind KindOfName(const std::wstring& strPath) {
    constexpr std::pair<const wchar_t*, EPictureKind> ENDINGS[] = {
        {L".png", EPictureKind::Png}, {L".jpg", EPictureKind::Jpeg}, {L".jpeg", EPictureKind::Jpeg},
        {L".bmp", EPictureKind::Bmp}, {L".tif", EPictureKind::Tiff}, {L".tiff", EPictureKind::Tiff},
        {L".gif", EPictureKind::Gif},
    };
    for (const auto& [pszEnding, kind] : ENDINGS)
        if (EqualNoCase(ExtensionOf(strPath), std::wstring_view(pszEnding))) return kind;
    return EPictureKind::Unknown;
}

// Raises Qt's allocation limit so that the largest picture fits while it has 16 bits a channel. The limit
// is global to the process, so it is restored.
class CAllocationLimit {
public:
    CAllocationLimit() : m_nOld(QImageReader::allocationLimit()) {
        QImageReader::setAllocationLimit(static_cast<int>(MAX_DECODED_BYTES * 2 >> 20));
    }
    ~CAllocationLimit() { QImageReader::setAllocationLimit(m_nOld); }

private:
    const int m_nOld;
};

bool IsSizeAllowed(const QSize& size) {
    return size.width() <= MAX_IMAGE_SIDE && size.height() <= MAX_IMAGE_SIDE &&
           int64_t{4} * size.width() * size.height() <= MAX_DECODED_BYTES;
}

bool CanRead(EPictureKind kind) { return QImageReader::supportedImageFormats().contains(FormatOf(kind)); }

bool CanWrite(EPictureKind kind) {
    return kind == EPictureKind::Gif || QImageWriter::supportedImageFormats().contains(FormatOf(kind));
}

bool IsWriteOnly(const std::string& strFile) {
    return std::ranges::any_of(WRITE_ONLY, [&](std::string_view str) { return strFile.starts_with(str); });
}

struct TDecoded {
    QImage image;         ///< null when it could not be decoded
    EFileFailure failure; ///< undefined when there is a picture
};

TDecoded Decode(const std::string& strFile, IProgress& progress) {
    const EPictureKind kind = KindOfPicture(strFile);
    if (kind == EPictureKind::Unknown)
        return {{}, IsWriteOnly(strFile) ? EFileFailure::WriteOnlyPicture : EFileFailure::UnknownPicture};
    if (!CanRead(kind)) return {{}, EFileFailure::NoCodec};
    if (!IsWholePicture(strFile, kind)) return {{}, EFileFailure::DamagedPicture};
    QByteArray bytes = QByteArray::fromRawData(strFile.data(), static_cast<qsizetype>(strFile.size()));
    progress.Begin(L"画像を読んでいます", strFile.size());
    CWatchedBuffer buffer(bytes, progress);
    QImageReader reader(&buffer, FormatOf(kind));
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    buffer.RaiseCancel();
    if (size.isEmpty()) return {{}, EFileFailure::DamagedPicture};
    if (!IsSizeAllowed(size)) return {{}, EFileFailure::PictureTooLarge};
    const CAllocationLimit limit;
    QImage image;
    const bool bRead = reader.read(&image);
    buffer.RaiseCancel();
    return {bRead ? image : QImage(), EFileFailure::DamagedPicture};
}

// Draws an opaque picture on white; null when there is no memory.
QImage Flatten(const QImage& image) {
    QImage imageFlat(image.size(), QImage::Format_RGB32);
    if (imageFlat.isNull()) return {};
    imageFlat.setDotsPerMeterX(DOTS_PER_METRE);
    imageFlat.setDotsPerMeterY(DOTS_PER_METRE);
    for (int y = 0; y < image.height(); ++y) {
        const auto* pRow = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        auto* pOut = reinterpret_cast<QRgb*>(imageFlat.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int k = qAlpha(pRow[x]) * 1024 / 255;
            const auto onWhite = [k](int c) { return 255 - (((255 - c) * k) >> 10); };
            pOut[x] = qRgb(onWhite(qRed(pRow[x])), onWhite(qGreen(pRow[x])), onWhite(qBlue(pRow[x])));
        }
    }
    return imageFlat;
}

// Drops an alpha channel that is opaque everywhere, so that it is not saved. Shares the pixels.
QImage WithoutIdleAlpha(const QImage& image) {
    const auto isOpaque = [](QRgb pixel) { return qAlpha(pixel) == 255; };
    for (int y = 0; y < image.height(); ++y) {
        const auto* pRow = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (!std::all_of(pRow, pRow + image.width(), isOpaque)) return image;
    }
    QImage imageOpaque(image.constBits(), image.width(), image.height(), image.bytesPerLine(),
                       QImage::Format_RGB32);
    imageOpaque.setDotsPerMeterX(DOTS_PER_METRE);
    imageOpaque.setDotsPerMeterY(DOTS_PER_METRE);
    return imageOpaque;
}

std::optional<std::string> Encode(const QImage& image, EPictureKind kind, const TPictureEncoding& encoding,
                                  IProgress& progress) {
    if (image.isNull()) return std::nullopt;
    if (kind == EPictureKind::Gif) return EncodeGif(QuantizeColors(image, progress));
    progress.Begin(L"画像を圧縮しています", 0); // how many bytes it will take is unknown
    QByteArray bytes;
    CWatchedBuffer buffer(bytes, progress);
    QImageWriter writer(&buffer, FormatOf(kind));
    if (kind == EPictureKind::Jpeg) writer.setQuality(encoding.nJpegQuality);
    if (kind == EPictureKind::Tiff) writer.setCompression(TIFF_LZW);
    const bool bWritten = writer.write(image);
    buffer.RaiseCancel();
    if (!bWritten) return std::nullopt;
    return bytes.toStdString();
}

// The picture as its format has it: with its alpha or on white.
TEncodedPicture EncodeBitmap(IBitmap& bitmap, EPictureKind kind, const TPictureEncoding& encoding,
                             IProgress& progress) {
    if (!CanWrite(kind)) return EFileFailure::NoCodec;
    const CLockedImage locked(bitmap);
    auto bytes =
        Encode(kind == EPictureKind::Png ? WithoutIdleAlpha(locked.GetImage()) : Flatten(locked.GetImage()),
               kind, encoding, progress);
    if (!bytes) return EFileFailure::NoMemory;
    return bytes;
}

TLoadedPicture MakeBitmap(TDecoded decoded) {
    if (decoded.image.isNull()) return decoded.failure;
    auto spBitmap = boost::make_shared<CQtBitmap>(std::move(decoded.image));
    // The bitmap has converted the picture to its own format, if there was memory for that.
    if (spBitmap->GetImage().isNull()) return EFileFailure::NoMemory;
    return boost::shared_ptr<IBitmap>(spBitmap);
}

} // namespace

uintptr_t CImageCodecs::Startup() {
    for (const EPictureKind kind :
         {EPictureKind::Png, EPictureKind::Jpeg, EPictureKind::Bmp, EPictureKind::Gif, EPictureKind::Tiff})
        if (!CanRead(kind) || !CanWrite(kind)) return 0;
    return 1;
}

boost::shared_ptr<IBitmap> CImageCodecs::CreateBitmap(CSize sz) {
    QImage image = MakeTransparentImage(sz);
    if (image.isNull()) return {};
    return boost::make_shared<CQtBitmap>(std::move(image));
}

TLoadedPicture CImageCodecs::Load(const std::wstring& strPath, IProgress& progress) try {
    auto strFile = m_files.Read(strPath);
    if (!strFile) return strFile.failure;
    TDecoded decoded = Decode(*strFile, progress);
    strFile.reset();
    return MakeBitmap(std::move(decoded));
} catch (const std::bad_alloc&) {
    return EFileFailure::NoMemory;
}

TLoadedPicture CImageCodecs::LoadResource(std::string_view strBytes) try {
    return MakeBitmap(Decode(std::string(strBytes), NoProgress()));
} catch (const std::bad_alloc&) {
    return EFileFailure::NoMemory;
}

CFileOutcome CImageCodecs::Save(const std::wstring& strPath, IBitmap& bitmap,
                                const TPictureEncoding& encoding, IProgress& progress) try {
    const EPictureKind kind = KindOfName(strPath);
    if (kind == EPictureKind::Unknown) return EFileFailure::UnknownEnding;
    const TEncodedPicture bytes = EncodeBitmap(bitmap, kind, encoding, progress);
    return bytes ? m_files.Replace(strPath, *bytes) : CFileOutcome(bytes.failure);
} catch (const std::bad_alloc&) {
    return EFileFailure::NoMemory;
}

TEncodedPicture CImageCodecs::EncodePng(IBitmap& bitmap, IProgress& progress) try {
    return EncodeBitmap(bitmap, EPictureKind::Png, {}, progress);
} catch (const std::bad_alloc&) {
    return EFileFailure::NoMemory;
}

uint64_t CImageCodecs::CountJpegBytes(IBitmap& bitmap, int nQuality) try {
    const CLockedImage locked(bitmap);
    return Encode(Flatten(locked.GetImage()), EPictureKind::Jpeg, {nQuality}, NoProgress())
        .value_or("")
        .size();
} catch (const std::bad_alloc&) {
    return 0;
}

bool CImageCodecs::CanSave(const std::wstring& strPath) {
    return KindOfName(strPath) != EPictureKind::Unknown;
}

std::string CImageCodecs::EncodeCodePage932(std::wstring_view strText, size_t nLimit) {
    return ::EncodeCodePage932(strText, nLimit);
}
