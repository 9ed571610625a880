// The transform tool of raster layers: scales, skews, turns and distorts pixels as a preview, until the user
// accepts it.
#pragma once

#include "core/LayerBuffer/FloatHistory.h"
#include "core/RasterTransform/TransformDrag.h"
#include "core/RasterTransform/TransformOverlay.h"
#include "core/Tools/RasterToolBase.h"

constexpr int TOOL_RASTER_TRANSFORM = 9;

inline constexpr TToolHint TRANSFORM_HINTS[] = {
    {0, L"角をドラッグ: 変形　内側: 移動　外側: 回転　矢印キー: 1ピクセル移動　Enter: 決定"},
    {POINTER_SHIFT, L"縦横比を保つ・15度ごとに回転"},
    {POINTER_ALT, L"中心から変形"},
    {POINTER_CONTROL, L"ホイール: 拡大・縮小"}};

/// One accepted transform: the layer's tiles, the selection, and the pixels that no longer float.
class TransformHistory : public CRasterMoveHistory {
public:
    using CRasterMoveHistory::CRasterMoveHistory;
};

/// Works on the layer's floating pixels, else on the selection's bounding rectangle, else on that of the
/// layer's pixels. The preview is open from the first drag, key or button that changes something until it is
/// accepted, cancelled or the identity again.
class CRasterTransform : public CRasterToolBase {
public:
    static constexpr TToolInfo INFO{TOOL_RASTER_TRANSFORM, L"ラスタ変形ツール", "icons/tool-transform.svg",
                                    ECursor::Cross, TRANSFORM_HINTS};

    /// Reads the settings; KeepSettings and the destructor write changes.
    explicit CRasterTransform(const TToolOutside& outside);
    ~CRasterTransform() override;

    const TToolInfo& GetInfo() const override { return INFO; }
    const wchar_t* GetHint(uint32_t uModifiers) const override;
    void KeepSettings() override;

    using CTools::OnMouseMove;
    bool OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t flags) override;
    bool OnLButtonDown(int32_t x, int32_t y, uint32_t flags) override;
    bool OnLButtonUp(int32_t x, int32_t y, uint32_t flags) override;
    /// Ends a pen's drag at its last position.
    bool OnProximityLeave() override { return EndDrag(); }
    /// Arrow keys move by a pixel, with Shift by ten, in the window's direction; Enter accepts.
    bool OnKeyDown(int nKey) override;
    bool OnKeyRepeat(int nKey) override { return Nudge(nKey); }
    /// Takes the running drag back.
    bool Cancel() override;
    bool IsOpen() const override { return m_spOverlay != nullptr; }
    /// Only `Commit` accepts.
    void EndOpen(EOpenEnd why) override;
    const wchar_t* GetCloseQuestion() const override { return L"変形を決定しますか？"; }
    bool ShowPreview(bool bShow) override;
    void DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const override;
    std::optional<std::vector<CRect>> TakeOverlayChanges(const TOverlayMapper& mapper) override;
    ECursor GetCursor(CPoint pt) const override;

    /// True during a drag, in which the following three are refused.
    bool IsWorking() const { return m_state != STATE_IDLE; }
    /// Changes the preview, and opens it where there is something to transform.
    void ChangeFixed(EFixedTransform fixed);
    /// Makes the preview part of the layer, one undo step; none when that changes nothing.
    void Accept();
    /// Gives the preview up.
    void CancelPreview();

    ETransformMode GetMode() const { return m_mode; }
    void SetMode(ETransformMode mode) { m_mode = mode; }
    /// The corners, also before anything has changed; nullopt when there is nothing to transform.
    std::optional<TQuad> GetQuad() const;

private:
    // The pixels to be transformed: a float, a part of the layer or all of it.
    struct TTarget {
        TTransformSource source; ///< its rectangle is empty when there is nothing
        boost::shared_ptr<CFloatingPixels> spFloat;
    };
    TTarget FindTarget() const;
    // The rectangle of that on the canvas, measured when the document has changed.
    const CRect& GetIdleRect() const;
    bool Open();
    void Close();
    // Takes the corners if they are usable.
    void SetQuad(const TQuad& quad);
    // Closes a preview of the identity and notifies the panels.
    void Settle();
    bool EndDrag();
    // Moves by an arrow key's step, in the window's direction; false for other keys.
    bool Nudge(int nKey);
    TTransformGrip FindGrip(CPoint ptCanvas, uint32_t flags) const;
    int32_t ToDevice(int32_t nPixels) const;
    boost::shared_ptr<CSelectBuffer> MakeSelect() const;
    std::array<CPoint, 5> GetOutline(const TOverlayMapper& mapper) const;

    ETransformMode m_mode = TRANSFORM_SCALE;
    ETransformMode m_modeRead = TRANSFORM_SCALE;      ///< as stored in the settings
    boost::shared_ptr<CTransformOverlay> m_spOverlay; ///< the open preview
    boost::shared_ptr<CCanvasBuffer> m_spOpenCanvas;  ///< of the open preview
    boost::shared_ptr<CRasterLayerBuffer> m_spTarget; ///< the layer that is transformed
    TTransformDrag m_drag{};
    bool m_bBeyond = false;           ///< the drag has moved beyond the threshold
    CPoint m_ptPress;                 ///< of the drag, in eighths
    TTransformGrip m_hover;           ///< under the pointer
    std::array<CPoint, 5> m_aShown{}; ///< the outline that the window shows

    struct TIdle {
        boost::weak_ptr<CLayerBuffer> wpLayer;
        boost::weak_ptr<CSelectBuffer> wpSelect;
        boost::weak_ptr<CFloatingPixels> wpFloat;
        uint32_t uChanges = 0;
        CRect rc;
    };
    mutable TIdle m_idle;
};
