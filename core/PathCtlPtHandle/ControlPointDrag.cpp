#include "core/PathCtlPtHandle/ControlPointDrag.h"

#include "core/Base/Failure.h"
#include "core/PathObject/PathObjects.h"

#include <boost/pointer_cast.hpp>

#include <cmath>

namespace {

constexpr unsigned FLAG_ALT = 4; ///< breaks the symmetry of a drag

using TLabel = const wchar_t*;

/// The dragged part of a point; the number of its label.
enum EDragKind : int { DRAG_HANDLE = 1, DRAG_ANCHOR = 2, DRAG_END = 3 };

// The labels of the actions, by class of point (the tag of its stored form) and kind of drag.
constexpr struct {
    uint32_t uPoint;
    int kind;
    TLabel pszLabel;
} DRAG_LABELS[] = {
    {CPathControlPoint::CHUNK_TAG, DRAG_HANDLE, L"ハンドルの移動"},
    {CPathControlPoint::CHUNK_TAG, DRAG_ANCHOR, L"アンカーの移動"},
    {CPathWidthControlPoint::CHUNK_TAG, DRAG_ANCHOR, L"太さ記号の移動"},
    {CPathWidthControlPoint::CHUNK_TAG, DRAG_HANDLE, L"太さ記号の変形"},
    {CPathTransControlPoint::CHUNK_TAG, DRAG_ANCHOR, L"透明化制御点の移動"},
    {CPathTransControlPoint::CHUNK_TAG, DRAG_HANDLE, L"透明化角度の変更"},
    {CPathAlphaControlPoint::CHUNK_TAG, DRAG_ANCHOR, L"不透明度記号の移動"},
    {CPathAlphaControlPoint::CHUNK_TAG, DRAG_HANDLE, L"不透明度記号の変形"},
    {COpenPathRoundTerm::CHUNK_TAG, DRAG_END, L"丸い先端の変形"},
    {COpenPathFlatTerm::CHUNK_TAG, DRAG_END, L"平らな先端の変形"},
};

// Null for a drag that no point has.
constexpr TLabel DragLabel(uint32_t uPoint, int kind) {
    for (const auto& row : DRAG_LABELS)
        if (row.uPoint == uPoint && row.kind == kind) return row.pszLabel;
    return nullptr;
}

// The same point after undo steps that recreated it: ends are replaced when their type changes.
boost::shared_ptr<CPathControlPointBase> Present(const CPathObject&,
                                                 const boost::shared_ptr<CPathControlPointBase>& spPoint) {
    return spPoint;
}
boost::shared_ptr<CPathControlPointBase> Present(const COpenPathObject& path,
                                                 const boost::shared_ptr<COpenPathTermBase>& spTerm) {
    return path.GetStream().GetTerm(spTerm->IsBegin());
}

// A point was dragged. Its stored form holds all that a drag changes, the opposite handle too.
template <class TObject, class TPoint, int kind>
class CDragHistory : public CHistory {
public:
    CDragHistory(const boost::shared_ptr<TObject>& spObject, const boost::shared_ptr<TPoint>& spPoint,
                 const CSerializer& before, const CSerializer& after)
        : CHistory(LABEL), m_spObject(spObject), m_spPoint(spPoint), m_before(before), m_after(after) {}

    void Undo() override { Write(m_before); }
    void Redo() override { Write(m_after); }

private:
    static constexpr TLabel LABEL = DragLabel(TPoint::CHUNK_TAG, kind);
    static_assert(LABEL);

    void Write(const CSerializer& values) {
        CDeserializer reader(values);
        Present(*m_spObject, m_spPoint)->Deserialize(reader);
        m_spObject->Update();
    }

    boost::shared_ptr<TObject> m_spObject;
    boost::shared_ptr<TPoint> m_spPoint;
    CSerializer m_before;
    CSerializer m_after;
};

// The base of drags of one point: the action and the part.
template <class TObject, class TPoint, int kind>
class CPointDrag : public CVectorHandleImpl<TObject> {
public:
    CPointDrag(const boost::shared_ptr<TObject>& spObject, const boost::shared_ptr<TPoint>& spPoint,
               EPathHit part, const TRegisterHistory& fnRegister)
        : CVectorHandleImpl<TObject>(spObject, fnRegister), m_spPoint(spPoint), m_part(part),
          m_before(spPoint->Serialize()) {}

    void OnCommit() override {
        if (!m_bChanged) return;
        this->m_spObject->CommitDrag();
        const CSerializer after = m_spPoint->Serialize();
        if (after.GetPayload() == m_before.GetPayload()) return;
        const auto spHistory = boost::make_shared<CDragHistory<TObject, TPoint, kind>>(
            this->m_spObject, m_spPoint, m_before, after);
        try {
            this->m_fnRegister(spHistory);
        } catch (...) {
            spHistory->Undo();
            throw;
        }
    }
    TPathHit GetPart() const override { return {m_part, m_spPoint}; }

protected:
    // Called after the live value was changed.
    void UpdateDrag() {
        m_bChanged = true;
        this->m_spObject->UpdateDrag();
    }

