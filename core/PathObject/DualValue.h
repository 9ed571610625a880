// Values that are dragged: a committed state and a live one.
#pragma once

#include <array>
#include <cstddef>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>

/// Index 0 is what is saved and rasterized, index 1 what a drag changes and the screen shows.
enum EPathState : size_t { STATE_COMMITTED, STATE_LIVE };

template <class T>
class CDualValue {
public:
    CDualValue() = default;
    /// Both states alike.
    explicit CDualValue(const T& value) : m_aValue{value, value} {}

    T& operator[](size_t state) { return m_aValue[state]; }
    const T& operator[](size_t state) const { return m_aValue[state]; }
    void Set(const T& value) { m_aValue = {value, value}; }
    bool IsSettled() const { return m_aValue[0] == m_aValue[1]; }

    friend bool operator==(const CDualValue&, const CDualValue&) = default;

private:
    std::array<T, 2> m_aValue{};
};

/// What a function of the state says for both.
template <class Function>
auto DualOf(Function fn) {
    CDualValue<decltype(fn(size_t{}))> value;
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) value[state] = fn(state);
    return value;
}

/// A private copy of a value for a drag; when its last reference goes, `fnApply` gets it. That function keeps
/// alive what it writes to and must not throw.
template <class T>
boost::shared_ptr<CDualValue<T>> MakeDragCopy(const CDualValue<T>& value,
                                              boost::function<void(const CDualValue<T>&)> fnApply) {
    return {new CDualValue<T>(value), [fnApply = std::move(fnApply)](CDualValue<T>* pCopy) {
                const std::unique_ptr<CDualValue<T>> owner(pCopy);
                fnApply(*pCopy);
            }};
}
