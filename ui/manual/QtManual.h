// The manual's window: its pages, their contents at the left, and search.
#pragma once

#include "core/Platform/Manual.h"

#include <QPointer>
#include <QString>

#include <boost/noncopyable.hpp>

class CQtManualWindow;

class CQtManual : public IManual, boost::noncopyable {
public:
    /// `strFolder` holds the pages; empty when they are not installed.
    explicit CQtManual(QString strFolder) : m_strFolder(std::move(strFolder)) {}
    ~CQtManual() override;

    bool Show(IWindow& owner, const TManualSetup& setup) override;
    void Close() override;

private:
    const QString m_strFolder;
    QPointer<CQtManualWindow> m_pWindow;
};
