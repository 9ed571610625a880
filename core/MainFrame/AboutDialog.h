// What the program is and what it runs in.
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
    /// Puts the report on the clipboard.
    void OnExtra() override;
    bool OnOk(IWindow*) override { return true; }
    bool HasCancel() const override { return false; }

private:
    IClipboard& m_clipboard;
};
