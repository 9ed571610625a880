#include "core/AppModule/WindowPlacement.h"

#include "core/AppModule/AppModule.h"
#include "core/IniConfig/IniConfig.h"

#include <algorithm>

namespace {

constexpr wchar_t MAXIMIZED[] = L"Maximized";
constexpr int32_t CASCADE_STEP = 24;

boost::shared_ptr<CIniConfigData> OpenSection(const std::wstring& strWindow) {
    return g_AppModule.GetSettings().GetSection(L"Windows")->GetSection(strWindow);
}

int64_t AreaOf(const CRect& rc) { return rc.IsEmpty() ? 0 : int64_t{rc.Width()} * rc.Height(); }

} // namespace

CRect ReadPlacement(const std::wstring& strWindow, const CRect& rcDefault) {
    const auto spSection = OpenSection(strWindow);
    const CPoint ptAt{spSection->GetInt(L"Left", rcDefault.left), spSection->GetInt(L"Top", rcDefault.top)};
    const CSize sz{spSection->GetInt(L"Width", rcDefault.Width()),
                   spSection->GetInt(L"Height", rcDefault.Height())};
    return sz.cx > 0 && sz.cy > 0 ? CRect(ptAt, sz) : rcDefault;
}

void WritePlacement(const std::wstring& strWindow, const CRect& rc,
                    std::vector<std::pair<std::wstring, int32_t>> vMore) {
    vMore.insert(vMore.begin(),
                 {{L"Left", rc.left}, {L"Top", rc.top}, {L"Width", rc.Width()}, {L"Height", rc.Height()}});
    OpenSection(strWindow)->SetInts(vMore);
}

bool ReadMaximized(const std::wstring& strWindow, bool bDefault) {
    return OpenSection(strWindow)->GetInt(MAXIMIZED, bDefault) != 0;
}

std::pair<std::wstring, int32_t> MaximizedValue(bool bMaximized) { return {MAXIMIZED, bMaximized}; }

CRect PlaceOnScreen(const CRect& rc, const std::vector<CRect>& vScreens) {
    if (vScreens.empty()) return rc;
    const CRect rcScreen =
        *std::max_element(vScreens.begin(), vScreens.end(), [&](const CRect& a, const CRect& b) {
            return AreaOf(rc.Intersect(a)) < AreaOf(rc.Intersect(b));
        });
    const CSize sz{std::min(rc.Width(), rcScreen.Width()), std::min(rc.Height(), rcScreen.Height())};
    const CPoint pt{std::clamp(rc.left, rcScreen.left, rcScreen.right - sz.cx),
                    std::clamp(rc.top, rcScreen.top, rcScreen.bottom - sz.cy)};
    return CRect(pt, sz);
}

CRect PlaceInCascade(const CRect& rc, const std::vector<CRect>& vOthers, CSize szArea) {
    const bool bLimited = szArea.cx > 0 && szArea.cy > 0;
    const CRect rcArea({0, 0}, szArea);
    CRect rcAt = bLimited ? PlaceOnScreen(rc, {rcArea}) : rc;
    const auto isTaken = [&](const CRect& rcOther) { return rcOther.TopLeft() == rcAt.TopLeft(); };
    // Among one place more than there are others, one is free, unless the area has fewer.
    for (size_t n = 0; n < vOthers.size() && std::ranges::any_of(vOthers, isTaken); ++n) {
        rcAt = CRect(rcAt.TopLeft() + CPoint{CASCADE_STEP, CASCADE_STEP}, rcAt.Size());
        if (bLimited && (rcAt.right > szArea.cx || rcAt.bottom > szArea.cy))
            rcAt = CRect({0, 0}, rcAt.Size());
    }
    return rcAt;
}
