#include "tests/faults/FaultedSession.h"

#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/ImageFile/ImageFile.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "session/Player.h"
#include "session/SessionDialogs.h"
#include "session/SessionPlatform.h"
#include "system/FileStore.h"
#include "tests/faults/DocumentCheck.h"
#include "tests/faults/FailingDisk.h"
#include "tests/faults/FailingMemory.h"
#include "tests/faults/UnfailingCodecs.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/NoPlaces.h"
#include "tests/support/TempFolder.h"

#include <sstream>

namespace {

// The first two lines make the document.
constexpr char SCRIPT[] = R"({"answer":{"dialog":"CNewDialog","width":130,"height":100,"color":true}}
{"command":57600}
{"view":{"width":240,"height":180}}
{"set":{"section":"BrushParam\\RasterBrush","key":"BrushRadius","value":5}}
{"command":12818}
{"tool":2}
{"pen":{"x":80,"y":80,"pressure":300}}
{"pen":{"x":400,"y":300,"pressure":1000}}
{"pen":{"x":900,"y":500,"pressure":700}}
{"proximity":"leave"}
{"layer":{"name":"線","opacity":200}}
{"command":57643}
{"command":57644}
{"command":12900}
{"tool":8}
{"pen":{"x":900,"y":80,"pressure":800}}
{"pen":{"x":600,"y":400,"pressure":900}}
{"pen":{"x":100,"y":700,"pressure":0}}
{"pen":{"x":90,"y":720,"pressure":0}}
{"pen":{"x":60,"y":740,"pressure":0}}
{"pen":{"x":30,"y":760,"pressure":0}}
{"proximity":"leave"}
{"tool":3}
{"wait":1200}
{"mouse":{"message":"ldown","x":500,"y":100}}
{"mouse":{"x":500,"y":600}}
{"mouse":{"message":"lup","x":500,"y":600}}
{"save":"a.vlm"}
{"command":12904}
{"command":57643}
{"command":57644}
{"command":12904}
{"command":12905}
{"command":12901}
{"command":12902}
{"command":12900}
{"command":12903}
{"layer":{"select":[1]}}
{"command":12906}
{"command":13100}
{"command":57643}
{"command":57644}
{"command":13101}
{"command":13102}
{"command":57643}
{"command":57643}
{"command":57643}
{"command":57643}
{"command":57643}
{"command":57644}
{"command":12815}
{"command":12803}
{"panel":{"id":12815,"control":6,"value":200}}
{"command":12812}
{"command":12820}
{"command":12800}
{"tool":2}
{"pen":{"x":80,"y":600,"pressure":300}}
{"pen":{"x":700,"y":300,"pressure":1000}}
{"mouse":{"message":"rdown","x":0,"y":0}}
{"wait":700}
{"command":57602}
{"export":"a.png"}
{"export":"a.psd"}
{"save":"a.vlm"}
{"open":"a.png"}
{"close":"frame"}
{"open":"paths.vlm"}
{"layer":{"select":[0]}}
{"command":12906}
{"command":57643}
{"close":"frame"}
{"command":57643}
{"layer":{"opacity":77}}
{"save":"b.vlm"}
)";
constexpr size_t MAKING_LINES = 2;

struct CUnfailing {
    CUnfailingMemory memory;
    CUnfailingDisk disk;
};

// Boxes and file dialogs are the outside. Nothing is saved when a window closes.
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

// Settings are below the current folder.
struct CHere : CNoPlaces {
    CHere() { m_strAppData = L"."; }
    void MakeFolder(const std::wstring& strPath) override { std::filesystem::create_directories(strPath); }
};

// Settings that cannot be read are the default ones, and nobody is told.
struct CFiles : CFileStore {
    using CFileStore::CFileStore;
    TFileBytes Read(const std::wstring& strPath) override {
        std::optional<CUnfailingDisk> unfailing;
        if (strPath.ends_with(L".ini")) unfailing.emplace();
        return CFileStore::Read(strPath);
    }
};

/// `Fault` is what counts, and lets one fail.
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
        const TPlatform platform{p.queue, p.windows,   dialogs,     dialogs,  p.dialogs,
                                 p.files, p.locations, p.modules,   p.codecs, p.clock,
                                 p.keys,  p.clipboard, p.snapshots, p.pen};
        PlayOn(platform);
        if (!session.GetFailure().empty()) m_check.Complain(session.GetFailure());
        m_check.CheckBoxes(dialogs.m_vErrors, std::is_same_v<Fault, CFailingMemory>);
        return m_check.m_played;
    }

private:
    void PlayOn(const TPlatform& platform) {
        CSessionScope scope(platform);
        CreateMainFrame();
        g_Switches.m_nMaxHistory = 200; // undo is to lead back to the beginning
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
        script.vSteps.insert(script.vSteps.begin() + MAKING_LINES, {2, look([this] { m_check.Begin(); })});
        script.vSteps.push_back({99, look([this] { m_check.End(m_fnList()); })});
        return script;
    }

    template <class Function>
    static void Unfailing(const Function& fn) {
        const CUnfailing unfailing;
        fn();
    }

    // What a step throws it would have told in a box, had it come as a message.
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

TPlayed PlayWithFailingMemory(uint64_t uFail) {
    CMemoryFiles files;
    const auto list = [&] {
        std::vector<std::wstring> vNames;
        for (const auto& [strName, strBytes] : files.m_mapFiles) vNames.push_back(strName);
        return vNames;
    };
    return CFaultedSession<CFailingMemory>(files, list).Play(uFail);
}

TPlayed PlayOnFailingDisk(uint64_t uFail) {
    const CTempFolder folder;
    std::filesystem::current_path(folder.GetPath());
    CHere places;
    CFiles files(&places); // also in place
    const auto list = [&] {
        std::vector<std::wstring> vNames;
        for (const auto& entry : std::filesystem::directory_iterator(folder.GetPath()))
            vNames.push_back(entry.path().filename().wstring());
        return vNames;
    };
    return CFaultedSession<CFailingDisk>(files, list).Play(uFail);
}
