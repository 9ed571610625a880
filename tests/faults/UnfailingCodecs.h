// Codecs for sessions with failing memory: the codecs themselves never fail.
#pragma once

#include "system/pictures/ImageCodecs.h"
#include "tests/faults/FailingMemory.h"

/// Codecs are part of the platform and report failures by their results.
class CUnfailingCodecs : public IImageCodecs {
    template <class Function>
    static auto Call(Function fn) {
        const CUnfailingMemory unfailing;
        return fn();
    }

public:
    explicit CUnfailingCodecs(IFileStore& files) : m_codecs(files) {}
    uintptr_t Startup() override {
        return Call([&] { return m_codecs.Startup(); });
    }
    void Shutdown(uintptr_t uToken) override { m_codecs.Shutdown(uToken); }
    boost::shared_ptr<IBitmap> CreateBitmap(CSize sz) override {
        return Call([&] { return m_codecs.CreateBitmap(sz); });
    }
    TLoadedPicture Load(const std::wstring& strPath, IProgress& progress) override {
        return Call([&] { return m_codecs.Load(strPath, progress); });
    }
    TLoadedPicture LoadResource(std::string_view strBytes) override {
        return Call([&] { return m_codecs.LoadResource(strBytes); });
    }
    CFileOutcome Save(const std::wstring& strPath, IBitmap& bitmap, const TPictureEncoding& encoding,
                      IProgress& progress) override {
        return Call([&] { return m_codecs.Save(strPath, bitmap, encoding, progress); });
    }
    TEncodedPicture EncodePng(IBitmap& bitmap, IProgress& progress) override {
        return Call([&] { return m_codecs.EncodePng(bitmap, progress); });
    }
    uint64_t CountJpegBytes(IBitmap& bitmap, int nQuality) override {
        return Call([&] { return m_codecs.CountJpegBytes(bitmap, nQuality); });
    }
    bool CanSave(const std::wstring& strPath) override {
        return Call([&] { return m_codecs.CanSave(strPath); });
    }
    std::string EncodeCodePage932(std::wstring_view strText, size_t nLimit) override {
        return Call([&] { return m_codecs.EncodeCodePage932(strText, nLimit); });
    }

private:
    CImageCodecs m_codecs;
};
