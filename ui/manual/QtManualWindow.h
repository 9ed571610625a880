// The widgets of the manual.
#pragma once

#include "core/Platform/Manual.h"

#include <QTextBrowser>
#include <QTimer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;

/// A page. Pictures that are wider than the page are reduced; colours follow the palette.
class CQtManualPage : public QTextBrowser {
public:
    CQtManualPage(QWidget* pParent, std::function<std::string(std::string)> fnComplete);

    /// The size of the text in percent.
    int GetZoom() const { return m_nZoom; }
    void SetZoom(int nPercent);

    QVariant loadResource(int nType, const QUrl& url) override;

protected:
    void changeEvent(QEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;

private:
    QString MakeSheet() const;
    QVariant LoadPicture(const QString& strFile) const;
    /// Loads the page again at its place.
    void Renew();

    std::function<std::string(std::string)> m_fnComplete;
    const qreal m_dPoints; ///< size of the text at 100 percent
    int m_nZoom = 100;
    QTimer m_timerRenew;
};

class CQtManualWindow : public QWidget {
public:
    CQtManualWindow(QWidget* pOwner, const QString& strFolder, const TManualSetup& setup);

    /// Reports the look to be kept.
    void Keep();

protected:
    void closeEvent(QCloseEvent* pEvent) override;

private:
    QWidget* MakeTools();
    void MakeContents(const QString& strFolder);
    void Find(const QString& strText, QTextDocument::FindFlags flags, bool bNext);

    TManualSetup m_setup;
    CQtManualPage* m_pPage;
    QListWidget* m_pContents;
    QLineEdit* m_pSearch = nullptr;
    QLabel* m_pFound = nullptr;
};
