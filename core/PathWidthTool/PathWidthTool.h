// The path width tool: changes the width and the opacity of stretches of open paths, and their cuts.
#pragma once

#include "core/PathToolBase/PathToolBase.h"
#include "core/PathWidthTool/PathRangeDrag.h"
#include "core/PathWidthTool/PathWidthList.h"

constexpr int TOOL_PATH_WIDTH = 7;

inline constexpr TToolHint PATH_WIDTH_HINTS[] = {
    {0, L"線に沿ってドラッグ: 太さを変える　記号をドラッグ: 動かす　Shift: 記号を消す　Alt: 記号の片側だけ"},
    {POINTER_SHIFT, L"クリック: 太さや透明化、不透明度の記号を消す"},
    {POINTER_ALT, L"記号をドラッグ: 片側だけ太さを変える"},
    {POINTER_CONTROL, L"ホイール: 拡大・縮小"}};

/// Width points, opacity marks, cuts and ends are dragged by their marks; with Shift or the pen's eraser end
/// a mark is removed. A press near an open path begins the chosen operation there; one on another path
/// selects it.
class CPathWidthTool : public CPathToolBase {
public:
    static constexpr TToolInfo INFO{TOOL_PATH_WIDTH, L"パス太さ", "icons/tool-path-width.svg", ECursor::Width,
                                    PATH_WIDTH_HINTS};
    static constexpr int MAX_RADIUS = 4000;

    /// Reads the settings; KeepSettings and the destructor write changes.
    explicit CPathWidthTool(const TToolOutside& outside);
    ~CPathWidthTool() override;

    const TToolInfo& GetInfo() const override { return INFO; }
    void KeepSettings() override;
    /// Without modifiers: the effect of a press where the pointer is.
    const wchar_t* GetHint(uint32_t uModifiers) const override;

    /// The operation that a press begins.
    const TPathWidthItem& GetItem() const { return m_item; }
    /// Chooses an operation; one without a coefficient keeps that of the others.
    void SetItem(const TPathWidthItem& item);
    /// Chooses the kind's operation that was used last, or else the first one in the list.
    void SetKind(EWidthKind kind);
    CPathWidthList& GetList() { return m_list; }
    /// The distance from a path in eighths of a canvas pixel at which a press begins an operation.
    int GetRadius() const { return m_nRadius; }
    void SetRadius(int nRadius);

protected:
    boost::shared_ptr<CVectorHandle> OnPress(const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                                             const TPathTarget& target, CPoint pt, uint32_t flags) override;
    TPathKinds GetKinds(uint32_t flags) const override;
    TPathTarget FindPressed(CVectorLayerBuffer& layer, CPoint pt, uint32_t flags) const override;
    ECursor GetTargetCursor(const TPathTarget& target, uint32_t flags) const override;
    /// The circle at the pointer and the stretch that is dragged.
    void DrawMore(COverlay& overlay, const TOverlayMapper& mapper) const override;
    CRect GetMoreRect(const TOverlayMapper& mapper) const override;

private:
    // The nearest open path within the radius, the selected and the topmost first, and the place on it.
    TPathTarget FindLine(CVectorLayerBuffer& layer, CPoint pt, uint32_t flags) const;
    boost::shared_ptr<CVectorHandle> BeginRange(const boost::shared_ptr<COpenPathObject>& spPath, CPoint pt,
                                                uint32_t flags) const;
    // Eighths of a canvas pixel for pixels of the window, rounded up.
    uint32_t ToPath(int32_t nPixels) const;
    TPolyBezier GetStretch(const TOverlayMapper& mapper) const;

    TPathWidthItem m_item;
    std::array<TPathWidthItem, WIDTH_KINDS> m_aLast; ///< by kind
    int m_nRadius = 0;
    CPathWidthList m_list;
    TPathWidthItem m_itemRead; ///< as stored in the settings
    int m_nRadiusRead = 0;
};
