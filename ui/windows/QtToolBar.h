// The main frame's tool bar: command buttons and the zoom box.
#pragma once

#include "core/Platform/Menu.h"

#include <QToolBar>

#include <functional>
#include <map>
#include <string>
#include <vector>

class QComboBox;

class CQtToolBar : public QToolBar, public ICommandLook {
public:
    /// `command` is called with the chosen button's id and 0, or the zoom box's id and the chosen line.
    CQtToolBar(const std::vector<int>& vIds, const std::function<void(int, int)>& command, QWidget* pParent);

    void SetState(int nId, bool bEnabled, bool bChecked) override;
    /// Sets the tool tips of buttons whose commands a menu has from its texts.
    void SetToolTips(const std::vector<TMenuItem>& vMenu);

    void SetZoomItems(const std::vector<std::wstring>& vItems);
    void SelectZoomItem(int nItem);
    int GetZoomItem() const;

private:
    std::map<int, QAction*> m_mapActions;
    QComboBox* m_pZoom;
};
