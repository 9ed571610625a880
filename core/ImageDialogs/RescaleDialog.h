// The dialog for another resolution of the canvas: its size in pixels and in percent.
#pragma once

#include "core/Platform/Dialogs.h"
#include "core/RasterKernel/RescaleKernel.h"

#include <optional>

class CRescaleDialog : public CDialogModel {
public:
    CRescaleDialog(IMessageBoxes& boxes, CSize szCanvas);

    const char* GetName() const override { return "CRescaleDialog"; }
    std::wstring GetTitle() const override { return L"解像度変更"; }
    /// Refuses texts that are no size, and sides outside 1 to MAX_CANVAS_SIDE. A width or height that ends in
    /// "%" is a part of the present one.
    bool OnOk(IWindow* pOwner) override;

    /// The accepted values.
    CSize GetSize() const { return m_size; }
    ERescaleMode GetMode() const;

protected:
    /// The other field of a side follows; with kept proportions the other side, too.
    void OnControl(TPanelControl& control) override;

private:
    /// The size in the fields of pixels, within any limits; nullopt when one holds no length.
    std::optional<CSize> ReadSize();
    void ShowSize();

    IMessageBoxes& m_boxes;
    CSize m_szCanvas;
    CSize m_size;
};
