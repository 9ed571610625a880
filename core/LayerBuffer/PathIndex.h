// The places of a layer's paths: finds those near a position without visiting all.
#pragma once

#include "core/PathObject/PathObject.h"

#include <list>
#include <memory>
#include <vector>

using TPathList = std::list<boost::shared_ptr<CPathObject>>;

/// The paths' boxes (their reach, path units) in a tree. Paths are identified by address and must be removed
/// before they are destroyed.
class CPathIndex : boost::noncopyable {
public:
    CPathIndex();
    ~CPathIndex();

    /// Adds a path on top of the others.
    void Insert(const boost::shared_ptr<CPathObject>& spPath);
    /// Removes a path that was added.
    void Remove(const CPathObject& path);
    /// Adopts the order of a list of the same paths, the lowest first.
    void Sort(const TPathList& lstPaths);
    /// Adopts a path's new reach.
    void Refresh(const CPathObject& path);
    bool Contains(const CPathObject& path) const;
    /// The given paths that were added, the lowest first.
    std::vector<boost::shared_ptr<CPathObject>>
    InOrder(const std::vector<boost::shared_ptr<CPathObject>>& vPaths) const;
    /// The paths whose boxes meet a rectangle, the lowest first.
    std::vector<boost::shared_ptr<CPathObject>> Find(const CRect& rc) const;
    /// The box around all boxes; empty without paths.
    CRect GetBounds() const;

private:
    struct TTree;
    std::unique_ptr<TTree> m_pTree;
};
