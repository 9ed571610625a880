// The path tool: draws paths while Control is held, and changes, joins, divides and deletes them.
#pragma once

#include "core/PathToolBase/PathCombine.h"
#include "core/PathToolBase/PathParam.h"
#include "core/PathToolBase/PathToolBase.h"

class CPathHistory;

/// The number of the path tool.
constexpr int TOOL_PATH = 6;

inline constexpr TToolHint PATH_HINTS[] = {
    {0, L"Ctrl+クリック: 描く　ドラッグ: 動かす　線をクリック: 点を足す　Shift: 点を消す　Del: 削除"},
    {POINTER_CONTROL, L"クリック: 点を置く　ドラッグ: ハンドルを引き出す　Ctrl+Del: 分割"},
    {POINTER_SHIFT, L"クリック: 点を消す"},
    {POINTER_ALT, L"点をドラッグ: ハンドルを引き出す　ハンドルをドラッグ: 片側だけ動かす"}};

/// Nothing of a path enters the history while it is drawn; finishing it is one action.
class CPathTool : public CPathToolBase {
public:
    static constexpr TToolInfo INFO{TOOL_PATH, L"パスツール", "icons/tool-path.svg", ECursor::Cross,
                                    PATH_HINTS};

    explicit CPathTool(const TToolOutside& outside);
    ~CPathTool() override;

    const TToolInfo& GetInfo() const override { return INFO; }
    const wchar_t* GetHint(uint32_t uModifiers) const override;
    bool OnLButtonUp(int32_t x, int32_t y, uint32_t flags) override;
    bool OnRButtonDown(int32_t x, int32_t y, uint32_t flags) override;
    bool OnProximityLeave() override;
    bool OnKeyDown(int nKey) override;
    bool OnKeyUp(int nKey) override;
    /// Delete removes the selected anchor or path.
    bool OnCommand(int nId) override;
    bool CanCommand(int nId) const override;
    bool Cancel() override;
    bool IsOpen() const override { return m_spInstallPath != nullptr; }
    /// Finishes the path that is drawn, for every reason.
    void EndOpen(EOpenEnd why) override;
    void KeepSettings() override;

    /// The settings of new paths, which the pane edits in place.
    TPathParam& GetParam() { return m_param; }
    /// The selected open path of the active layer; null for none.
    TOpenPathPtr GetTargetPath() const;
    /// Changes the selected open path by a function, as one undoable step; nothing when it changes nothing.
    /// With `bFold` changes that follow each other are one step.
    void ChangeTarget(const boost::function<void(COpenPathStream&)>& fnChange, bool bFold = false);

protected:
    boost::shared_ptr<CVectorHandle> OnPress(const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                                             const TPathTarget& target, CPoint pt, uint32_t flags) override;
    void OnDragged(CPoint pt, uint32_t flags) override;
    void CommitHandle() override;
    bool OnUndo() override;
    void EndHistoryCancel() override;
    TPathKinds GetKinds(uint32_t flags) const override;
    ECursor GetTargetCursor(const TPathTarget& target, uint32_t flags) const override;
    void DrawMore(COverlay& overlay, const TOverlayMapper& mapper) const override;
    CRect GetMoreRect(const TOverlayMapper& mapper) const override;

private:
    using TLayerRef = boost::shared_ptr<CVectorLayerBuffer>;

    boost::shared_ptr<CVectorHandle> OnLButtonDown_Create(const TLayerRef& spLayer, CPoint pt);
    boost::shared_ptr<CVectorHandle> OnLButtonDown_Append(CPoint pt);
    boost::shared_ptr<CVectorHandle> OnLButtonDown_Connect(const TLayerRef& spLayer, CPoint pt,
                                                           uint32_t flags);
    boost::shared_ptr<CVectorHandle> OnLButtonDown_EditMode(const TLayerRef& spLayer,
                                                            const TPathTarget& target, uint32_t flags);
    void FinishInstall();
    bool FinishIfReleased(bool bRedraw);
    void DropInstall();
    TPathEnd FindEnd(CVectorLayerBuffer& layer, CPoint pt, uint32_t flags, const CPathObject* pExcept) const;
    TPathEnd DraggedEnd() const;
    void RemoveAnchor(CVectorLayerBuffer& layer, const boost::shared_ptr<CPathObject>& spPath,
                      const boost::shared_ptr<CPathControlPoint>& spPoint);
    void RemovePath(const TLayerRef& spLayer, const boost::shared_ptr<CPathObject>& spPath);
    void DivideSelected(const TLayerRef& spLayer);
    bool DeleteSelected(bool bDivide);
    std::vector<CPoint> GetPreview() const;

    TPathParam m_param;
    TPathParam m_kept;                          ///< as last read or written
    TLayerRef m_spInstallLayer;                 ///< of the path that is drawn
    boost::weak_ptr<CPathHistory> m_wpFoldable; ///< the last action that a further change may be folded into
    TPathEnd m_join; ///< the end that the dragged one joins at its release; null for none
};
