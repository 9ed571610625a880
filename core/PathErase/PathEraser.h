// The vector eraser: takes strokes away as a whole, up to their crossings, or where it touches them.
#pragma once

#include "core/PathCtlPtHandle/VectorTool.h"
#include "core/PathErase/ErasePlan.h"

constexpr int TOOL_PATH_ERASER = 11;

class CErasePathsHistory;

inline constexpr TToolHint PATH_ERASER_HINTS[] = {
    {0, L"クリック・ドラッグ: 赤い線を消す（塗りの図形は「線全体」だけで消えます）"}};

/// A hovering pointer shows what a press takes away. A drag takes it at once, on all of its way, and is one
/// undo step. Pressure has no effect.
class CPathEraser : public CVectorTool {
public:
    static constexpr TToolInfo INFO{TOOL_PATH_ERASER, L"ベクター消しゴム", "icons/tool-vector-eraser.svg",
                                    ECursor::Cross, PATH_ERASER_HINTS};
    static constexpr int MAX_RADIUS = 4000;

    /// Reads the settings; KeepSettings and the destructor write changes.
    explicit CPathEraser(const TToolOutside& outside);
    ~CPathEraser() override;

    const TToolInfo& GetInfo() const override { return INFO; }
    using CTools::OnMouseMove;
    bool OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t flags) override;
    bool OnLButtonDown(int32_t x, int32_t y, uint32_t flags) override;
    bool OnLButtonUp(int32_t x, int32_t y, uint32_t flags) override;
    /// Ends a pen's drag at its last position.
    bool OnProximityLeave() override;
    bool OnPointerOver(CPoint pt) override;
    bool OnMouseLeave() override;
    /// Restores what the running drag has taken.
    bool Cancel() override;
    /// The commands of the brush's size change the radius.
    bool OnCommand(int nId) override;
    bool CanCommand(int nId) const override;
    void DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const override;
    std::optional<std::vector<CRect>> TakeOverlayChanges(const TOverlayMapper& mapper) override;
    void KeepSettings() override;

    EEraseMode GetMode() const { return m_mode; }
    void SetMode(EEraseMode mode);
    /// In path units, 1 to MAX_RADIUS.
    int GetRadius() const { return m_nRadius; }
    void SetRadius(int nRadius);
    /// The paths that a press at the pointer would take; empty while nothing is below it or a drag runs.
    const std::vector<TErasedPath>& GetPreview() const { return m_vPreview; }

private:
    using TLine = std::vector<CPoint>;

    bool EraseOnWay(CPoint ptTo);
    bool End(bool bCommit);
    std::vector<TErasedPath> Plan(const CVectorLayerBuffer& layer, CPoint ptFrom, CPoint ptTo);
    void RefreshPreview();
    void SetPreview(std::vector<TErasedPath> vPreview);

    EEraseMode m_mode = ERASE_TO_CROSSING;
    int m_nRadius = 0;
    EEraseMode m_modeRead = ERASE_TO_CROSSING; ///< as stored in the settings
    int m_nRadiusRead = 0;

    boost::shared_ptr<CErasePathsHistory> m_spErased; ///< of the running drag
    CPoint m_ptPointer;
    bool m_bPointer = false; ///< the pointer is over the view
    bool m_bPen = false;     ///< its last event was the pen's

    CStrokeLines m_lines;
    boost::weak_ptr<CVectorLayerBuffer> m_wpLinesLayer;
    uint32_t m_uLinesChange = 0; ///< the document's change count when the lines were made
    std::vector<TErasedPath> m_vPreview;
    std::vector<TLine> m_vPreviewLines; ///< path units
    bool m_bPreviewChanged = false;     ///< since the last TakeOverlayChanges
    std::vector<CRect> m_vShown;        ///< client rectangles of the preview that is displayed
    CRect m_rcCircleShown;
};
