#include "session/RecordDialogs.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Base/Text.h"
#include "core/Platform/Platform.h"
#include "session/Record.h"

#include <nlohmann/json.hpp>

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

/// Stands before a dialog's model and writes what the fields hold whenever OK is pressed.
class CRecordedModel : public CDialogModel {
public:
    CRecordedModel(CDialogModel& model, CRecord& record) : m_model(model), m_record(record) { Take(); }

    const char* GetName() const override { return m_model.GetName(); }
    std::wstring GetTitle() const override { return m_model.GetTitle(); }
    std::wstring GetExtraButton() const override { return m_model.GetExtraButton(); }
    bool HasCancel() const override { return m_model.HasCancel(); }
    void OnExtra() override {
        std::swap(m_model.m_vFields, m_vFields);
        m_model.OnExtra();
        m_vFields = m_model.m_vFields;
        m_bExtra = true;
    }
    bool OnOk(IWindow* pOwner) override {
        WriteReply();
        m_model.m_vFields = m_vFields;
        const bool bOk = m_model.OnOk(pOwner);
        Take();
        return bOk;
    }

private:
    void Take() {
        m_vFields = m_vBefore = m_model.m_vFields;
        m_bExtra = false;
    }
    void WriteReply() {
        json reply{{"dialog", GetName()}};
        if (m_bExtra) reply["extra"] = true;
        for (size_t idx = 0; idx < m_vFields.size(); ++idx) {
            const TDialogField &field = m_vFields[idx], &before = m_vBefore[idx];
            if (field.bChecked != before.bChecked) reply[field.strName] = field.bChecked;
            if (field.strText != before.strText) reply[field.strName] = ToUtf8(field.strText);
        }
        m_record.Write("reply", reply);
    }

    CDialogModel& m_model;
    CRecord& m_record;
    std::vector<TDialogField> m_vBefore; ///< what the fields held before the user
    bool m_bExtra = false;
};

} // namespace

EBoxAnswer CRecordDialogs::Show(IWindow* pOwner, const std::wstring& strText, const std::wstring& strTitle,
                                EBoxKind kind) {
    // Written before it shows: a session that breaks off meanwhile has told what the user saw. A player's
    // disk is another one.
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
