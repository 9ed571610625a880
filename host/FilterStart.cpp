#include "host/FilterStart.h"

#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "host/Abi/Types.h"
#include "host/Exchange.h"

namespace {

/// The canvas and its windows, in the order in which they are created.
struct TSession {
    CPoint ptHost; ///< the picture's corner in the host
    std::vector<THostChannel> lstHostChannels;
    boost::shared_ptr<CCanvasBuffer> spCanvas;
    boost::shared_ptr<CRasterLayerBuffer> spLayer;
    boost::shared_ptr<CCanvasFrame> spFrame;
};

/// Creates the canvas and its layer with the host's pixels. Returns 0 or the result that ends the call.
int16_t ReadPicture(TSession& session, IHostImage& host) {
    session.lstHostChannels = host.GetChannels();
    const CRect rc = host.GetRect();
    // A host without the suite gets that error first; only then an empty picture is an error.
    if (rc.IsEmpty()) return host.Open() ? hostabi::paramErr : hostabi::errPlugInHostInsufficient;
    session.ptHost = rc.TopLeft();
    session.spCanvas = CreateCanvas(rc.Size());
    session.spLayer = CreateRasterLayer(session.spCanvas);
    if (!host.Open()) return hostabi::errPlugInHostInsufficient;
    ReadHostChannels(*session.spLayer->GetRaster(), session.lstHostChannels, host, session.ptHost.x,
                     session.ptHost.y);
    return hostabi::noErr;
}

void OpenWindows(TSession& session) {
    CreateMainFrame();
    session.spCanvas->GetRoot().AddLayer(session.spLayer, -1);
    session.spCanvas->GetRoot().SetActiveChild(session.spLayer);
    session.spFrame = CreateCanvasFrame(session.spCanvas);
    g_pMainFrame->OpenFrame(session.spFrame);
    g_pMainFrame->QueueRecovery();
}

void WritePicture(TSession& session, IHostImage& host) {
    // Undo may have removed the layer with the host's picture: do not erase that in the host.
    if (session.spCanvas->GetRoot().GetChildren().empty()) return;
    WriteHostChannels(session.lstHostChannels, *session.spCanvas->Flatten(), host, session.ptHost.x,
                      session.ptHost.y);
}

} // namespace

int16_t FilterStart(IHostImage& host, const TPlatform& platform) {
    // A host whose own windows stay active could start a second session inside the first; there is only one
    // main frame, and the running session keeps it.
    if (g_AppModule.HasPlatform()) return hostabi::userCanceledErr;

    TSession session; // the first frame outlives the scope: it is destroyed last
    CSessionScope scope(platform);
    try {
        const int16_t nResult = ReadPicture(session, host);
        // A host that lacks the suite never gets further.
        if (nResult == hostabi::errPlugInHostInsufficient) scope.Abandon();
        if (nResult != hostabi::noErr) return nResult;
        OpenWindows(session);
        scope.Run();
        WritePicture(session, host);
        session.spLayer.reset();
        session.spCanvas.reset();
        session.lstHostChannels = {};
    } catch (const std::exception& e) {
        if (session.spFrame && session.spFrame->GetWindow())
            Guarded([&] {
                return platform.queue.Post({session.spFrame->GetWindow(), EMessage::Close}), true;
            });
        ReportException(e);
    }
    return hostabi::noErr;
}
