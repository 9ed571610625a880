#include "core/PathWidthTool/PathMarks.h"

#include "core/History/SymmetricHistory.h"

#include <algorithm>

namespace {

// The history of a set: the swapped sets keep their points, so that later actions find theirs after an undo.
template <class TPoint>
struct TSetSwap {
    using TMarks = TPathMarks<TPoint>;

    // If that fails nothing is exchanged, and the next call can succeed.
    static void Swap(const boost::shared_ptr<COpenPathObject>& spPath, TMarks* pMarks) {
        if (!spPath) return;
        CDualValue<TMarks> marks(*pMarks);
        COpenPathStream& stream = spPath->GetStream();
        stream.Exchange(marks);
        try {
            spPath->Update();
        } catch (...) {
            stream.Exchange(marks);
            spPath->Update();
            throw;
        }
        pMarks->swap(marks[STATE_COMMITTED]);
    }
    static size_t Count(const boost::shared_ptr<COpenPathObject>& spPath, const TMarks& vMarks) {
        if (!spPath) return 0;
        const TMarks& vPresent = spPath->GetStream().GetMarks<TPoint>();
        const auto isShared = [&](const auto& spMark) { return std::ranges::count(vPresent, spMark) != 0; };
        const auto nShared = std::ranges::count_if(vMarks, isShared);
        return (vMarks.size() - static_cast<size_t>(nShared)) * sizeof(TPoint);
    }
};

// The values of the marks, independent of their order and of the objects.
template <class TPoint>
std::vector<TBytes> ContentOf(const TPathMarks<TPoint>& vMarks) {
    std::vector<TBytes> vContent;
    for (const auto& spMark : vMarks) vContent.push_back(spMark->Serialize().GetPayload());
    std::ranges::sort(vContent);
    return vContent;
}

template <class TPoint>
void RemoveFrom(const boost::shared_ptr<COpenPathObject>& spPath, TPathMarks<TPoint> vMarks,
                const wchar_t* pszLabel, const TRegisterHistory& fnRegister) {
    TPathMarks<TPoint> vKept = spPath->GetStream().GetMarks<TPoint>();
    std::erase_if(vKept, [&](const auto& spMark) { return std::ranges::count(vMarks, spMark) != 0; });
    spPath->GetStream().SetLiveMarks(vKept);
    CommitMarks<TPoint>(spPath, pszLabel, fnRegister);
}

} // namespace

template <class TPoint>
void CommitMarks(const boost::shared_ptr<COpenPathObject>& spPath, const wchar_t* pszLabel,
                 const TRegisterHistory& fnRegister) {
    using THistory = CSymmetricHistory<COpenPathObject, TPathMarks<TPoint>>;
    const COpenPathStream& stream = spPath->GetStream();
    const TPathMarks<TPoint> vBefore = stream.GetMarks<TPoint>();
    if (ContentOf(vBefore) == ContentOf(stream.GetMarks<TPoint>(STATE_LIVE))) return spPath->CancelDrag();
    const auto spHistory = boost::make_shared<THistory>(
        pszLabel, spPath, vBefore,
        typename THistory::TFunctions{TSetSwap<TPoint>::Swap, TSetSwap<TPoint>::Count});
    try {
        spPath->CommitDrag();
        fnRegister(spHistory);
    } catch (...) {
        spHistory->Undo();
        throw;
    }
}

template void CommitMarks<CPathWidthControlPoint>(const boost::shared_ptr<COpenPathObject>&, const wchar_t*,
                                                  const TRegisterHistory&);
template void CommitMarks<CPathTransControlPoint>(const boost::shared_ptr<COpenPathObject>&, const wchar_t*,
                                                  const TRegisterHistory&);
template void CommitMarks<CPathAlphaControlPoint>(const boost::shared_ptr<COpenPathObject>&, const wchar_t*,
                                                  const TRegisterHistory&);

bool RemoveMark(const boost::shared_ptr<COpenPathObject>& spPath, const CPathControlPointBase& mark,
                const TRegisterHistory& fnRegister) {
    const COpenPathStream& stream = spPath->GetStream();
    const auto isMark = [&](const auto& spMark) { return spMark.get() == &mark; };
    const auto removeSingle = [&]<class TPoint>(const TPathMarks<TPoint>& vMarks, const wchar_t* pszLabel) {
        const auto it = std::ranges::find_if(vMarks, isMark);
        if (it == vMarks.end()) return false;
        RemoveFrom<TPoint>(spPath, {*it}, pszLabel, fnRegister);
        return true;
    };
    if (removeSingle(stream.GetWidthPoints(), L"太さ制御点の削除") ||
        removeSingle(stream.GetAlphaPoints(), L"不透明度記号の削除"))
        return true;
    const auto vTrans = SortedByParameter(stream.GetTransPoints(), STATE_COMMITTED);
    const auto itTrans = std::ranges::find_if(vTrans, isMark);
    if (itTrans == vTrans.end()) return false;
    const auto itFirst = vTrans.begin() + (itTrans - vTrans.begin()) / 2 * 2;
    const auto itLast = itFirst + std::min<std::ptrdiff_t>(2, vTrans.end() - itFirst);
    RemoveFrom<CPathTransControlPoint>(spPath, {itFirst, itLast}, L"透明化制御点の削除", fnRegister);
    return true;
}
