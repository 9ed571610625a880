#include "core/MainFrame/CommandState.h"

#include "core/Platform/Menu.h"

void TSetMenuState::operator()(int nId, const TCommandState& state) const {
    look.SetState(nId, state.bEnabled, state.bChecked);
}

void TSetButtonState::operator()(int nId, const TCommandState& state) const {
    look.SetState(nId, state.bEnabled, state.bChecked);
}
