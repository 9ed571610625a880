// A panel's title for desktops on which a program cannot move its windows.
#pragma once

#include <QStyle>
#include <QWidget>

#include <functional>

class QDockWidget;
class QLabel;

/// Shows the panel's title and the buttons that let it float or dock and close it. The desktop moves a
/// floating panel that is dragged by its title; a double click docks it or lets it float. A drag of a docked
/// panel is left to the dock.
class CQtPanelTitle : public QWidget {
public:
    explicit CQtPanelTitle(QDockWidget& panel);

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;

private:
    void AddButton(QStyle::StandardPixmap icon, const wchar_t* pszText, const std::function<void()>& fnClick);

    QDockWidget& m_panel;
    QLabel* m_pText;
    QPoint m_ptPress;
};
