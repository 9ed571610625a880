// Drags of a path's parts: from the press on a part to the action in the history.
#pragma once

#include "core/History/History.h"
#include "core/PathObject/PathObject.h"

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

/// Adds a done action to the document's history.
using TRegisterHistory = boost::function<void(const boost::shared_ptr<CHistory>&)>;

/// A drag in progress. It changes live values only, until it is committed or cancelled, one of which must
/// be called at the end.
class CVectorHandle : boost::noncopyable {
public:
    /// Moves the part by `delta` path units from where it was at the press. `flags` are the event's
    /// (POINTER_ bits). Raises refused_error for a shape that no file can hold.
    virtual void OnDrag(CPoint delta, unsigned flags) = 0;
    /// Makes the live values the committed ones and registers the action, if they differ.
    virtual void OnCommit() = 0;
    virtual ~CVectorHandle() = default;
    /// Restores the path as it was before the press.
    virtual void OnCancel() = 0;
    /// The dragged part, for highlighting; its point is null for a range of the line.
    virtual TPathHit GetPart() const = 0;
    /// The path that is dragged.
    virtual boost::shared_ptr<CPathObject> GetPath() const = 0;
};

/// The drag of a part of a path of the class TObject, which it keeps alive.
template <class TObject>
class CVectorHandleImpl : public CVectorHandle {
public:
    CVectorHandleImpl(const boost::shared_ptr<TObject>& spObject, TRegisterHistory fnRegister)
        : m_spObject(spObject), m_fnRegister(std::move(fnRegister)) {}

    void OnCancel() override { m_spObject->CancelDrag(); }
    boost::shared_ptr<CPathObject> GetPath() const override { return m_spObject; }

protected:
    boost::shared_ptr<TObject> m_spObject;
    TRegisterHistory m_fnRegister;
};
