#include "core/ImageFile/ImageFile.h"

#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/ImageFile/FileImage.h"
#include "core/ImageFile/PsdFile.h"
#include "core/ImageFile/SvgFile.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/PathObject/InkSamples.h"
#include "core/Platform/Bitmap.h"
#include "core/Platform/Files.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <utility>

namespace {

boost::shared_ptr<CCanvasBuffer> OpenPicture(const std::wstring& strPath, IImageCodecs& codecs,
                                             IProgress& progress) {
    const TLoadedPicture picture = codecs.Load(strPath, progress);
    int32_t nWidth = 0;
    int32_t nHeight = 0;
    if (!picture || !picture->GetWidth(nWidth) || !picture->GetHeight(nHeight))
        throw loadimage_error(strPath, picture.failure);
    CBitmapSession session{picture};
    const auto spCanvas = CreateCanvas({nWidth, nHeight});
    const auto spLayer = CreateRasterLayer(spCanvas);
    spLayer->setName(L"新規ラスタレイヤー");
    progress.Begin(L"画像を取り込んでいます", spLayer->GetRaster()->GetBlockCount());
    spLayer->GetRaster()->ReadBitmap(session, progress);
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    spCanvas->GetRoot().SetActiveChild(spLayer);
    return spCanvas;
}

} // namespace

boost::shared_ptr<CCanvasBuffer> ReadProject(TOpenedFile upReader, const std::wstring& strName,
                                             IProgress& progress) {
    if (!upReader) throw fileopen_error(strName, upReader.failure);
    return ReadCanvas(
        boost::make_shared<CFileImage>(strName, *upReader, ForeignClaim(upReader->GetSize()), progress));
}

bool IsProjectFile(const std::wstring& strPath) { return EqualNoCase(ExtensionOf(strPath), L".vlm"); }

boost::shared_ptr<CCanvasBuffer> OpenDocument(const std::wstring& strPath, IFileStore& files,
                                              IImageCodecs& codecs, IProgress& progress) {
    const auto spCanvas = IsProjectFile(strPath) ? ReadProject(files.Open(strPath), strPath, progress)
                                                 : OpenPicture(strPath, codecs, progress);
    spCanvas->SetPath(strPath);
    spCanvas->SetTitle(std::wstring(FileNameOf(strPath)));
    spCanvas->GetHistory().SetModified(false); // the file holds this state
    return spCanvas;
}

void SaveDocument(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files, IProgress& progress,
                  EInkSamples samples) {
    // The file must contain the title that this save sets.
    std::wstring strOldPath = strPath;
    std::wstring strOldTitle(FileNameOf(strPath));
    canvas.SwapPathAndTitle(strOldPath, strOldTitle);
    try {
        CSerializer file;
        CSerializer document = canvas.Serialize();
        if (samples == EInkSamples::LeftOut) document.Detach(TInkSamples::CHUNK_TAG);
        file.WriteTop(std::move(document));
        const CFileOutcome outcome = files.ReplaceBy(strPath, [&](const TWriteBytes& fnWrite) {
            progress.Begin(L"ファイルに書いています", file.GetLength());
            return file.WriteOut([&](std::string_view strBytes) {
                progress.Advance(strBytes.size());
                return fnWrite(strBytes);
            });
        });
        if (!outcome) throw fileopen_error(strPath, outcome.GetFailure());
    } catch (...) {
        canvas.SwapPathAndTitle(strOldPath, strOldTitle);
        throw;
    }
    canvas.GetHistory().SetModified(false);
}

CBitmapSession MakePicture(CCanvasBuffer& canvas, IImageCodecs& codecs, IProgress& progress) {
    CBitmapSession session{codecs.CreateBitmap(canvas.GetSize())};
    if (!session.spBitmap) throw std::bad_alloc();
    const auto spPicture = canvas.Flatten(progress);
    progress.Begin(L"画像にまとめています", spPicture->GetBlockCount());
    spPicture->WriteBitmap(session, progress);
    return session;
}

bool CanExport(const std::wstring& strPath, IImageCodecs& codecs) {
    return IsPsdFile(strPath) || IsSvgFile(strPath) || codecs.CanSave(strPath);
}

void ExportImage(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files, IImageCodecs& codecs,
                 const TPictureEncoding& encoding, IProgress& progress) {
    if (IsPsdFile(strPath)) return ExportPsd(canvas, strPath, files, codecs, progress);
    if (IsSvgFile(strPath)) return ExportSvg(canvas, strPath, files, codecs, progress);
    if (!codecs.CanSave(strPath)) throw fileopen_error(strPath, EFileFailure::UnknownEnding);
    const CSize sz = canvas.GetSize();
    if (std::max(sz.cx, sz.cy) > MAX_IMAGE_SIDE) throw fileopen_error(strPath, EFileFailure::PictureTooLarge);
    const CBitmapSession session = MakePicture(canvas, codecs, progress);
    const CFileOutcome outcome = session.bOk ? codecs.Save(strPath, *session.spBitmap, encoding, progress)
                                             : CFileOutcome(EFileFailure::NoMemory);
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
        {L"PSD ファイル (*.psd)", L"*.psd"},     {L"SVG ファイル (*.svg)", L"*.svg"},
    };
}

std::vector<TFileFilter> GetExportFilters() {
    std::vector<TFileFilter> vFilters = GetSaveFilters();
    vFilters.erase(vFilters.begin());
    return vFilters;
}
