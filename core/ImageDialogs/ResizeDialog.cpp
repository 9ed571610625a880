#include "core/ImageDialogs/ResizeDialog.h"

#include "core/ImageDialogs/SizeText.h"

#include <algorithm>

namespace {

enum EControl : int { ID_TOP = 725, ID_LEFT, ID_RIGHT, ID_BOTTOM, ID_NEW_SIZE, ID_VIEW };

TPanelControl MarginControl(int nId, const char* pszName, const wchar_t* pszLabel) {
    return {.kind = TPanelControl::EKind::Number,
            .nId = nId,
            .strLabel = pszLabel,
            .strText = L"0",
            .nMin = -MAX_CANVAS_SIDE,
            .nMax = MAX_CANVAS_SIDE,
            .bLive = true,
            .strName = pszName};
}

bool IsTooSmall(const CRect& rc) { return std::min(rc.Size().cx, rc.Size().cy) < 1; }
bool IsTooLarge(const CRect& rc) { return std::max(rc.Size().cx, rc.Size().cy) > MAX_CANVAS_SIDE; }

} // namespace

CResizeDialog::CResizeDialog(IMessageBoxes& boxes, const boost::shared_ptr<const TPicture>& spPicture,
                             CSize szCanvas)
    : m_boxes(boxes), m_szCanvas(szCanvas), m_view(spPicture, szCanvas), m_rcFrame({0, 0}, szCanvas) {
    using enum TPanelControl::EKind;
    m_vControls = {MarginControl(ID_TOP, "top", L"上"),
                   MarginControl(ID_LEFT, "left", L"左"),
                   MarginControl(ID_RIGHT, "right", L"右"),
                   MarginControl(ID_BOTTOM, "bottom", L"下"),
                   {.kind = Label, .strLabel = L"現在", .strText = FormatSize(szCanvas)},
                   {.kind = Label, .nId = ID_NEW_SIZE, .strLabel = L"変更後"},
                   {.kind = Column},
                   {.kind = View, .nId = ID_VIEW, .bStretch = true, .szView = {280, 240}, .pView = &m_view}};
    ShowFrame();
}

std::optional<CRect> CResizeDialog::ReadFrame() {
    const auto margin = [this](int nId) { return ParseWhole(Find(nId).strText); };
    const auto top = margin(ID_TOP), left = margin(ID_LEFT), right = margin(ID_RIGHT),
               bottom = margin(ID_BOTTOM);
    if (!top || !left || !right || !bottom) return {};
    return CRect(-*left, -*top, m_szCanvas.cx + *right, m_szCanvas.cy + *bottom);
}

void CResizeDialog::ShowFrame() {
    const std::optional<CRect> frame = ReadFrame();
    const bool bValid = frame && !IsTooSmall(*frame) && !IsTooLarge(*frame);
    m_view.SetFrame(bValid ? frame : std::nullopt);
    Find(ID_NEW_SIZE).strText = frame ? FormatSize(frame->Size()) : L"－";
}

void CResizeDialog::OnControl(TPanelControl&) { ShowFrame(); }

bool CResizeDialog::OnOk(IWindow* pOwner) {
    const std::optional<CRect> frame = ReadFrame();
    if (!frame) return Refuse(m_boxes, pOwner, NO_NUMBER);
    if (IsTooSmall(*frame)) return Refuse(m_boxes, pOwner, L"キャンバスサイズ小さすぎます。");
    if (IsTooLarge(*frame)) return Refuse(m_boxes, pOwner, L"キャンバスサイズ大きすぎます。");
    m_rcFrame = *frame;
    return true;
}
