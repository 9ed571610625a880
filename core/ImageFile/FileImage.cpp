#include "core/ImageFile/FileImage.h"

#include "core/Base/Failure.h"

#include <algorithm>
#include <utility>

namespace {

constexpr size_t LEAST_PIECE = 1 << 11;
constexpr size_t MOST_PIECE = 1 << 18; ///< small enough for the cache

} // namespace

CFileImage::CFileImage(std::wstring strName, IFileReader& reader, uint64_t uClaimable, IProgress& progress)
    : CWireImage(reader.GetSize(), uClaimable), m_strName(std::move(strName)), m_reader(reader),
      m_progress(progress) {
    m_progress.Begin(L"ファイルを読んでいます", GetSize());
}

void CFileImage::MoveWindow(uint64_t uPos, size_t nLength) {
    const bool bGoesOn = uPos <= m_uEnd && uPos + m_vWindow.size() >= m_uEnd;
    m_nPiece = bGoesOn ? std::clamp(2 * m_nPiece, LEAST_PIECE, MOST_PIECE) : LEAST_PIECE;
    const uint64_t uPiece = std::min<uint64_t>(m_nPiece, GetSize() - uPos);
    m_vWindow.resize(std::max(nLength, static_cast<size_t>(uPiece)));
    if (!m_reader.Read(uPos, m_vWindow.data(), m_vWindow.size()))
        throw fileopen_error(m_strName, EFileFailure::DiskError);
    SetWindow(uPos, m_vWindow.data(), m_vWindow.size());
    const uint64_t uEndBefore = std::exchange(m_uEnd, uPos + m_vWindow.size());
    // A window may begin inside the one before. What is attached behind the top chunk is read first, so a
    // jump counts what it reads, not how far it goes.
    const uint64_t uNew = m_uEnd - std::min(m_uEnd, bGoesOn ? uEndBefore : uPos);
    const uint64_t uRead = std::min(m_uRead + uNew, GetSize());
    m_progress.Advance(uRead - std::exchange(m_uRead, uRead));
}

boost::shared_ptr<CCanvasBuffer> ReadCanvas(const boost::shared_ptr<CWireImage>& spImage) {
    CDeserializer file(spImage);
    CDeserializer top;
    file.ReadTop(top);
    auto spCanvas = boost::make_shared<CCanvasBuffer>();
    spCanvas->Deserialize(top, {});
    return spCanvas;
}
