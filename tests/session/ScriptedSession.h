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
#include "tests/support/NoPlaces.h"

class CScriptedSession {
public:
    /// Plays a script named "s" over a canvas of two layers, the upper one with a red pixel at (1, 2), or
    /// without one. Returns the failure.
    std::string Play(const std::string& strScript, bool bCanvas = true) {
        CSessionPlatform session(m_parts, ParseScript(strScript, "s"));
        return Play(session, bCanvas);
    }
    static std::string Play(CSessionPlatform& session, bool bCanvas) {
        {
            CSessionScope scope(session.GetPlatform());
            CreateMainFrame();
            if (bCanvas) OpenCanvas();
            scope.Run();
        }
        return session.GetFailure();
    }

    CMemoryFiles m_files;
    CNoPlaces m_places;
    CImageCodecs m_codecs{m_files};
    TSessionParts m_parts{m_files, m_places, m_places, m_codecs};

private:
    static void OpenCanvas() {
        const auto spCanvas = CreateCanvas({200, 150});
        const auto spBelow = CreateRasterLayer(spCanvas), spAbove = CreateRasterLayer(spCanvas);
        for (const auto& spLayer : {spBelow, spAbove}) spCanvas->GetRoot().AddLayer(spLayer, -1);
        spCanvas->GetRoot().SetActiveChild(spAbove);
        const uint8_t aRed[] = {0, 0, 255, 255};
        const auto spBlock = spAbove->GetRaster()->GetBlock({0, 0}, true);
        dynamic_cast<CColorRasterBlockBuffer&>(*spBlock).LoadPixel(2 * 96 + 1, aRed);
        spAbove->GetRaster()->GetDirty().Fill(true);
        g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
    }
};
