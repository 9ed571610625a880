// One open document: its size and colour mode, its layer tree, its undo history and the file it came from.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/LayerBuffer.h"
#include "core/RasterBuffer/SelectBuffer.h"
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

    /// All that an operation on the whole document can change.
    struct FullBackup {
        boost::shared_ptr<InternalLayerBuffer> internalLayer; ///< the tree
        UpdateCounterMatrix spCounters;
        boost::shared_ptr<CSelectBuffer> spSelect;
        bool m_bColor;
        bool m_bColorRaster;
    };

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
    uint64_t TakeStrokeNumber() override { return m_uStrokes++; }
    /// Chooses the planes' kinds; only before Create.
    void SetColorMode(bool bColor, bool bColorRaster);

    CLayerBuffer& GetRoot() const override;
    TLayerPtr GetActiveLayer() const override;
    void SelectLayer(const TLayerPtr& spLayer) override;

    /// Gathers the flags of the tree into the root's and counts them.
    void FlushCanvasUpdates() override;
    /// The running counters; observers keep copies.
    const UpdateCounterMatrix& GetCounters() const { return *m_spCounters; }
    /// The composite: the root's picture, current in every block that ComposeBlock was called for.
    CRasterBuffer& GetComposite() const;
    /// Takes strokes in progress one slice of time further; true when a redraw is due.
    bool Update() { return GetRoot().UpdateStrokes(GetRoot().GetNextStroke()); }
    /// True while Update has something to do without any new point.
    bool IsBehind() const { return GetRoot().IsBehind(); }
    /// True while complete strokes wait to be merged.
    bool HasPendingWork() const { return GetRoot().HasPendingWork(); }
    /// Merges every complete stroke, however long it takes: whoever saves, undoes or changes the tree does so
    /// first.
    void CompleteWork();
    /// Brings the whole composite up to date.
    void ComposeAll();
    /// The whole picture for use outside: in colour also while the screen shows it in grey, and in the
    /// colours that the screen shows where raster layers are grey. Brings what is stale up to date; where
    /// nothing paints it has no tile.
    boost::shared_ptr<CRasterBuffer> Flatten();

    const boost::shared_ptr<CSelectBuffer>& GetSelect() const override { return m_spSelect; }
    /// Replaces the selection; null selects nothing.
    void SetSelect(const boost::shared_ptr<CSelectBuffer>& spSelect) { m_spSelect = spSelect; }

    /// Gives the tree as it is, draw buffers and pixels, new kinds. Not undoable by itself.
    void ConvertColorMode(bool bColor, bool bColorRaster);
    /// Gives the tree, the selection and the counters another size; `change` fills it. Complete strokes must
    /// have been merged. Not undoable by itself, and a failure leaves it half done.
    void Resize(CSize sz, const TLayerChange& change);
    /// A backup with a copy of the tree that shares its tiles. Raises internal_error when it cannot be made.
    FullBackup CreateFullBackup();
    /// Exchanges a backup with the canvas's state and flags everything. What no undo step has stays with the
    /// canvas: the title and which layers are shown. Counters of one size go on, since views tell changes by
    /// them. Null does nothing.
    static void SwapFullBackup(const boost::shared_ptr<CCanvasBuffer>& spCanvas, FullBackup* pBackup);
    /// Memory of a backup beside what the canvas shares with it; 0 for null.
    static size_t GetBytesBeside(const boost::shared_ptr<CCanvasBuffer>& spCanvas, const FullBackup& backup);

    const std::wstring& GetPath() const { return m_strPath; }
    void SetPath(std::wstring strPath) { m_strPath.swap(strPath); }
    /// The document's title: the root layer's name.
    const std::wstring& GetTitle() const;
    void SetTitle(const std::wstring& strTitle);
    /// Exchanges path and title. Never throws.
    void SwapPathAndTitle(std::wstring& strPath, std::wstring& strTitle);

private:
    CSize m_size;
    bool m_bColor = true;
    bool m_bColorRaster = true;
    boost::shared_ptr<CHistoryStream> m_spHistory;
    boost::shared_ptr<CSelectBuffer> m_spSelect;
    uint64_t m_uStrokes = 0; ///< numbers given to complete strokes
    std::wstring m_strPath;
    boost::shared_ptr<UpdateCounterMatrix> m_spCounters;
    boost::shared_ptr<InternalLayerBuffer> m_spRoot;
};

/// A new canvas in full colour with an empty tree. The sides must be positive.
boost::shared_ptr<CCanvasBuffer> CreateCanvas(CSize sz, bool bColor = true);

/// Composes the block at pixel (x, y) if it is stale.
void ComposeBlock(CCanvasBuffer& canvas, int32_t x, int32_t y);
