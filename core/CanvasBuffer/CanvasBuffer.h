// One open document: size, colour mode, layer tree, undo history and the file that it was loaded from.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/FloatingPixels.h"
#include "core/LayerBuffer/LayerBuffer.h"
#include "core/Platform/Progress.h"
#include "core/RasterBuffer/SelectBuffer.h"
#include "core/RasterBuffer/UpdateCounterMatrix.h"

#include <boost/enable_shared_from_this.hpp>

#include <functional>
#include <span>
#include <string>
#include <vector>

/// Largest side of a canvas that the user can create, in pixels.
constexpr int MAX_CANVAS_SIDE = 12000;
/// Largest side that is accepted in a document file.
constexpr int MAX_DOCUMENT_SIDE = 32767;

/// The place of the canvas beside what it was when it was created or loaded: a view finds what it shows again
/// after the canvas has changed its size.
struct TCanvasPlace {
    double dLeft = 0; ///< of the canvas's corner, in pixels of the first canvas
    double dTop = 0;
    double dScaleX = 1; ///< pixels to a pixel of the first canvas
    double dScaleY = 1;

    /// The place after a change of a canvas of size `sz` that maps its points so.
    TCanvasPlace After(const TLayerChange& change, CSize sz) const;
    /// The pixel at `other` that shows what the pixel `pt` shows here.
    CPoint MapTo(const TCanvasPlace& other, CPoint pt) const;

    friend bool operator==(const TCanvasPlace&, const TCanvasPlace&) = default;
};

class CCanvasBuffer : public ILayerCanvas,
                      public boost::enable_shared_from_this<CCanvasBuffer>,
                      boost::noncopyable {
public:
    class InternalLayerBuffer;

    /// The state that an operation on the whole document can change.
    struct FullBackup {
        boost::shared_ptr<InternalLayerBuffer> internalLayer; ///< the tree
        UpdateCounterMatrix spCounters;
        boost::shared_ptr<CSelectBuffer> spSelect;
        bool m_bColor;
        bool m_bColorRaster;
        TCanvasPlace place;
    };

    CCanvasBuffer();
    ~CCanvasBuffer() override;

    /// Reads a whole document from the top chunk's reader. After deserialize_error the canvas must be
    /// discarded. `strPath` becomes its file, and the title is taken from it.
    virtual void Deserialize(CDeserializer& top, const std::wstring& strPath);
    /// Makes a new empty tree with the title "名称未設定". The sides must be positive.
    virtual void Create(CSize sz);
    /// Writes the top chunk.
    virtual CSerializer Serialize() const;

    CSize GetSize() const override { return m_size; }
    /// Changes whenever Resize or its undo moves the picture on the canvas.
    const TCanvasPlace& GetPlace() const { return m_place; }
    bool IsColor() const override { return m_bColor; }
    bool IsColorRaster() const override { return m_bColorRaster; }
    CHistoryStream& GetHistory() override { return *m_spHistory; }
    uint64_t TakeStrokeNumber() override { return m_uStrokes++; }
    /// Sets the pixel formats; only before Create.
    void SetColorMode(bool bColor, bool bColorRaster);

    CLayerBuffer& GetRoot() const override;
    TLayerPtr GetActiveLayer() const override;
    void SelectLayer(const TLayerPtr& spLayer) override;

    /// Collects the tree's update flags into the root's and counts them.
    void FlushCanvasUpdates() override;
    /// The update counters; observers compare them with their copies.
    const UpdateCounterMatrix& GetCounters() const { return *m_spCounters; }
    /// The composite: the root's picture, valid in every block that ComposeBlock was called for.
    CRasterBuffer& GetComposite() const;
    /// Renders strokes in progress for one time slice; true when a redraw is due.
    bool Update() { return GetRoot().UpdateStrokes(GetRoot().GetNextStroke()); }
    /// True while Update has work left without any new point.
    bool IsBehind() const { return GetRoot().IsBehind(); }
    /// True while complete strokes wait to be merged.
    bool HasPendingWork() const { return GetRoot().HasPendingWork(); }
    /// Merges every complete stroke, however long it takes. Required before saving, undoing or changing the
    /// tree.
    void CompleteWork();
    /// Updates the whole composite. Raises cancelled_error.
    void ComposeAll(IProgress& progress = NoProgress());
    /// The whole picture for use outside the canvas: in colour even while the screen shows it in grey, and
    /// in the colours that the screen shows where raster layers are grey. Updates stale blocks; empty areas
    /// have no tiles. Raises cancelled_error.
    boost::shared_ptr<CRasterBuffer> Flatten(IProgress& progress = NoProgress());

    const boost::shared_ptr<CSelectBuffer>& GetSelect() const override { return m_spSelect; }
    /// Replaces the selection; null removes it.
    void SetSelect(const boost::shared_ptr<CSelectBuffer>& spSelect) { m_spSelect = spSelect; }

    TFloatState GetFloatState() const override;
    void SetFloatState(const TFloatState& state) override;

    /// Converts the tree's draw buffers and pixels to other formats. Registers no undo step.
    /// After cancelled_error it must be restored from a backup.
    void ConvertColorMode(bool bColor, bool bColorRaster, IProgress& progress = NoProgress());
    /// Resizes the tree, the selection and the counters; `change` supplies the content. Complete strokes
    /// must have been merged. Registers no undo step, and a failure or cancelled_error leaves it incomplete.
    void Resize(CSize sz, const TLayerChange& change, IProgress& progress = NoProgress());
    /// A backup with a copy of the tree that shares its tiles. Raises internal_error on failure.
    FullBackup CreateFullBackup();
    /// Exchanges a backup with the canvas's state and flags what shows or did; everything, in another size.
    /// The title and the layers' visibility, which undo does not cover, stay with the canvas. Counters of the
    /// same size continue, since views detect changes by them. Null does nothing.
    static void SwapFullBackup(const boost::shared_ptr<CCanvasBuffer>& spCanvas, FullBackup* pBackup);
    /// Memory of a backup that is not shared with the canvas; 0 for null.
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
    TCanvasPlace m_place;
    bool m_bColor = true;
    bool m_bColorRaster = true;
    boost::shared_ptr<CHistoryStream> m_spHistory;
    boost::shared_ptr<CSelectBuffer> m_spSelect;
    boost::weak_ptr<CRasterLayerBuffer> m_wpFloatLayer; ///< the layer that pixels float above
    uint64_t m_uStrokes = 0;                            ///< the last number given to a complete stroke
    std::wstring m_strPath;
    boost::shared_ptr<UpdateCounterMatrix> m_spCounters;
    boost::shared_ptr<InternalLayerBuffer> m_spRoot;
};

/// Creates a canvas in full colour with an empty tree. The sides must be positive.
boost::shared_ptr<CCanvasBuffer> CreateCanvas(CSize sz, bool bColor = true);

/// Composes the block at pixel (x, y) if it is stale.
void ComposeBlock(CCanvasBuffer& canvas, int32_t x, int32_t y);

/// How many threads are worth while for so many blocks: 1 for the few that a pen's event changes.
size_t ThreadsForBlocks(size_t nBlocks);

/// Composes the blocks that begin at these pixels, all distinct, and calls `fnDone(pixel)` behind each, on
/// the same thread: distinct blocks' calls run at once. Raises the first failure when every call has ended;
/// blocks that failed or had not begun stay stale.
void ComposeBlocks(CCanvasBuffer& canvas, std::span<const CPoint> blocks, size_t nThreads,
                   const std::function<void(CPoint)>& fnDone);
