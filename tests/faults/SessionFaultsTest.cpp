#include "tests/faults/DocumentCheck.h"
#include "tests/faults/FailingDisk.h"
#include "tests/faults/UnfailingCodecs.h"
#include "tests/session/ScriptLines.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/NoPlaces.h"
#include "tests/support/Session.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

std::string Mouse(const char* pszWhat, int x, int y) {
    return ScriptLine("mouse", {{"message", pszWhat}, {"x", x}, {"y", y}});
}
std::string Save(const char* pszFile) { return ScriptLine("save", pszFile); }
std::string Open(const char* pszFile) { return ScriptLine("open", pszFile); }
std::string SelectLayer(int idx) { return ScriptLine("layer", {{"select", {idx}}}); }
const std::string CLOSE = ScriptLine("close", "frame");

// These two lines create the document.
const std::string MAKING =
    R"({"answer":{"dialog":"CNewDialog","width":130,"height":100,"color":true}}
)" + Commands({ID_FILE_NEW});
const std::string SCRIPT =
    MAKING + ScriptLine("view", {{"width", 240}, {"height", 180}}) + SetBrush("BrushRadius", 5) +
    Commands({ID_PREDICTION_FIRST + 2}) + Tool(TOOL_BRUSH) +
    PenAt({{80, 80, 300}, {400, 300, 1000}, {900, 500, 700}}) + Proximity("leave") +
    ScriptLine("layer", {{"name", "線"}, {"opacity", 200}}) +
    Commands({ID_EDIT_UNDO, ID_EDIT_REDO, ID_LAYER_NEW_RASTER}) + Tool(TOOL_PENCIL) +
    PenAt({{900, 80, 800}, {600, 400, 900}, {100, 700, 0}, {90, 720, 0}, {60, 740, 0}, {30, 760, 0}}) +
    Proximity("leave") + Tool(TOOL_ERASER) + Wait(1200) + Mouse("ldown", 500, 100) + Mouse("move", 500, 600) +
    Mouse("lup", 500, 600) + Save("a.vlm") +
    Commands({ID_LAYER_CLIPPING, ID_EDIT_UNDO, ID_EDIT_REDO, ID_LAYER_CLIPPING, ID_LAYER_MERGE_DOWN,
              ID_LAYER_NEW_VECTOR, ID_LAYER_NEW_SET, ID_LAYER_NEW_RASTER, ID_LAYER_DELETE}) +
    SelectLayer(1) +
    Commands({ID_LAYER_RASTERIZE, ID_MODE_GREY, ID_EDIT_UNDO, ID_EDIT_REDO, ID_MODE_RGB, ID_MODE_LIGHT,
              ID_EDIT_UNDO, ID_EDIT_UNDO, ID_EDIT_UNDO, ID_EDIT_UNDO, ID_EDIT_UNDO, ID_EDIT_REDO,
              ID_PANEL_COLOR, ID_PANEL_TOOL_OPTION}) +
    ScriptLine("panel", {{"id", ID_PANEL_COLOR}, {"control", 6}, {"value", 200}}) +
    Commands({ID_VIEW_ROTATE_RIGHT, ID_ZOOM_IN, ID_VIEW_NEW}) + Tool(TOOL_BRUSH) +
    PenAt({{80, 600, 300}, {700, 300, 1000}}) + Mouse("rdown", 0, 0) + Wait(700) + Commands({ID_FILE_CLOSE}) +
    ScriptLine("export", "a.png") + ScriptLine("export", "a.psd") + ScriptLine("export", "a.svg") +
    Save("a.vlm") + Open("a.png") + CLOSE + Open("paths.vlm") + SelectLayer(0) +
    Commands({ID_LAYER_RASTERIZE, ID_EDIT_UNDO}) + CLOSE + Commands({ID_EDIT_UNDO}) +
    ScriptLine("layer", {{"opacity", 77}}) + Save("b.vlm");

struct CUnfailing {
    CUnfailingMemory memory;
    CUnfailingDisk disk;
};

template <class Function>
void Unfailing(const Function& fn) {
    const CUnfailing unfailing;
    fn();
}

// Boxes and file dialogs are part of the platform. Nothing is saved when a window closes.
class CUnfailingDialogs : public IMessageBoxes, public IFileDialogs {
public:
    explicit CUnfailingDialogs(const TPlatform& platform) : m_platform(platform) {}
    EBoxAnswer Show(IWindow*, const std::wstring& strText, const std::wstring&, EBoxKind kind) override {
        const CUnfailing unfailing;
        if (kind == EBoxKind::Error) m_vErrors.push_back(strText);
        return kind == EBoxKind::YesNoCancelWarning ? EBoxAnswer::No : EBoxAnswer::Ok;
    }
    std::wstring Ask(IWindow* pOwner, const TFileDialog& dialog) override {
        const CUnfailing unfailing;
        return m_platform.fileDialogs.Ask(pOwner, dialog);
    }
    std::vector<std::wstring> m_vErrors;

private:
    const TPlatform& m_platform;
};

// Settings are in the current folder.
struct CHere : CNoPlaces {
    CHere() { m_strAppData = L"."; }
    void MakeFolder(const std::wstring& strPath) override { std::filesystem::create_directories(strPath); }
};

