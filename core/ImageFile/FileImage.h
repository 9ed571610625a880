// A project file as an image for readers of chunks.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Platform/Files.h"
#include "core/Platform/Progress.h"
#include "core/Serializer/Serializer.h"

/// Reads a file in pieces, so that it is never completely in memory beside its decoded tiles: small ones
/// while the position jumps, larger ones while it goes on. A failed read raises fileopen_error with
/// `strName`. A memory mapping is not used, because truncating a mapped file ends the process.
class CFileImage : public CWireImage {
public:
    /// `reader` and `progress`, which counts the bytes, outlive the image. `uClaimable` limits the claims.
    CFileImage(std::wstring strName, IFileReader& reader, uint64_t uClaimable,
               IProgress& progress = NoProgress());

protected:
    void MoveWindow(uint64_t uPos, size_t nLength) override;

private:
    const std::wstring m_strName;
    IFileReader& m_reader;
    IProgress& m_progress;
    uint64_t m_uEnd = 0;  ///< where the window ends
    uint64_t m_uRead = 0; ///< bytes counted as read
    size_t m_nPiece = 0;
    TBytes m_vWindow;
};

/// Parses a project file's image into a document without a path. Raises deserialize_error and what the image
/// raises.
boost::shared_ptr<CCanvasBuffer> ReadCanvas(const boost::shared_ptr<CWireImage>& spImage);
