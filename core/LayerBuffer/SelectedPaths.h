// The paths that a user has selected.
#pragma once

#include "core/PathObject/PathObject.h"

#include <unordered_map>
#include <vector>

/// A set of paths that does not keep them alive.
class CSelectedPaths {
public:
    CSelectedPaths() = default;
    explicit CSelectedPaths(const std::vector<boost::shared_ptr<CPathObject>>& vPaths) {
        for (const auto& spPath : vPaths) m_mapPaths[spPath.get()] = spPath;
    }

    /// Another path may have come to lie where one was destroyed.
    bool Contains(const CPathObject& path) const {
        const auto it = m_mapPaths.find(&path);
        return it != m_mapPaths.end() && it->second.lock().get() == &path;
    }
    /// Those that still exist, in any order.
    std::vector<boost::shared_ptr<CPathObject>> GetPaths() const {
        std::vector<boost::shared_ptr<CPathObject>> vPaths;
        for (const auto& [pPath, wpPath] : m_mapPaths)
            if (auto spPath = wpPath.lock()) vPaths.push_back(std::move(spPath));
        return vPaths;
    }

private:
    std::unordered_map<const CPathObject*, boost::weak_ptr<CPathObject>> m_mapPaths;
};