// Settings that cannot be read are replaced by the defaults without a report.
struct CFiles : CFileStore {
    using CFileStore::CFileStore;
    TFileBytes Read(const std::wstring& strPath) override {
        std::optional<CUnfailingDisk> unfailing;
        if (strPath.ends_with(L".ini")) unfailing.emplace();
        return CFileStore::Read(strPath);
    }
};

/// `Fault` counts the operations and makes one of them fail.
template <class Fault>
class CFaultedSession {
public:
    using TNames = std::vector<std::wstring>;

    CFaultedSession(IFileStore& files, std::function<TNames()> fnList)
        : m_files(files), m_fnList(std::move(fnList)) {
        const auto spPaths = CreateCanvas({60, 50});
        const auto spLayer = CreateVectorLayer(spPaths);
        spLayer->InsertPath(MakeRectPath({{5, 5}, {40, 30}}));
        spPaths->GetRoot().AddLayer(spLayer, -1, false);
        spPaths->GetRoot().SetActiveChild(spLayer);
        SaveDocument(*spPaths, L"paths.vlm", m_files);
    }

    TPlayed Play(uint64_t uFail) {
        m_uFail = uFail;
        CHere places;
        CSessionPlatform session({m_files, places, places, m_codecs}, MakeScript());
        const TPlatform& p = session.GetPlatform();
        CUnfailingDialogs dialogs(p);
        const TPlatform platform{p.queue,     p.windows, dialogs,    dialogs,  p.dialogs, p.files,
                                 p.locations, p.modules, p.codecs,   p.clock,  p.keys,    p.clipboard,
                                 p.snapshots, p.pen,     p.progress, p.manual, p.recent};
        PlayOn(platform);
        if (!session.GetFailure().empty()) m_check.Complain(session.GetFailure());
        m_check.CheckBoxes(dialogs.m_vErrors, std::is_same_v<Fault, CFailingMemory>);
        return m_check.m_played;
    }

private:
    void PlayOn(const TPlatform& platform) {
        CSessionScope scope(platform);
        CreateMainFrame();
        g_Switches.m_nMaxHistory = 200; // undo must lead back to the beginning
        const Fault fault(m_uFail);
        try {
            scope.Run();
        } catch (const std::exception& e) {
            const CUnfailing unfailing;
            m_check.Complain("the session breaks off: " + ToUtf8(DescribeException(e)));
        }
        m_check.m_played.uCount = Fault::GetCount();
    }

    TScript MakeScript() {
        TScript script = ParseScript(SCRIPT, "session");
        std::istringstream lines(SCRIPT);
        std::string strLine;
        for (TStep& step : script.vSteps) {
            std::getline(lines, strLine);
            const bool bAnswer = strLine.starts_with("{\"answer\"");
            step.fnPlay = [this, bAnswer, fnPlay = step.fnPlay](CPlayer& player) {
                if (bAnswer)
                    Unfailing([&] { fnPlay(player); });
                else
                    PlayStep(fnPlay, player);
            };
        }
        const auto look = [this](auto fn) { return [this, fn](CPlayer&) { Unfailing(fn); }; };
        script.vSteps.insert(script.vSteps.begin() + std::ranges::count(MAKING, '\n'),
                             {2, look([this] { m_check.Begin(); })});
        script.vSteps.push_back({99, look([this] { m_check.End(m_fnList()); })});
        return script;
    }

    // An exception of a step would have been reported in a box, had the step been a message.
    void PlayStep(const TAction& fnPlay, CPlayer& player) {
        try {
            fnPlay(player);
        } catch (const std::exception& e) {
            const CUnfailing unfailing;
            m_check.m_played.bTold = true;
            player.GetStage().dialogs.Clear();
            if (m_uFail == 0) m_check.Complain(e.what());
        }
    }

    IFileStore& m_files;
    const std::function<TNames()> m_fnList;
    CUnfailingCodecs m_codecs{m_files};
    uint64_t m_uFail = 0;
    CDocumentCheck m_check{m_files, m_codecs};
};

} // namespace

TEST(Faults, ASessionSurvivesEveryFailedAllocation) {
    ExpectSurvival(80, [](uint64_t uFail) {
        CMemoryFiles files;
        return CFaultedSession<CFailingMemory>(files,
                                               [&] {
                                                   std::vector<std::wstring> vNames;
                                                   for (const auto& [strName, strBytes] : files.m_mapFiles)
                                                       vNames.push_back(strName);
                                                   return vNames;
                                               })
            .Play(uFail);
    });
}

// The current folder becomes a temporary one of the session.
TEST(Faults, ASessionSurvivesEveryFailureOfTheDisk) {
    ExpectSurvival(80, [](uint64_t uFail) {
        const CTempFolder folder;
        std::filesystem::current_path(folder.GetPath());
        CHere places;
        CFiles files(&places); // also writes in place
        return CFaultedSession<CFailingDisk>(files,
                                             [&] {
                                                 std::vector<std::wstring> vNames;
                                                 for (const auto& entry :
                                                      std::filesystem::directory_iterator(folder.GetPath()))
                                                     vNames.push_back(entry.path().filename().wstring());
                                                 return vNames;
                                             })
            .Play(uFail);
    });
}
