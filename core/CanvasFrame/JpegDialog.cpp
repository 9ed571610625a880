#include "core/CanvasFrame/JpegDialog.h"

#include <algorithm>

namespace {

constexpr int MIN_QUALITY = 1;
constexpr int MAX_QUALITY = 100;
constexpr int ID_QUALITY = 1;
constexpr int ID_BYTES = 2;
constexpr uint64_t KILOBYTE = 1024;

} // namespace

CJpegDialog::CJpegDialog(int nQuality, TCountBytes fnCountBytes) : m_fnCountBytes(std::move(fnCountBytes)) {
    m_vControls = {{.kind = TPanelControl::EKind::Slider,
                    .nId = ID_QUALITY,
                    .strLabel = L"画質",
                    .nMin = MIN_QUALITY,
                    .nMax = MAX_QUALITY,
                    .nValue = Limit(nQuality),
                    .strName = "quality"},
                   {.kind = TPanelControl::EKind::Label, .nId = ID_BYTES, .strLabel = L"ファイルの大きさ"}};
    ShowSize();
}

int CJpegDialog::Limit(int nQuality) { return std::clamp(nQuality, MIN_QUALITY, MAX_QUALITY); }

int CJpegDialog::GetQuality() const { return Limit(m_vControls.front().nValue); }

void CJpegDialog::OnControl(TPanelControl& control) {
    if (control.nId == ID_QUALITY) ShowSize();
}

void CJpegDialog::ShowSize() {
    TPanelControl& label = Find(ID_BYTES);
    const uint64_t uBytes = m_fnCountBytes(GetQuality());
    label.bVisible = uBytes != 0;
    label.strText = L"約 " + std::to_wstring((uBytes + KILOBYTE - 1) / KILOBYTE) + L" KB";
}
