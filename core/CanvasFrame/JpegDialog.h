// The dialog of a JPEG file's quality.
#pragma once

#include "core/Platform/Dialogs.h"

#include <boost/function.hpp>

#include <cstdint>

class CJpegDialog : public CDialogModel {
public:
    /// Bytes of the file with a quality; 0 when that is unknown.
    using TCountBytes = boost::function<uint64_t(int nQuality)>;

    CJpegDialog(int nQuality, TCountBytes fnCountBytes);

    const char* GetName() const override { return "CJpegDialog"; }
    std::wstring GetTitle() const override { return L"JPEG の画質"; }
    bool OnOk(IWindow*) override { return true; }
    /// 1 to 100.
    int GetQuality() const;
    /// The nearest quality that exists.
    static int Limit(int nQuality);

protected:
    void OnControl(TPanelControl& control) override;

private:
    void ShowSize();

    TCountBytes m_fnCountBytes;
};
