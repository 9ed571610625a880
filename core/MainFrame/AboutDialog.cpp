#include "core/MainFrame/AboutDialog.h"

#include "core/Base/Failure.h"
#include "core/Platform/Files.h"
#include "core/Platform/System.h"

namespace {

struct TDescription {
    std::wstring strPath;
    std::wstring strVersion;
};

TDescription Describe(const TModuleInfo& info) {
    if (info.strPath.empty()) return {L"unknown module", L"not found"};
    if (!info.bResource) return {info.strPath, L"no resource"};
    return {info.strPath, info.strVersion.empty() ? L"no version" : info.strVersion};
}

} // namespace

CAboutDialog::CAboutDialog(IModules& modules, IClipboard& clipboard) : m_clipboard(clipboard) {
    const TDescription program = Describe(modules.GetProgram());
    const TDescription tablet = Describe(modules.GetLibrary(L"wintab32"));
    const std::wstring strReport =
        FormatText(L"exe file:\r\n Path: %1%\r\n Version: %2%\r\n"
                   L"WinTab32:\r\n Path: %3%\r\n Version: %4%\r\n",
                   {program.strPath, program.strVersion, tablet.strPath, tablet.strVersion});
    m_vControls = {
        {.kind = TPanelControl::EKind::Label,
         .nId = 1,
         .strText = L"Vellumcraft " VELLUM_VERSION,
         .strName = "version"},
        {.kind = TPanelControl::EKind::Report, .nId = 2, .strText = strReport, .strName = "report"}};
}

void CAboutDialog::OnExtra() { m_clipboard.SetText(m_vControls[1].strText); }
