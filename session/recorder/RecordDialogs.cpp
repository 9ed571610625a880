#include "session/recorder/RecordDialogs.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Base/Text.h"
#include "core/Platform/Platform.h"
#include "session/recorder/Record.h"
#include "session/seam/ControlAct.h"

#include <nlohmann/json.hpp>

#include <map>
#include <memory>
#include <utility>

using nlohmann::json;

namespace {

const char* NameOf(EBoxAnswer answer) {
    switch (answer) {
    case EBoxAnswer::Ok:
        return "ok";
    case EBoxAnswer::Yes:
        return "yes";
    case EBoxAnswer::No:
        return "no";
    default:
        return "cancel";
    }
}

/// Stands before a dialog's model and writes what the user does with it.
class CRecordedModel : public CDialogModel {
public:
    CRecordedModel(CDialogModel& model, CRecord& record) : m_model(model), m_record(record) { Take(); }

    const char* GetName() const override { return m_model.GetName(); }
    std::wstring GetTitle() const override { return m_model.GetTitle(); }
    std::wstring GetExtraButton() const override { return m_model.GetExtraButton(); }
    bool HasCancel() const override { return m_model.HasCancel(); }
    bool OnControlMessage(const TMessage& msg) override {
        json act = WriteControlAct(msg, [this](int nView) {
            const auto it = m_mapViews.find(nView);
            return it == m_mapViews.end() ? CSize() : it->second->GetSize();
        });
        if (!act.empty()) {
            act["dialog"] = GetName();
            m_record.Write("reply", act);
        }
        const bool bWritten = m_model.OnControlMessage(msg);
        Take();
        return bWritten;
    }
    void OnPen(int nView, const TPenReport& report) override {
        const auto it = m_mapViews.find(nView);
        if (it != m_mapViews.end() && it->second->GetSize().cx > 0) {
            json act = WritePenAct(nView, report, it->second->GetSize());
            act["dialog"] = GetName();
            m_record.Write("reply", act);
        }
        m_model.OnPen(nView, report);
        Take();
    }
    void OnExtra() override {
        m_model.OnExtra();
        Take();
        m_bExtra = true;
    }
    bool OnOk(IWindow* pOwner) override {
        json reply{{"dialog", GetName()}};
        if (std::exchange(m_bExtra, false)) reply["extra"] = true;
        m_record.Write("reply", reply);
        const bool bOk = m_model.OnOk(pOwner);
        Take();
        return bOk;
    }

private:
    void Take() {
        m_vControls = m_model.m_vControls;
        for (TPanelControl& control : m_vControls) {
            if (!control.pView) continue;
            auto& pView = m_mapViews[control.nId];
            if (!pView) pView = std::make_unique<CSizedView>(*control.pView);
            control.pView = pView.get();
        }
    }

    CDialogModel& m_model;
    CRecord& m_record;
    std::map<int, std::unique_ptr<CSizedView>> m_mapViews;
    bool m_bExtra = false;
};

} // namespace

EBoxAnswer CRecordDialogs::Show(IWindow* pOwner, const std::wstring& strText, const std::wstring& strTitle,
                                EBoxKind kind) {
    // Written before it shows, so that the record of a crashed session includes it. Snapshot errors are
    // left out: a player's disk is another one.
    if (kind == EBoxKind::Error && strText != g_strSnapshotNotWritten)
        m_record.Write("expect", {{"box", ToUtf8(strText)}});
    const EBoxAnswer answer = m_platform.boxes.Show(pOwner, strText, strTitle, kind);
    if (kind != EBoxKind::Error) m_record.Write("reply", {{"box", NameOf(answer)}});
    return answer;
}

std::wstring CRecordDialogs::Ask(IWindow* pOwner, const TFileDialog& dialog) {
    const std::wstring strPath = m_platform.fileDialogs.Ask(pOwner, dialog);
    m_record.Write("reply", strPath.empty() ? json{{"cancel", true}} : json{{"file", ToUtf8(strPath)}});
    return strPath;
}

bool CRecordDialogs::Run(IWindow* pOwner, CDialogModel& dialog) {
    CRecordedModel model(dialog, m_record);
    const bool bOk = m_platform.dialogs.Run(pOwner, model);
    if (!bOk) m_record.Write("reply", {{"cancel", true}});
    return bOk;
}
