#include "core/ImageFile/ImageFile.h"

#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/ImageFile/PsdFile.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/Platform/Bitmap.h"
#include "core/Platform/Files.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <memory>
#include <new>
#include <string>

namespace {

constexpr size_t READ_PIECE = 1 << 18; ///< bytes of a file held in memory; small enough for the cache

// A file that is read in pieces, never completely in memory beside its decoded tiles. A memory mapping is
// not used, because truncating a mapped file ends the process.
class CFileImage : public CWireImage {
public:
    CFileImage(std::wstring strPath, std::unique_ptr<IFileReader> upReader)
        : CWireImage(upReader->GetSize(), ForeignClaim(upReader->GetSize())), m_strPath(std::move(strPath)),
          m_upReader(std::move(upReader)) {}

protected:
    void MoveWindow(uint64_t uPos, size_t nLength) override {
        const uint64_t uPiece = std::min<uint64_t>(READ_PIECE, GetSize() - uPos);
        m_vWindow.resize(std::max(nLength, static_cast<size_t>(uPiece)));
        if (!m_upReader->Read(uPos, m_vWindow.data(), m_vWindow.size()))
            throw fileopen_error(m_strPath, EFileFailure::DiskError);
        SetWindow(uPos, m_vWindow.data(), m_vWindow.size());
    }

private:
    const std::wstring m_strPath;
    const std::unique_ptr<IFileReader> m_upReader;
    TBytes m_vWindow;
};

boost::shared_ptr<CCanvasBuffer> OpenPicture(const std::wstring& strPath, IImageCodecs& codecs) {
    const TLoadedPicture picture = codecs.Load(strPath);
    int32_t nWidth = 0;
    int32_t nHeight = 0;
    if (!picture || !picture->GetWidth(nWidth) || !picture->GetHeight(nHeight))
        throw loadimage_error(strPath, picture.failure);
    CBitmapSession session{picture};
    const auto spCanvas = CreateCanvas({nWidth, nHeight});
    const auto spLayer = CreateRasterLayer(spCanvas);
    spLayer->setName(L"新規ラスタレイヤー");
    spLayer->GetRaster()->ReadBitmap(session);
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    spCanvas->GetRoot().SetActiveChild(spLayer);
    return spCanvas;
}

} // namespace

boost::shared_ptr<CCanvasBuffer> ReadProject(TOpenedFile upReader, const std::wstring& strName) {
    if (!upReader) throw fileopen_error(strName, upReader.failure);
    CDeserializer file(boost::shared_ptr<CWireImage>(new CFileImage(strName, std::move(upReader))));
    CDeserializer top;
    file.ReadChunk(top);
    auto spCanvas = boost::make_shared<CCanvasBuffer>();
    spCanvas->Deserialize(top, {});
    return spCanvas;
}

bool IsProjectFile(const std::wstring& strPath) { return EqualNoCase(ExtensionOf(strPath), L".vlm"); }

boost::shared_ptr<CCanvasBuffer> OpenDocument(const std::wstring& strPath, IFileStore& files,
                                              IImageCodecs& codecs) {
    const auto spCanvas =
        IsProjectFile(strPath) ? ReadProject(files.Open(strPath), strPath) : OpenPicture(strPath, codecs);
    spCanvas->SetPath(strPath);
    spCanvas->SetTitle(std::wstring(FileNameOf(strPath)));
    spCanvas->GetHistory().SetModified(false); // the file holds this state
    return spCanvas;
}

void SaveDocument(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files) {
    // The file must contain the title that this save sets.
    std::wstring strOldPath = strPath;
    std::wstring strOldTitle(FileNameOf(strPath));
    canvas.SwapPathAndTitle(strOldPath, strOldTitle);
    try {
        CSerializer file;
        file.WriteChunk(canvas.Serialize());
        const CFileOutcome outcome =
            files.ReplaceBy(strPath, [&](const TWriteBytes& fnWrite) { return file.WriteOut(fnWrite); });
        if (!outcome) throw fileopen_error(strPath, outcome.GetFailure());
    } catch (...) {
        canvas.SwapPathAndTitle(strOldPath, strOldTitle);
        throw;
    }
    canvas.GetHistory().SetModified(false);
}

void ExportImage(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files,
                 IImageCodecs& codecs) {
    if (IsPsdFile(strPath)) return ExportPsd(canvas, strPath, files, codecs);
    if (!codecs.CanSave(strPath)) throw fileopen_error(strPath, EFileFailure::UnknownEnding);
    const CSize sz = canvas.GetSize();
    if (std::max(sz.cx, sz.cy) > MAX_IMAGE_SIDE) throw fileopen_error(strPath, EFileFailure::PictureTooLarge);
    CBitmapSession session{codecs.CreateBitmap(sz)};
    if (!session.spBitmap) throw std::bad_alloc();
    canvas.Flatten()->WriteBitmap(session);
    const CFileOutcome outcome =
        session.bOk ? codecs.Save(strPath, *session.spBitmap) : CFileOutcome(EFileFailure::NoMemory);
    if (!outcome) throw fileopen_error(strPath, outcome.GetFailure());
}

std::vector<TFileFilter> GetOpenFilters() {
    return {
        {L"対応ファイル (*.vlm;*.bmp;*.png;*.jpeg;*.jpg;*.gif;*.tiff;*.tif)",
         L"*.vlm;*.bmp;*.png;*.jpeg;*.jpg;*.gif;*.tiff;*.tif"},
        {L"Vellumcraft File (*.vlm)", L"*.vlm"},
        {L"ビットマップファイル (*.bmp)", L"*.bmp"},
        {L"PNG ファイル (*.png)", L"*.png"},
        {L"JPEG ファイル (*.jpeg;*.jpg)", L"*.jpeg;*.jpg"},
        {L"GIF ファイル (*.gif)", L"*.gif"},
        {L"TIFF ファイル (*.tiff;*.tif)", L"*.tiff;*.tif"},
    };
}

std::vector<TFileFilter> GetSaveFilters() {
    return {
        {L"Vellumcraft File (*.vlm)", L"*.vlm"}, {L"ビットマップファイル (*.bmp)", L"*.bmp"},
        {L"PNG ファイル (*.png)", L"*.png"},     {L"JPEG ファイル (*.jpg;*.jpeg)", L"*.jpg;*.jpeg"},
        {L"GIF ファイル (*.gif)", L"*.gif"},     {L"TIFF ファイル (*.tiff;*.tif)", L"*.tiff;*.tif"},
        {L"PSD ファイル (*.psd)", L"*.psd"},
    };
}
