// A layer of pixels.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"
#include "core/LayerBuffer/RasterOverlay.h"
#include "core/RasterBuffer/AlphaBuffer.h"

#include <deque>

class CFloatingPixels;
class CRasterStroke;
class CStrokeOverlay;

class CRasterLayerBuffer : public CLayerBuffer {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("LAYR");

    void Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) override;
    void Create(const TCanvasPtr& spCanvas) override;
    bool PrepareOwn(CPoint pt) override;
    void RenderOwn(CRasterBlockBuffer& dest) const override;
    boost::shared_ptr<CRasterBlockBuffer> GetOwnTile(CPoint pt) const override;
    bool MayPaintAt(CPoint pt) const override;
    void GetChangeMatrix(CBoolMatrix& matrix) override;
    void FollowColorMode(IProgress& progress) override;
    void Resize(CSize sz, const TLayerChange& change, IProgress& progress) override;
    uint64_t CountResizeSteps(CSize sz) const override;
    void LoadBlock(CPoint pt, const boost::shared_ptr<CWireImage>& spImage) override;
    void DropBlock(CPoint pt) override;
    void PushBackup(TPlaneList& lstPlanes) const override;
    void SwapBackup(TPlaneList& lstPlanes, TPlaneList::iterator& itPlane) override;
    boost::shared_ptr<CRasterBlockBuffer> CreateFlatBlock() override;
    CSerializer Serialize() const override;
    boost::shared_ptr<CLayerBuffer> MergeWith(CLayerBuffer& other, IProgress& progress) override;
    bool canBeMergedWith(const CLayerBuffer& other) const override;
    bool IsRasterizable() const override { return !GetChildren().empty(); }

    /// The layer's pixels, colour or grey by the canvas's mode; opacity is always 255 here.
    const boost::shared_ptr<CRasterBuffer>& GetRaster() const { return m_pRaster; }
    /// Takes a plane of the same geometry as its pixels, converted to the canvas's mode.
    void SetRaster(const boost::shared_ptr<CRasterBuffer>& pRaster);
    /// Restricts the layer's picture where it has tiles; not stored in files.
    CAlphaBufferImpl<uint8_t>& GetMask() const { return *m_pMask; }
    /// The stroke in progress, shown over the pixels and inside the canvas's selection; null takes it away
    /// without a trace.
    void SetStroke(const boost::shared_ptr<CRasterStroke>& spStroke);
    /// The stroke in progress is complete: it is rendered to its end and merged into the pixels in its turn
    /// among the strokes of the whole canvas, inside what is selected now, one undo step. Another one can
    /// begin at once.
    void QueueStroke();
    /// Lays floating pixels over the pixels and under the strokes, null for none. Called by the canvas, which
    /// has one float at most. Never throws.
    void SetFloat(const boost::shared_ptr<CFloatingPixels>& spFloat);
    const boost::shared_ptr<CFloatingPixels>& GetFloat() const { return m_spFloat; }
    /// Lays a preview over the pixels, in the place of floating ones; null takes it away without a trace.
    void SetOverlay(const boost::shared_ptr<IRasterOverlay>& spOverlay);
    const boost::shared_ptr<IRasterOverlay>& GetOverlay() const { return m_spOverlay; }
    bool UpdateStrokes(uint64_t uNumber) override;
    uint64_t GetNextStroke() const override;
    bool IsBehind() const override;

protected:
    boost::shared_ptr<CLayerBuffer> CreateLike(const TCanvasPtr& spCanvas) const override;
    void CopyContent(const CLayerBuffer& other) override;
    size_t GetOwnBytes(const CLayerBuffer* pTwin) const override;

private:
    // Calls `fn(overlay)` for all that lies over the pixels, the lowest first.
    template <class Function>
    void ForEachOverlay(Function fn) const;
    // Flags what the overlay shows, and what it has stopped showing since the last redraw.
    void FlagOverlay(IRasterOverlay& overlay);
    void Merge(CStrokeOverlay& stroke);
    // The pixels as they are once those that float have been merged; the layer's own plane where none do.
    boost::shared_ptr<CRasterBuffer> GetSettled() const;

    boost::shared_ptr<CRasterBuffer> m_pRaster;
    boost::shared_ptr<CRasterBuffer> m_spLeft; ///< the plane as it was read when tiles were left in the image
    boost::shared_ptr<CAlphaBufferImpl<uint8_t>> m_pMask;
    std::deque<boost::shared_ptr<CStrokeOverlay>> m_deqQueue; ///< complete strokes, the oldest first
    boost::shared_ptr<CStrokeOverlay> m_spStroke;             ///< the one that is being drawn
    boost::shared_ptr<CFloatingPixels> m_spFloat;             ///< below all strokes
    boost::shared_ptr<IRasterOverlay> m_spOverlay;            ///< hides the floating pixels
    bool m_bBehind = false; ///< the stroke's last slice of time did not suffice
};

/// A new raster layer of the canvas's size, in no tree yet.
boost::shared_ptr<CRasterLayerBuffer> CreateRasterLayer(const TCanvasPtr& spCanvas);
