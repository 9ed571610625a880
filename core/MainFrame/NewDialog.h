// The dialog for a new document's size and colour mode.
#pragma once

#include "core/MainFrame/NewDocument.h"
#include "core/Platform/Dialogs.h"

class CNewDialog : public CDialogModel {
public:
    explicit CNewDialog(IMessageBoxes& boxes);

    const char* GetName() const override { return "CNewDialog"; }
    std::wstring GetTitle() const override { return L"新規作成"; }
    /// Refuses sizes outside 1 to MAX_CANVAS_SIDE: reports it, restores 800 or 600 and stays open.
    bool OnOk(IWindow* pOwner) override;

    /// The accepted values.
    const TNewDocument& GetDocument() const { return m_document; }

protected:
    /// The light display is of use in colour only.
    void OnControl(TPanelControl& control) override;

private:
    IMessageBoxes& m_boxes;
    TNewDocument m_document;
    bool m_bLight = false; ///< the mark of the light display when colour was taken away
};
