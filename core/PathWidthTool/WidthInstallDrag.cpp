#include "core/PathWidthTool/WidthInstallDrag.h"

#include <algorithm>

namespace {

constexpr uint64_t TENTHS = 10;
constexpr uint64_t UNITS_OF_PIXEL = 8;

template <class TDrag>
boost::shared_ptr<CPathRangeDrag> Make(const TRangePress& press) {
    return boost::make_shared<TDrag>(press);
}

// By EWidthType.
constexpr boost::shared_ptr<CPathRangeDrag> (*DRAGS[WIDTH_TYPES])(const TRangePress& press) = {
    Make<CWidth1InstallDrag>, Make<CWidth2InstallDrag>, Make<CWidth3InstallDrag>,
    Make<CWidth4InstallDrag>, Make<CWidthMultDrag>,     Make<CWidthAddDrag>,
    Make<CWidthEraseDrag>,    Make<CTransInstallDrag>,  Make<CAlphaInstallDrag>,
};

uint32_t Limited(uint64_t uWidth) {
    return static_cast<uint32_t>(std::min<uint64_t>(uWidth, PATH_WIDTH_LIMIT));
}

} // namespace

void CWidthRangeDrag::InstallAt(uint32_t t, const TSideWidths& auWidth) {
    const auto spPoint = MarkAt(t);
    for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT}) spPoint->WidthHandle(side)->Set(auWidth[side]);
}

TSideWidths CWidthRangeDrag::GetNewWidths() const {
    const uint32_t uWidth =
        Limited(uint64_t{GetStream().GetWidth()} * static_cast<uint64_t>(GetCoef()) / TENTHS);
    return {uWidth, uWidth};
}

uint32_t CWidthRangeDrag::PartAt(uint32_t tMin, uint32_t tMax, uint32_t uPart, uint32_t uParts) const {
    const uint64_t uMin = GetLine().LengthTo(tMin);
    const uint64_t uMax = GetLine().LengthTo(tMax);
    return GetLine().ParameterAt((uMin * (uParts - uPart) + uMax * uPart) / uParts);
}

void CWidth2InstallDrag::Install(uint32_t, uint32_t tMin, uint32_t tMax) {
    for (const uint32_t t : {tMin, tMax}) InstallAt(t, GetNewWidths());
}

void CWidth3InstallDrag::Install(uint32_t, uint32_t tMin, uint32_t tMax) {
    for (const uint32_t t : {tMin, tMax}) InstallOld(t);
    InstallAt(PartAt(tMin, tMax, 1, 2), GetNewWidths());
}

void CWidth4InstallDrag::Install(uint32_t, uint32_t tMin, uint32_t tMax) {
    for (const uint32_t t : {tMin, tMax}) InstallOld(t);
    for (const uint32_t uPart : {1u, 2u}) InstallAt(PartAt(tMin, tMax, uPart, 3), GetNewWidths());
}

TSideWidths CWidthChangeDrag::Changed(const TSideWidths& auWidth) const {
    return {Limited(Change(auWidth[SIDE_LEFT])), Limited(Change(auWidth[SIDE_RIGHT]))};
}

void CWidthChangeDrag::Install(uint32_t, uint32_t tMin, uint32_t tMax) {
    for (const uint32_t t : {tMin, tMax}) InstallOld(t);
    const auto vOld = GetOld(tMin, tMax);
    for (const auto& spOld : vOld) {
        const auto spNew = MarkAt(spOld->GetParameter()[STATE_COMMITTED]);
        // A width that stays keeps its multiple, of which it may be an approximation.
        for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
            spNew->SetMultiple(side, CDualValue<uint32_t>(spOld->GetMultiple(side)[STATE_COMMITTED]));
        InstallAt(spOld->GetParameter()[STATE_COMMITTED],
                  Changed({spOld->GetWidth(SIDE_LEFT, STATE_COMMITTED),
                           spOld->GetWidth(SIDE_RIGHT, STATE_COMMITTED)}));
    }
    if (!vOld.empty()) return;
    const uint32_t t = PartAt(tMin, tMax, 1, 2);
    InstallAt(t, Changed(GetStream().GetWidthsAt(t, STATE_COMMITTED)));
}

uint64_t CWidthMultDrag::Change(uint64_t uWidth) const {
    return uWidth * static_cast<uint64_t>(GetCoef()) / TENTHS;
}

uint64_t CWidthAddDrag::Change(uint64_t uWidth) const {
    return uWidth + static_cast<uint64_t>(GetCoef()) * UNITS_OF_PIXEL / TENTHS;
}

// A range whose end lies inside a stretch that is transparent already takes that stretch's own cut there.
void CTransInstallDrag::Install(uint32_t, uint32_t tMin, uint32_t tMax) {
    const auto isTransparent = [&](const auto& fnIsBefore) {
        return std::ranges::count_if(
                   GetStream().GetTransPoints(),
                   [&](const auto& spMark) { return fnIsBefore(spMark->GetParameter()[STATE_COMMITTED]); }) %
                   2 !=
               0;
    };
    if (!isTransparent([=](uint32_t t) { return t < tMin; })) MarkAt(tMin);
    if (!isTransparent([=](uint32_t t) { return t <= tMax; })) MarkAt(tMax);
}

void CAlphaInstallDrag::SetAlpha(uint32_t t, uint32_t uAlpha) {
    MarkAt(t)->SetAlpha(CDualValue<uint32_t>(uAlpha));
}

// Without a mark beside the range the rest of the stroke would follow it.
void CAlphaInstallDrag::KeepBeside(uint32_t t, uint32_t tBeside, uint32_t uAlpha) {
    const uint32_t uOld = GetStream().GetAlphaAt(tBeside, STATE_COMMITTED);
    if (t != tBeside && uOld != uAlpha && GetOld(std::min(t, tBeside), std::max(t, tBeside)).empty())
        SetAlpha(tBeside, uOld);
}

void CAlphaInstallDrag::Install(uint32_t, uint32_t tMin, uint32_t tMax) {
    const auto uAlpha = static_cast<uint32_t>(
        (std::clamp<uint64_t>(GetCoef(), 0, TENTHS) * CPathAlphaControlPoint::FULL_ALPHA + TENTHS / 2) /
        TENTHS);
    const uint64_t uAside = 2 * std::max<uint64_t>(GetStream().GetWidth(), UNITS_OF_PIXEL);
    const uint64_t uMin = GetLine().LengthTo(tMin);
    const uint64_t uMax = GetLine().LengthTo(tMax);
    if (uMin > uAside) KeepBeside(tMin, GetLine().ParameterAt(uMin - uAside), uAlpha);
    if (uMax + uAside < GetLine().LengthTo(GetLine().GetLast()))
        KeepBeside(tMax, GetLine().ParameterAt(uMax + uAside), uAlpha);
    for (const uint32_t t : {tMin, tMax}) SetAlpha(t, uAlpha);
}

boost::shared_ptr<CPathRangeDrag> BeginRangeDrag(int nType, const TRangePress& press) {
    if (!IsSupported(nType)) return {};
    auto spDrag = DRAGS[nType](press);
    spDrag->Begin();
    return spDrag;
}
