// User actions on a control or view of a panel or dialog, as scripts write them.
#pragma once

#include "core/Platform/Dialogs.h"
#include "session/seam/ScriptValue.h"

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <optional>

struct TControlAct {
    EMessage id = EMessage::PanelChange;
    int64_t wParam = 0;
    int64_t lParam = 0;
    std::wstring strText = {};
    CSize szView = {};                     ///< a view's size, which positions in it are about
    std::optional<TPenReport> report = {}; ///< a pen over a dialog's view, in place of a message

    /// As a window posts it.
    TMessage ToMessage(IWindow* pWindow) const { return {pWindow, id, wParam, lParam, strText}; }
};

/// True for an object that says such an act.
bool IsControlAct(const CScriptValue& value);
/// Reads the act; `pszOwner` is the key beside it that names the panel or dialog. Raises script_error.
TControlAct ReadControlAct(const CScriptValue& value, const char* pszOwner);
/// The members that say what a message tells, an empty object when it tells nothing of controls or the view
/// was never painted. `fnViewSize` gives the size that a view was painted in last.
nlohmann::json WriteControlAct(const TMessage& msg, const std::function<CSize(int nView)>& fnViewSize);
/// The same for a pen over a view of a dialog.
nlohmann::json WritePenAct(int nView, const TPenReport& report, CSize szView);
/// Has a view paint itself in that size, as it would on a glass; nothing for an id without a view.
void PaintView(const std::vector<TPanelControl>& vControls, int nId, CSize sz);

/// Stands before a view and knows the size that it was painted in last.
class CSizedView : public IPanelView {
public:
    explicit CSizedView(IPanelView& view) : m_view(view) {}
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override {
        m_size = paint.sz;
        m_view.OnPaint(target, paint);
    }
    CSize GetSize() const { return m_size; }

private:
    IPanelView& m_view;
    CSize m_size;
};
