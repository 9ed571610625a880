#include "core/PathCtlPtHandle/AnchorDrag.h"

#include "core/PathCtlPtHandle/PathHistory.h"

namespace {

constexpr unsigned FLAG_ALT = 4;

} // namespace

void CAnchorHandleDrag::OnDrag(CPoint delta, unsigned flags) {
    const auto live = [](CPoint pt) {
        CDualValue<CPoint> value;
        value[STATE_LIVE] = pt;
        return value;
    };
    m_spPoint->SetFore(live(delta));
    m_spPoint->SetBack(live(flags & FLAG_ALT ? CPoint{} : CPoint{-delta.x, -delta.y}));
    m_spObject->UpdateDrag();
}

void CAnchorInstallDrag::OnDrag(CPoint delta, unsigned) {
    CDualValue<CPoint> anchor = m_spPoint->GetAnchor();
    anchor[STATE_LIVE] = anchor[STATE_COMMITTED] + delta;
    m_spPoint->SetAnchor(anchor);
    m_spObject->UpdateDrag();
}

void CAnchorInstallDrag::OnCommit() {
    try {
        m_spObject->CommitDrag();
        m_fnRegister(boost::make_shared<CPathHistory>(L"制御点の追加", m_spObject, m_spBefore,
                                                      m_spObject->CreateSnapshot()));
    } catch (...) {
        m_spObject->ApplySnapshot(*m_spBefore);
        throw;
    }
}
