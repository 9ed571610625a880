// A tool that does nothing, and what tools work with in a running session.
#pragma once

#include "core/RasterMove/CanvasClipboard.h"
#include "session/seam/SessionClipboard.h"
#include "tests/support/Session.h"

class CTestTool : public CTools {
public:
    using CTools::CTools;
    static constexpr TToolInfo INFO{0, L"", "", ECursor::Arrow};
    const TToolInfo& GetInfo() const override { return INFO; }
    bool IsEnabled() const override { return true; }
    void DrawOverlay(COverlay&, const TOverlayMapper&) const override {}
};

/// Outlives the tools that it makes active.
class CToolMaker {
public:
    template <class Tool>
    boost::shared_ptr<Tool> Use() {
        const TPlatform& p = g_AppModule.GetPlatform();
        m_pOutside.reset(new TToolOutside{p.clock, p.keys, m_random, g_AppModule.GetSettings(), g_Switches,
                                          p.codecs, m_contact, m_exchange, [](int) {}, [](EToolNotice) {}});
        const auto spTool = boost::make_shared<Tool>(*m_pOutside);
        g_wpActiveTool = spTool;
        return spTool;
    }
    CStrokeRandom m_random;

private:
    CPenContact m_contact;
    CSessionClipboard m_clipboard;
    CCanvasClipboard m_exchange{m_clipboard};
    std::unique_ptr<TToolOutside> m_pOutside;
};
