#include "app/session/DesktopSession.h"

#include "app/common/SettingsFolder.h"
#include "core/AppModule/AppModule.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/ImageFile/ImageFile.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "session/scripts/SessionPlatform.h"
#include "system/environment/Locations.h"
#include "system/environment/Modules.h"
#include "system/files/FilePath.h"

#include <stdexcept>

namespace {

/// Keeps the last active document. Idle work follows every step of a script, so that no change is missed.
class CLastDocument : public IIdleHandler, boost::noncopyable {
public:
    CLastDocument() { g_AppModule.GetMessageLoop()->AddIdleHandler(this); }
    ~CLastDocument() override { g_AppModule.GetMessageLoop()->RemoveIdleHandler(this); }
    bool OnIdle(int) override {
        if (const auto spFrame = g_wpActiveFrame.lock()) m_spCanvas = spFrame->GetCanvas();
        return false;
    }
    const boost::shared_ptr<CCanvasBuffer>& Get() const { return m_spCanvas; }

private:
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
};

void Export(const boost::shared_ptr<CCanvasBuffer>& spCanvas, const std::filesystem::path& path,
            IFileStore& files, IImageCodecs& codecs) {
    if (!spCanvas) throw std::runtime_error(Utf8Of(path) + ": no document was open");
    try {
        const std::wstring strPath = TextOf(path);
        if (IsProjectFile(strPath))
            SaveDocument(*spCanvas, strPath, files);
        else
            ExportImage(*spCanvas, strPath, files, codecs);
    } catch (const std::exception& e) {
        throw std::runtime_error(Utf8Of(path) + ": " + ToUtf8(DescribeException(e)));
    }
}

} // namespace

bool CanWriteDesktop(const std::string& strName, IImageCodecs& codecs) {
    const std::wstring strPath = FromUtf8(strName);
    return IsProjectFile(strPath) || CanExport(strPath, codecs);
}

void PlayDesktop(const TScript& script, const std::filesystem::path& pathIn,
                 const std::filesystem::path& pathOut, IFileStore& files, IImageCodecs& codecs) {
    const CSettingsFolder folder;
    CLocations locations;
    CModules modules;
    CSessionPlatform session({files, locations, modules, codecs}, script);
    CSessionScope scope(session.GetPlatform());
    CreateMainFrame();
    const CLastDocument last;
    if (!pathIn.empty()) g_pMainFrame->QueueFile(TextOf(pathIn));
    scope.Run();
    if (const std::string strFailure = session.GetFailure(); !strFailure.empty())
        throw std::runtime_error(strFailure);
    if (!pathOut.empty()) Export(last.Get(), pathOut, files, codecs);
}
