// The option panes of the freehand tools: one for brush and eraser, one for the pencil, and what others share
// with them.
#pragma once

#include "core/RasterBrush/RasterBrushBase.h"
#include "core/Tools/ToolOptBase.h"

#include <initializer_list>

/// The base of all panes: combos and checks, each bound to a field of the tool.
class CToolOptFreehand : public CToolOptBase {
public:
    void RefreshView(const boost::shared_ptr<CTools>& spTool) override;
    void OnControl(const TPanelControl& control) override;

protected:
    /// Getter and setter of a tool's value.
    struct TBinding {
        int nId;
        std::vector<TOptRow> vRows; ///< a combo's; empty for a check
        int (*fnGet)(CRasterBrushBase& tool);
        void (*fnSet)(CRasterBrushBase& tool, int nValue);
    };

    /// `nFirstId` is the first control id of the pane.
    CToolOptFreehand(int nFirstId, const wchar_t* pszFailure)
        : m_nFirstId(nFirstId), m_pszFailure(pszFailure) {}

    /// Adds the combos with these numbers within the pane.
    void AddCombos(std::initializer_list<int> lstIds);
    void AddCheck(const wchar_t* pszLabel, const wchar_t* pszText, const TBinding& binding,
                  bool bSameLine = false);
    void AddPressure();
    /// Smoothing, entry and exit.
    void AddCourse();
    void AddSlow();

    const int m_nFirstId;

private:
    virtual bool Serves(const CRasterBrushBase& tool) const = 0;

    const wchar_t* m_pszFailure;
    std::vector<TBinding> m_vBindings;
    boost::weak_ptr<CRasterBrushBase> m_wpTool;
};

class CToolOptRasterBrush : public CToolOptFreehand {
public:
    CToolOptRasterBrush();

private:
    bool Serves(const CRasterBrushBase&) const override { return true; }
};

class CToolOptRasterPencil : public CToolOptFreehand {
public:
    CToolOptRasterPencil();

private:
    bool Serves(const CRasterBrushBase& tool) const override;
};
