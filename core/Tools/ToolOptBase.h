// A pane of the tool options: the controls for one kind of tool.
#pragma once

#include "core/Platform/Panel.h"
#include "core/Tools/Tools.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <set>
#include <string>
#include <vector>

/// One row of a combo and its value.
struct TOptRow {
    std::wstring strText;
    int nValue;
};

/// The row of a value, searched from the last one upwards; 0 when none has it.
int FindOptRow(const std::vector<TOptRow>& vRows, int nValue);

class CToolOptBase : boost::noncopyable {
public:
    virtual ~CToolOptBase() = default;
    /// Registers the pane for a tool number.
    void AddTool(int nId) { m_setTools.insert(nId); }
    bool IsForTool(int nId) const { return m_setTools.count(nId) != 0; }
    /// Copies the tool's values to the controls and keeps the tool for later changes. Raises internal_error
    /// for a tool of another class.
    virtual void RefreshView(const boost::shared_ptr<CTools>& spTool) = 0;
    /// Called after the user changed a control of the pane: sets the tool's value, if the tool still
    /// exists.
    virtual void OnControl(const TPanelControl& control) = 0;

    std::vector<TPanelControl>& GetControls() { return m_vControls; }
    /// True when the control is one of the pane's.
    bool Has(int nId) const;

protected:
    TPanelControl& Find(int nId);

    std::vector<TPanelControl> m_vControls;

private:
    std::set<int> m_setTools;
};