    boost::shared_ptr<TPoint> m_spPoint;

private:
    bool m_bChanged = false;
    EPathHit m_part;
    CSerializer m_before;
};

// The drag of a value that a control point hands out as a position.
template <class TObject, class TPoint, int kind>
class CControlPointDragImpl : public CPointDrag<TObject, TPoint, kind> {
public:
    using TDrag = boost::function<boost::shared_ptr<CDualValue<CPoint>>(bool bSymmetric)>;

    CControlPointDragImpl(const boost::shared_ptr<TObject>& spObject,
                          const boost::shared_ptr<TPoint>& spPoint, EPathHit part,
                          const TRegisterHistory& fnRegister, bool bSymmetric, TDrag fnDrag)
        : CPointDrag<TObject, TPoint, kind>(spObject, spPoint, part, fnRegister), m_bSymmetric(bSymmetric),
          m_fnDrag(std::move(fnDrag)) {}

    void OnDrag(CPoint delta, unsigned flags) override {
        if (flags & FLAG_ALT) m_bSymmetric = false; // for the rest of this drag
        {
            const auto spValue = m_fnDrag(m_bSymmetric);
            (*spValue)[STATE_LIVE] = (*spValue)[STATE_COMMITTED] + delta;
        }
        this->UpdateDrag();
    }

private:
    bool m_bSymmetric;
    TDrag m_fnDrag;
};

// Pulls both handles out of an anchor, opposite to each other.
class CAnchorPullDrag : public CPointDrag<CPathObject, CPathControlPoint, DRAG_HANDLE> {
public:
    using CPointDrag::CPointDrag;

    void OnDrag(CPoint delta, unsigned) override {
        CDualValue<CPoint> back(m_spPoint->GetBack(STATE_COMMITTED));
        CDualValue<CPoint> fore(m_spPoint->GetFore(STATE_COMMITTED));
        back[STATE_LIVE] = {-delta.x, -delta.y};
        fore[STATE_LIVE] = delta;
        m_spPoint->SetBack(back);
        m_spPoint->SetFore(fore);
        UpdateDrag();
    }
};

// Changes the width of the side to which a width mark is pulled first, by a tenth of the movement.
class CMarkSideDrag : public CPointDrag<COpenPathObject, CPathWidthControlPoint, DRAG_HANDLE> {
public:
    using CPointDrag::CPointDrag;

    void OnDrag(CPoint delta, unsigned) override {
        const CPoint normal = Rot90(m_spPoint->GetTangent(STATE_COMMITTED));
        const int64_t nLength = LengthRound(normal);
        if (nLength == 0) return;
        const int64_t nToLeft = Dot(delta, normal) / nLength;
        if (!m_bChosen && nToLeft == 0) return;
        if (!m_bChosen) m_side = nToLeft > 0 ? SIDE_LEFT : SIDE_RIGHT;
        m_bChosen = true;
        const int64_t nGrowth =
            (m_side == SIDE_LEFT ? nToLeft : -nToLeft) / CPathWidthControlPoint::SHOWN_TIMES;
        {
            const auto spWidth = m_spPoint->WidthHandle(m_side);
            (*spWidth)[STATE_LIVE] =
                static_cast<uint32_t>(std::max<int64_t>((*spWidth)[STATE_COMMITTED] + nGrowth, 0));
        }
        UpdateDrag();
    }

private:
    EPathSide m_side = SIDE_LEFT;
    bool m_bChosen = false;
};

boost::shared_ptr<CVectorHandle> DragAnchorOf(const boost::shared_ptr<CPathObject>& spPath,
                                              const boost::shared_ptr<CPathControlPoint>& spPoint,
                                              EPathHit part, unsigned flags,
                                              const TRegisterHistory& fnRegister) {
    if (part == HIT_ANCHOR && (flags & FLAG_ALT))
        return boost::make_shared<CAnchorPullDrag>(spPath, spPoint, HIT_FORE, fnRegister);
    if (part == HIT_ANCHOR)
        return boost::make_shared<CControlPointDragImpl<CPathObject, CPathControlPoint, DRAG_ANCHOR>>(
            spPath, spPoint, part, fnRegister, true,
            [spPoint](bool bSymmetric) { return spPoint->DragAnchorPoint(bSymmetric); });
    // A corner stays a corner.
    const bool bSymmetric = AreOpposite(spPoint->GetBack(STATE_COMMITTED), spPoint->GetFore(STATE_COMMITTED));
    return boost::make_shared<CControlPointDragImpl<CPathObject, CPathControlPoint, DRAG_HANDLE>>(
        spPath, spPoint, part, fnRegister, bSymmetric, [spPoint, part](bool b) {
            return part == HIT_BACK ? spPoint->DragBackHandle(b) : spPoint->DragForeHandle(b);
        });
}

// A mark whose handles LEFT and, if any, RIGHT stand beside the line.
template <class TPoint, int kind>
boost::shared_ptr<CVectorHandle> DragSideOf(const boost::shared_ptr<COpenPathObject>& spPath,
                                            const boost::shared_ptr<TPoint>& spPoint, EPathHit part,
                                            const TRegisterHistory& fnRegister) {
    return boost::make_shared<CControlPointDragImpl<COpenPathObject, TPoint, kind>>(
        spPath, spPoint, part, fnRegister, true, [=](bool bBoth) {
            if constexpr (std::is_same_v<TPoint, CPathTransControlPoint>)
                return spPoint->DragHandleImpl(part == HIT_LEFT);
            else if constexpr (std::is_same_v<TPoint, CPathAlphaControlPoint>)
                return spPoint->DragHandleImpl();
            else
                return spPoint->DragHandleImpl(part == HIT_LEFT, bBoth);
        });
}

template <class TPoint>
boost::shared_ptr<CVectorHandle> DragMarkOf(const boost::shared_ptr<COpenPathObject>& spPath,
                                            const boost::shared_ptr<TPoint>& spPoint, EPathHit part,
                                            const TRegisterHistory& fnRegister) {
    if (part != HIT_ANCHOR) return DragSideOf<TPoint, DRAG_HANDLE>(spPath, spPoint, part, fnRegister);
    return boost::make_shared<CControlPointDragImpl<COpenPathObject, TPoint, DRAG_ANCHOR>>(
        spPath, spPoint, part, fnRegister, true,
        [spPoint](bool bSymmetric) { return spPoint->DragAnchorPoint(bSymmetric); });
}

} // namespace

