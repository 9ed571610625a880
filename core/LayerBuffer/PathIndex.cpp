#include "core/LayerBuffer/PathIndex.h"

#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace {

namespace bgi = boost::geometry::index;
using TTreePoint = boost::geometry::model::point<int32_t, 2, boost::geometry::cs::cartesian>;
using TTreeBox = boost::geometry::model::box<TTreePoint>;
using TTreeValue = std::pair<TTreeBox, const CPathObject*>;

constexpr size_t NODE_CHILDREN = 16;

// The tree's boxes include their right and lower edges.
TTreeBox ToBox(const CRect& rc) { return {{rc.left, rc.top}, {rc.right - 1, rc.bottom - 1}}; }

struct TEntry {
    boost::shared_ptr<CPathObject> spPath;
    CRect rcBox;
    size_t nOrder;
};

std::vector<boost::shared_ptr<CPathObject>> PathsInOrder(std::vector<const TEntry*> vEntries) {
    std::ranges::sort(vEntries, {}, &TEntry::nOrder);
    std::vector<boost::shared_ptr<CPathObject>> vPaths;
    std::ranges::transform(vEntries, std::back_inserter(vPaths), &TEntry::spPath);
    return vPaths;
}

} // namespace

struct CPathIndex::TTree {
    bgi::rtree<TTreeValue, bgi::quadratic<NODE_CHILDREN>> boxes; ///< those that are not empty
    std::unordered_map<const CPathObject*, TEntry> mapPaths;
    size_t nNextOrder = 0;
};

CPathIndex::CPathIndex() : m_pTree(std::make_unique<TTree>()) {}
CPathIndex::~CPathIndex() = default;

void CPathIndex::Insert(const boost::shared_ptr<CPathObject>& spPath) {
    const CRect rcBox = spPath->GetReach();
    m_pTree->mapPaths[spPath.get()] = {spPath, rcBox, m_pTree->nNextOrder++};
    if (!rcBox.IsEmpty()) m_pTree->boxes.insert({ToBox(rcBox), spPath.get()});
}

void CPathIndex::Remove(const CPathObject& path) {
    const auto it = m_pTree->mapPaths.find(&path);
    if (it == m_pTree->mapPaths.end()) return;
    if (!it->second.rcBox.IsEmpty()) m_pTree->boxes.remove({ToBox(it->second.rcBox), &path});
    m_pTree->mapPaths.erase(it);
}

void CPathIndex::Sort(const TPathList& lstPaths) {
    m_pTree->nNextOrder = 0;
    for (const auto& spPath : lstPaths) m_pTree->mapPaths.at(spPath.get()).nOrder = m_pTree->nNextOrder++;
}

void CPathIndex::Refresh(const CPathObject& path) {
    const auto it = m_pTree->mapPaths.find(&path);
    if (it == m_pTree->mapPaths.end()) return;
    const CRect rcBefore = it->second.rcBox;
    const CRect& rcBox = path.GetReach();
    if (rcBefore == rcBox) return;
    if (!rcBefore.IsEmpty()) m_pTree->boxes.remove({ToBox(rcBefore), &path});
    if (!rcBox.IsEmpty()) m_pTree->boxes.insert({ToBox(rcBox), &path});
    it->second.rcBox = rcBox;
}

bool CPathIndex::Contains(const CPathObject& path) const { return m_pTree->mapPaths.contains(&path); }

std::vector<boost::shared_ptr<CPathObject>>
CPathIndex::InOrder(const std::vector<boost::shared_ptr<CPathObject>>& vPaths) const {
    std::vector<const TEntry*> vFound;
    for (const auto& spPath : vPaths)
        if (const auto it = m_pTree->mapPaths.find(spPath.get()); it != m_pTree->mapPaths.end())
            vFound.push_back(&it->second);
    return PathsInOrder(std::move(vFound));
}

std::vector<boost::shared_ptr<CPathObject>> CPathIndex::Find(const CRect& rc) const {
    if (rc.IsEmpty()) return {};
    std::vector<const TEntry*> vFound;
    for (auto it = m_pTree->boxes.qbegin(bgi::intersects(ToBox(rc))); it != m_pTree->boxes.qend(); ++it)
        vFound.push_back(&m_pTree->mapPaths.at(it->second));
    return PathsInOrder(std::move(vFound));
}

CRect CPathIndex::GetBounds() const {
    if (m_pTree->boxes.empty()) return {};
    const auto box = m_pTree->boxes.bounds();
    const auto& low = box.min_corner();
    const auto& high = box.max_corner();
    return {low.get<0>(), low.get<1>(), high.get<0>() + 1, high.get<1>() + 1};
}
