// The dialog for a new canvas's size and colour mode.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Platform/Dialogs.h"

class CNewDialog : public CDialogModel {
public:
    explicit CNewDialog(IMessageBoxes& boxes);

    const char* GetName() const override { return "CNewDialog"; }
    std::wstring GetTitle() const override { return L"新規作成"; }
    /// Refuses sizes outside 1 to MAX_CANVAS_SIDE: reports it, restores 800 or 600 and stays open.
    bool OnOk(IWindow* pOwner) override;

    /// The accepted size in pixels.
    CSize GetSize() const { return m_size; }
    /// False for a grey canvas.
    bool IsColor() const { return m_vControls[2].nValue != 0; }

private:
    IMessageBoxes& m_boxes;
    CSize m_size;
};