bool AreOpposite(CPoint back, CPoint fore) {
    if (IsZero(back) || IsZero(fore)) return true;
    constexpr double TWO_UNITS = 2;
    constexpr double SINE_OF_2_DEGREES = 0.034899496702500972;
    const double dBack = std::sqrt(static_cast<double>(Dot(back, back)));
    const double dFore = std::sqrt(static_cast<double>(Dot(fore, fore)));
    if (Dot(back, fore) >= 0) return false;
    // How far the shorter handle's end lies beside the line of the longer one.
    const double dCross = std::abs(static_cast<double>(int64_t{back.x} * fore.y - int64_t{back.y} * fore.x));
    return dCross <= SINE_OF_2_DEGREES * dBack * dFore || dCross <= TWO_UNITS * std::max(dBack, dFore);
}

boost::shared_ptr<CVectorHandle> CreateHandle(const boost::shared_ptr<CPathObject>& spPath,
                                              const TPathHit& hit, unsigned flags,
                                              const TRegisterHistory& fnRegister) {
    if (const auto spAnchor = boost::dynamic_pointer_cast<CPathControlPoint>(hit.spPoint))
        return DragAnchorOf(spPath, spAnchor, hit.kind, flags, fnRegister);
    const auto spOpen = boost::dynamic_pointer_cast<COpenPathObject>(spPath);
    if (!spOpen || !hit.spPoint) return {};
    if (const auto spWidth = boost::dynamic_pointer_cast<CPathWidthControlPoint>(hit.spPoint)) {
        if (hit.kind == HIT_ANCHOR && (flags & FLAG_ALT))
            return boost::make_shared<CMarkSideDrag>(spOpen, spWidth, HIT_ANCHOR, fnRegister);
        return DragMarkOf(spOpen, spWidth, hit.kind, fnRegister);
    }
    if (const auto spTrans = boost::dynamic_pointer_cast<CPathTransControlPoint>(hit.spPoint))
        return DragMarkOf(spOpen, spTrans, hit.kind, fnRegister);
    if (const auto spAlpha = boost::dynamic_pointer_cast<CPathAlphaControlPoint>(hit.spPoint))
        return DragMarkOf(spOpen, spAlpha, hit.kind, fnRegister);
    if (const auto spFlat = boost::dynamic_pointer_cast<COpenPathFlatTerm>(hit.spPoint))
        return DragSideOf<COpenPathFlatTerm, DRAG_END>(spOpen, spFlat, hit.kind, fnRegister);
    if (const auto spRound = boost::dynamic_pointer_cast<COpenPathRoundTerm>(hit.spPoint))
        return boost::make_shared<CControlPointDragImpl<COpenPathObject, COpenPathRoundTerm, DRAG_END>>(
            spOpen, spRound, hit.kind, fnRegister, true,
            [spRound](bool bSymmetric) { return spRound->DragGrowHandle(bSymmetric); });
    return {};
}
