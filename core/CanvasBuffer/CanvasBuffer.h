// One open document: its size and colour mode, its layer tree, its undo history and the file it came from.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/LayerBuffer.h"
#include "core/RasterBuffer/UpdateCounterMatrix.h"

#include <boost/enable_shared_from_this.hpp>

#include <string>

/// Largest side of a canvas that the user may ask for, in pixels.
constexpr int MAX_CANVAS_SIDE = 12000;
/// Largest side that a document file may claim.
constexpr int MAX_DOCUMENT_SIDE = 32767;

class CCanvasBuffer : public ILayerCanvas,
                      public boost::enable_shared_from_this<CCanvasBuffer>,
                      boost::noncopyable {
public:
    class InternalLayerBuffer;

    CCanvasBuffer();
    ~CCanvasBuffer() override;

    /// Reads a whole document from the top chunk's reader; raises deserialize_error, leaving the canvas to be
    /// thrown away. `strPath` becomes its file and the title's source.
    virtual void Deserialize(CDeserializer& top, const std::wstring& strPath);
    /// Makes a new empty tree with the title "名称未設定". The sides must be positive.
    virtual void Create(CSize sz);
    /// The top chunk.
    virtual CSerializer Serialize() const;

    CSize GetSize() const override { return m_size; }
    bool IsColor() const override { return m_bColor; }
    bool IsColorRaster() const override { return m_bColorRaster; }
    CHistoryStream& GetHistory() override { return *m_spHistory; }
    /// Chooses the planes' kinds; only before Create.
    void SetColorMode(bool bColor, bool bColorRaster);

    /// The hidden root of the layer tree.
    CLayerBuffer& GetRoot() const;
    /// The selected layer: the current child of the current child, from the root down. Null for none.
    TLayerPtr GetActiveLayer() const;

    /// Gathers the flags of the tree into the root's and counts them.
    void FlushCanvasUpdates();
    /// The running counters; observers keep copies.
    const UpdateCounterMatrix& GetCounters() const { return *m_spCounters; }
    /// The composite: the root's picture, current in every block that ComposeBlock was called for.
    CRasterBuffer& GetComposite() const;
    /// Brings the whole composite up to date.
    void ComposeAll();

    const std::wstring& GetPath() const { return m_strPath; }
    void SetPath(const std::wstring& strPath) { m_strPath = strPath; }
    /// The document's title: the root layer's name.
    const std::wstring& GetTitle() const;
    void SetTitle(const std::wstring& strTitle);

private:
    CSize m_size;
    bool m_bColor = true;
    bool m_bColorRaster = true;
    boost::shared_ptr<CHistoryStream> m_spHistory;
    std::wstring m_strPath;
    boost::shared_ptr<UpdateCounterMatrix> m_spCounters;
    boost::shared_ptr<InternalLayerBuffer> m_spRoot;
};

/// A new canvas in full colour with an empty tree. The sides must be positive.
boost::shared_ptr<CCanvasBuffer> CreateCanvas(CSize sz, bool bColor = true);

/// Composes the block at pixel (x, y) if it is stale.
void ComposeBlock(CCanvasBuffer& canvas, int32_t x, int32_t y);
