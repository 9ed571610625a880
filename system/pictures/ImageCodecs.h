// Picture files through Qt's image plug-ins, and GIF writing.
#pragma once

#include "core/Platform/Bitmap.h"

class IFileStore;

/// Needs no QCoreApplication: the plug-ins are found where Qt was installed, or in $QT_PLUGIN_PATH. Colours
/// are not converted, on reading or on writing.
class CImageCodecs : public IImageCodecs {
public:
    /// Files are read and written through `files`, which outlives the codecs.
    explicit CImageCodecs(IFileStore& files) : m_files(files) {}

    /// Loads the plug-ins. Returns 0 when one of the five formats is missing.
    uintptr_t Startup() override;
    void Shutdown(uintptr_t) override {}
    /// Also returns null when a side is over MAX_IMAGE_SIDE.
    boost::shared_ptr<IBitmap> CreateBitmap(CSize sz) override;
    /// PNG, JPEG, BMP, GIF (its first picture) and TIFF (its first page), recognised by content. Applies
    /// the camera's orientation. Checks the size before it allocates memory.
    TLoadedPicture Load(const std::wstring& strPath, IProgress& progress = NoProgress()) override;
    TLoadedPicture LoadResource(std::string_view strBytes) override;
    /// PNG of 32 bits, of 24 when nothing is transparent; JPEG, BMP of 24 bits, TIFF with LZW,
    /// GIF of at most 256 colours. On white every channel C under alpha A becomes
    /// 255 - (((255 - C) * ((A * 1024) / 255)) >> 10).
    CFileOutcome Save(const std::wstring& strPath, IBitmap& bitmap, const TPictureEncoding& encoding = {},
                      IProgress& progress = NoProgress()) override;
    TEncodedPicture EncodePng(IBitmap& bitmap, IProgress& progress = NoProgress()) override;
    uint64_t CountJpegBytes(IBitmap& bitmap, int nQuality) override;
    bool CanSave(const std::wstring& strPath) override;
    std::string EncodeCodePage932(std::wstring_view strText, size_t nLimit) override;

private:
    IFileStore& m_files;
};
