#include "core/PathWidthTool/ToolOptPathWidthTool.h"

#include "core/Base/Failure.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace {

enum EPathWidthControl : int {
    PATH_WIDTH_KIND_FIRST = 1301, ///< one button for each EWidthKind but the last
    PATH_WIDTH_TYPE = 1305,
    PATH_WIDTH_COEF,
    PATH_WIDTH_LIST,
    PATH_WIDTH_ADD,
    PATH_WIDTH_REMOVE,
    PATH_WIDTH_RADIUS,
    PATH_WIDTH_KIND_ALPHA,
};

int KindControl(int nKind) {
    return nKind == WIDTH_KIND_ALPHA ? PATH_WIDTH_KIND_ALPHA : PATH_WIDTH_KIND_FIRST + nKind;
}

constexpr const wchar_t* KIND_NAMES[WIDTH_KINDS] = {L"点", L"変更", L"削除", L"透明化", L"濃さ"};
constexpr const wchar_t* KIND_TIPS[WIDTH_KINDS] = {L"太さの点を置く", L"太さを乗算・加算する",
                                                   L"太さの点を消す", L"線の一部を透明にする",
                                                   L"線の一部の不透明度を変える"};
constexpr int COEFS[] = {2, 4, 7, 10, 15, 20, 25, 30, 35, 40, 45};
constexpr int UNITS_OF_PIXEL = 8;

} // namespace

CToolOptPathWidthTool::CToolOptPathWidthTool() {
    using EKind = TPanelControl::EKind;
    for (int n = 0; n < WIDTH_KINDS; ++n)
        m_vControls.push_back({.kind = EKind::Toggle,
                               .nId = KindControl(n),
                               .strText = KIND_NAMES[n],
                               .strTip = KIND_TIPS[n],
                               .bSameLine = n != 0});
    TPanelControl type{.kind = EKind::Combo, .nId = PATH_WIDTH_TYPE, .strLabel = L"操作"};
    for (int n = 0; n < WIDTH_TYPES; ++n) type.vRows.push_back(GetWidthName(n));
    m_vControls.insert(
        m_vControls.end(),
        {type,
         {.kind = EKind::Combo, .nId = PATH_WIDTH_COEF, .strLabel = L"係数"},
         {.kind = EKind::List, .nId = PATH_WIDTH_LIST, .nValue = -1, .szView = {200, 90}},
         {.kind = EKind::Button, .nId = PATH_WIDTH_ADD, .strText = L"追加"},
         {.kind = EKind::Button, .nId = PATH_WIDTH_REMOVE, .strText = L"削除", .bSameLine = true},
         {.kind = EKind::Slider,
          .nId = PATH_WIDTH_RADIUS,
          .strLabel = L"半径",
          .strUnit = L" px",
          .nMin = 1,
          .nMax = CPathWidthTool::MAX_RADIUS / UNITS_OF_PIXEL}});
}

void CToolOptPathWidthTool::RefreshView(const boost::shared_ptr<CTools>& spTool) {
    const auto pPathTool = boost::dynamic_pointer_cast<CPathWidthTool>(spTool);
    SELF_CHECK(defect_logic, pPathTool);
    m_wpTool = pPathTool;
    const TPathWidthItem item = pPathTool->GetItem();
    const EWidthKind kind = KindOf(item.nType);
    for (int n = 0; n < WIDTH_KINDS; ++n) Find(KindControl(n)).nValue = n == kind;
    Find(PATH_WIDTH_TYPE).nValue = IsSupported(item.nType) ? item.nType : -1;
    // A coefficient that is none of the usual ones has a row of its own while it is chosen.
    m_vCoefs.assign(std::begin(COEFS), std::end(COEFS));
    const auto it = std::ranges::lower_bound(m_vCoefs, item.nCoef);
    if (it == m_vCoefs.end() || *it != item.nCoef) m_vCoefs.insert(it, item.nCoef);
    TPanelControl& coef = Find(PATH_WIDTH_COEF);
    coef.vRows.clear();
    for (const int nCoef : m_vCoefs) coef.vRows.push_back(CoefText(nCoef));
    coef.nValue = static_cast<int>(std::ranges::find(m_vCoefs, item.nCoef) - m_vCoefs.begin());
    coef.bEnabled = HasCoef(item.nType);
    // Unknown entries can be seen and removed beside any kind.
    m_vShown.clear();
    for (const TPathWidthItem& entry : pPathTool->GetList().GetItems())
        if (KindOf(entry.nType) == kind || !IsSupported(entry.nType)) m_vShown.push_back(entry);
    TPanelControl& list = Find(PATH_WIDTH_LIST);
    list.vRows.clear();
    for (const TPathWidthItem& entry : m_vShown) list.vRows.push_back(ItemText(entry));
    const auto itChosen = std::ranges::find(m_vShown, Normalized(item));
    list.nValue = itChosen == m_vShown.end() ? -1 : static_cast<int>(itChosen - m_vShown.begin());
    Find(PATH_WIDTH_ADD).bEnabled = list.nValue < 0 && kind != WIDTH_KIND_NONE;
    Find(PATH_WIDTH_REMOVE).bEnabled = list.nValue >= 0;
    Find(PATH_WIDTH_RADIUS).nValue = std::max(pPathTool->GetRadius() / UNITS_OF_PIXEL, 1);
}

void CToolOptPathWidthTool::OnControl(const TPanelControl& control) {
    const auto spTool = m_wpTool.lock();
    if (!spTool) return;
    const TPathWidthItem item = spTool->GetItem();
    const auto nRow = static_cast<size_t>(control.nValue); // -1 is beyond every list
    switch (control.nId) {
    case PATH_WIDTH_TYPE:
        if (IsSupported(control.nValue)) spTool->SetItem({control.nValue, item.nCoef});
        break;
    case PATH_WIDTH_COEF:
        if (nRow < m_vCoefs.size()) spTool->SetItem({item.nType, m_vCoefs[nRow]});
        break;
    case PATH_WIDTH_LIST:
        if (nRow < m_vShown.size()) spTool->SetItem(m_vShown[nRow]);
        break;
    case PATH_WIDTH_ADD:
        spTool->GetList().Add(Normalized(item));
        break;
    case PATH_WIDTH_REMOVE:
        spTool->GetList().Remove(Normalized(item));
        break;
    case PATH_WIDTH_RADIUS:
        spTool->SetRadius(control.nValue * UNITS_OF_PIXEL);
        break;
    case PATH_WIDTH_KIND_ALPHA:
        spTool->SetKind(WIDTH_KIND_ALPHA);
        break;
    default:
        spTool->SetKind(static_cast<EWidthKind>(control.nId - PATH_WIDTH_KIND_FIRST));
    }
}
