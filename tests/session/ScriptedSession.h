// A whole session over a small canvas, played by a script.
#pragma once

#include "core/CanvasFrame/CanvasFrame.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "session/SessionPlatform.h"
#include "system/ImageCodecs.h"
#include "tests/support/MemoryFiles.h"

#include <string>

struct CNoPlaces : ILocations, IModules {
    std::wstring GetAppData() override { return L"/settings"; }
    void MakeFolder(const std::wstring&) override {}
    TModuleInfo GetProgram() override { return {}; }
    TModuleInfo GetLibrary(const std::wstring&) override { return {}; }
};

class CScriptedSession {
public:
    /// Plays a script named "s" over a canvas whose one layer has a red pixel at (1, 2). Returns the failure.
    std::string Play(const std::string& strScript, CSize szCanvas = {200, 150}) {
        CSessionPlatform session(m_parts, ParseScript(strScript, "s"));
        {
            CSessionScope scope(session.GetPlatform());
            CreateMainFrame();
            if (szCanvas.cx > 0) OpenCanvas(szCanvas);
            scope.Run();
        }
        m_vShown = session.GetLog().GetShown();
        return session.GetFailure();
    }

    CMemoryFiles m_files;
    CNoPlaces m_places;
    CImageCodecs m_codecs{m_files};
    TSessionParts m_parts{m_files, m_places, m_places, m_codecs, nullptr, nullptr, nullptr, nullptr, {}};
    std::vector<TShown> m_vShown; ///< by the last session

private:
    static void OpenCanvas(CSize sz) {
        const auto spCanvas = CreateCanvas(sz);
        for (const wchar_t* pszName : {L"below", L"above"}) {
            const auto spLayer = CreateRasterLayer(spCanvas);
            spLayer->setName(pszName);
            spCanvas->GetRoot().AddLayer(spLayer, -1);
            spCanvas->GetRoot().SetActiveChild(spLayer);
            if (pszName[0] != L'a') continue;
            const uint8_t aRed[] = {0, 0, 255, 255};
            const auto spBlock = spLayer->GetRaster()->GetBlock({0, 0}, true);
            dynamic_cast<CColorRasterBlockBuffer&>(*spBlock).LoadPixel(2 * 96 + 1, aRed);
            spLayer->GetRaster()->GetDirty().Fill(true);
        }
        g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
    }
};
