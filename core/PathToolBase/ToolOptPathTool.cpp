#include "core/PathToolBase/ToolOptPathTool.h"

#include "core/Base/Failure.h"
#include "core/PathToolBase/StrokeBlock.h"

#include <boost/pointer_cast.hpp>

namespace {

constexpr int FIRST_DEFAULT = 1200;
constexpr int FIRST_TARGET = 1220;

// The two kinds of new paths.
enum EOption : int { OPT_OPEN = 1201, OPT_CLOSED = 1202 };

} // namespace

CToolOptPathTool::CToolOptPathTool() {
    const auto addKind = [&](int nId, const wchar_t* pszLabel, const wchar_t* pszTip, const char* pszIcon) {
        m_vControls.push_back({.kind = TPanelControl::EKind::Toggle,
                               .nId = nId,
                               .strLabel = pszLabel,
                               .strText = pszTip,
                               .strIcon = pszIcon,
                               .bSameLine = nId == OPT_CLOSED});
    };
    addKind(OPT_OPEN, L"新しいパス", L"開いたパス (線)", "icons/path-open.svg");
    addKind(OPT_CLOSED, L"", L"閉じたパス (塗り)", "icons/path-closed.svg");
    // With labels the target's row of ends would make the panel wider than others.
    for (const auto& vBlock : {MakeStrokeBlock(FIRST_DEFAULT, L"- デフォルト -", false),
                               MakeStrokeBlock(FIRST_TARGET, L"- ターゲット -", true)})
        m_vControls.insert(m_vControls.end(), vBlock.begin(), vBlock.end());
}

void CToolOptPathTool::RefreshView(const boost::shared_ptr<CTools>& spTool) {
    const auto spPathTool = boost::dynamic_pointer_cast<CPathTool>(spTool);
    if (!spPathTool) throw internal_error(L"RefreshView: CPathTool not found");
    m_wpTool = spPathTool;
    const TPathParam& param = spPathTool->GetParam();
    Find(OPT_OPEN).nValue = param.bOpenPath;
    Find(OPT_CLOSED).nValue = !param.bOpenPath;
    const auto show = [&](int nFirstId, const TCommonParam* pParam) {
        ShowStrokeBlock([&](int nId) -> TPanelControl& { return Find(nId); }, nFirstId, pParam);
    };
    const TCommonParam defaults(param);
    show(FIRST_DEFAULT, &defaults);
    const TOpenPathPtr spTarget = spPathTool->GetTargetPath();
    const TCommonParam target = spTarget ? TCommonParam(ParamOf(spTarget->GetStream())) : TCommonParam();
    show(FIRST_TARGET, spTarget ? &target : nullptr);
}

void CToolOptPathTool::OnControl(const TPanelControl& control) {
    const auto spTool = m_wpTool.lock();
    if (!spTool) return;
    if (control.nId == OPT_OPEN || control.nId == OPT_CLOSED) {
        spTool->GetParam().bOpenPath = control.nId == OPT_OPEN;
    } else if (control.nId < FIRST_TARGET) {
        SetParam(spTool->GetParam(), control.nId - FIRST_DEFAULT, control);
    } else {
        const int nOption = control.nId - FIRST_TARGET;
        // A width that is typed or stepped through is one change.
        spTool->ChangeTarget([&](COpenPathStream& stream) { ApplyOption(stream, nOption, control); },
                             nOption == OPT_WIDTH);
    }
}
