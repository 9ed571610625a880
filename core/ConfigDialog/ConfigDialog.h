// The settings that the user finds under 環境設定: one page, the tablet's.
#pragma once

#include "core/Platform/Dialogs.h"

class CIniConfig;

class CConfigDialog : public CDialogModel {
public:
    explicit CConfigDialog(CIniConfig& config);

    const char* GetName() const override { return "CConfigDialog"; }
    std::wstring GetTitle() const override { return L"環境設定"; }
    /// Writes the settings.
    bool OnOk(IWindow* pOwner) override;

private:
    CIniConfig& m_config;
};
