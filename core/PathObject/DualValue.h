// Values that can be dragged: a committed state and a live one.
#pragma once

#include <array>
#include <cstddef>

#include <boost/core/noncopyable.hpp>
#include <boost/function.hpp>
#include <boost/make_shared.hpp>

#include <utility>

/// Index 0 is saved and rasterized, index 1 is changed by a drag and shown on the screen.
enum EPathState : size_t { STATE_COMMITTED, STATE_LIVE };

template <class T>
class CDualValue {
public:
    CDualValue() = default;
    /// Sets both states to the same value.
    explicit CDualValue(const T& value) : m_aValue{value, value} {}

    T& operator[](size_t state) { return m_aValue[state]; }
    const T& operator[](size_t state) const { return m_aValue[state]; }
    void Set(const T& value) { m_aValue = {value, value}; }
    /// Ends a drag: the live value becomes the committed one, or the other way round.
    void Commit() { m_aValue[0] = m_aValue[1]; }
    void Cancel() { m_aValue[1] = m_aValue[0]; }
    bool IsSettled() const { return m_aValue[0] == m_aValue[1]; }

    friend bool operator==(const CDualValue&, const CDualValue&) = default;

private:
    std::array<T, 2> m_aValue{};
};

/// The results of a function of the state, for both states.
template <class Function>
auto DualOf(Function fn) {
    CDualValue<decltype(fn(size_t{}))> value;
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) value[state] = fn(state);
    return value;
}

/// A copy of a value that a drag changes; its destructor applies it.
template <class T>
class CDragCopy : boost::noncopyable {
public:
    using TApply = boost::function<void(const CDualValue<T>&)>;

    CDragCopy(const CDualValue<T>& value, TApply&& fnApply) : m_value(value), m_fnApply(std::move(fnApply)) {}
    ~CDragCopy() { m_fnApply(m_value); }

    CDualValue<T> m_value;

private:
    TApply m_fnApply;
};

/// A private copy of a value for a drag; when its last reference is released, `fnApply` receives it. That
/// function must own its target and must not throw. On bad_alloc nothing is applied.
template <class T>
boost::shared_ptr<CDualValue<T>> MakeDragCopy(const CDualValue<T>& value,
                                              typename CDragCopy<T>::TApply fnApply) {
    const auto spCopy = boost::make_shared<CDragCopy<T>>(value, std::move(fnApply));
    return {spCopy, &spCopy->m_value};
}
