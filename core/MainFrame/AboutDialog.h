// The dialog with the program's version and its environment.
#pragma once

#include "core/Platform/Dialogs.h"

class IClipboard;
class IModules;

class CAboutDialog : public CDialogModel {
public:
    CAboutDialog(IModules& modules, IClipboard& clipboard);

    const char* GetName() const override { return "CAboutDialog"; }
    std::wstring GetTitle() const override { return L"Vellumcraft について"; }
    std::wstring GetExtraButton() const override { return L"クリップボードにコピー"; }
    /// Copies the report to the clipboard.
    void OnExtra() override;
    bool OnOk(IWindow*) override { return true; }
    bool HasCancel() const override { return false; }

private:
    IClipboard& m_clipboard;
};
