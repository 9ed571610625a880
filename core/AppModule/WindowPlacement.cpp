#include "core/AppModule/WindowPlacement.h"

#include "core/AppModule/AppModule.h"
#include "core/IniConfig/IniConfig.h"

namespace {

boost::shared_ptr<CIniConfigData> OpenSection(const std::wstring& strWindow) {
    return g_AppModule.GetSettings().GetSection(L"Windows")->GetSection(strWindow);
}

} // namespace

CRect ReadPlacement(const std::wstring& strWindow, const CRect& rcDefault) {
    const auto spSection = OpenSection(strWindow);
    const CPoint ptAt{spSection->GetInt(L"Left", rcDefault.left), spSection->GetInt(L"Top", rcDefault.top)};
    const CSize sz{spSection->GetInt(L"Width", rcDefault.Width()),
                   spSection->GetInt(L"Height", rcDefault.Height())};
    return sz.cx > 0 && sz.cy > 0 ? CRect(ptAt, sz) : rcDefault;
}

void WritePlacement(const std::wstring& strWindow, const CRect& rc) {
    const auto spSection = OpenSection(strWindow);
    spSection->SetInt(L"Left", rc.left);
    spSection->SetInt(L"Top", rc.top);
    spSection->SetInt(L"Width", rc.Width());
    spSection->SetInt(L"Height", rc.Height());
}
