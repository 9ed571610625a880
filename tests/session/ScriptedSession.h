// A whole session over a small canvas, played by a script.
#pragma once

#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "session/recorder/Recorder.h"
#include "system/pictures/ImageCodecs.h"
#include "tests/session/ScriptLines.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/NoPlaces.h"
#include "tests/support/Session.h"

class CScriptedSession {
public:
    /// Plays a script named "s" over a canvas of two layers, the upper one with a red pixel at (1, 2), or
    /// without one. Returns the failure.
    std::string Play(const std::string& strScript, bool bCanvas = true) {
        CSessionPlatform session(m_parts, ParseScript(strScript, "s"));
        m_spCanvas = PlayOn(session.GetPlatform(), bCanvas);
        return session.GetFailure();
    }
    /// Returns the canvas.
    static boost::shared_ptr<CCanvasBuffer> PlayOn(const TPlatform& platform, bool bCanvas) {
        CSessionScope scope(platform);
        CreateMainFrame();
        if (bCanvas) OpenCanvas();
        const auto spCanvas = bCanvas ? g_lstCanvasFrame.front()->GetCanvas() : nullptr;
        scope.Run();
        return spCanvas;
    }
    /// Plays a script and records the session to `m_strRecord`.
    std::string Record(const std::string& strScript, bool bCanvas = true) {
        CSessionPlatform session(m_parts, ParseScript(strScript, "s"));
        m_strRecord.clear();
        CRecorder recorder(session.GetPlatform(),
                           [&](std::string_view str) { return m_strRecord += str, true; });
        session.SetWatch([&](const std::string& strLine) { recorder.NoteLine(strLine); });
        m_spCanvas = PlayOn(recorder.GetPlatform(), bCanvas);
        return session.GetFailure();
    }
    /// The coverage of a pixel of the active layer.
    int InkAt(CPoint pt) const {
        const auto spLayer = boost::dynamic_pointer_cast<CRasterLayerBuffer>(m_spCanvas->GetActiveLayer());
        const auto spTile = spLayer->GetRaster()->GetBlock(pt, false);
        return spTile ? spTile->GetPixelAlpha(pt - spTile->GetPosition()) : 0;
    }
    /// The bytes of the canvas's document.
    std::string GetDocument() {
        CMemoryFiles files;
        SaveDocument(*m_spCanvas, L"d.vlm", files);
        return files.m_mapFiles[L"d.vlm"];
    }

    boost::shared_ptr<CCanvasBuffer> m_spCanvas; ///< the last session's
    std::string m_strRecord;
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
