// The operations on a stroke's width and opacity, as the user chooses them.
#pragma once

#include <array>
#include <string>

/// The numbers of the settings and of the option pane's rows; other numbers are unsupported.
enum EWidthType : int {
    WIDTH_POINTS_1,
    WIDTH_POINTS_2,
    WIDTH_POINTS_3,
    WIDTH_POINTS_4,
    WIDTH_MULTIPLY,
    WIDTH_ADD,
    WIDTH_ERASE,
    WIDTH_CUT,
    WIDTH_ALPHA,
};
constexpr int WIDTH_TYPES = 9;

/// The kinds by which the pane shows the operations.
enum EWidthKind : int {
    WIDTH_KIND_NONE = -1,
    WIDTH_KIND_POINTS,
    WIDTH_KIND_CHANGE,
    WIDTH_KIND_ERASE,
    WIDTH_KIND_CUT,
    WIDTH_KIND_ALPHA
};
constexpr int WIDTH_KINDS = 5;

/// An operation and its coefficient in tenths: a multiple of the stroke's width, (to add) pixels, or an
/// opacity, 1.0 the highest.
struct TPathWidthItem {
    int nType = WIDTH_POINTS_1;
    int nCoef = 10;

    friend bool operator==(const TPathWidthItem&, const TPathWidthItem&) = default;
};

constexpr bool IsSupported(int nType) { return nType >= 0 && nType < WIDTH_TYPES; }
/// The name of a supported operation.
const wchar_t* GetWidthName(int nType);
EWidthKind KindOf(int nType);
/// The first operation of a kind, without change.
TPathWidthItem FirstOf(EWidthKind kind);
/// True for operations that the coefficient changes.
bool HasCoef(int nType);
/// "1.5" for 15.
std::wstring CoefText(int nCoef);
/// The text of a list row.
std::wstring ItemText(const TPathWidthItem& item);
/// The same with a coefficient in its range, 0 for an operation without one.
TPathWidthItem Normalized(TPathWidthItem item);
