// The window of long work: text, bar, and a button to cancel.
#pragma once

#include "core/Platform/Progress.h"
#include "ui/base/QtScopes.h"
#include "ui/modal/QtModal.h"

#include <memory>
#include <optional>

/// Blocks the input of all other windows while it is open; the canvases keep their last picture.
class CQtProgress : public IProgressWindow {
public:
    CQtProgress();
    ~CQtProgress() override;

    bool Begin(const TLongWork& work) override;
    bool Show(const TProgressState& state) override;
    void End() override;

private:
    class CDialog;

    void Open();

    TLongWork m_work;
    std::unique_ptr<CModalOwner<CDialog>> m_pDialog; ///< null until it is first shown
    std::optional<CWorkScope> m_scope;
};
