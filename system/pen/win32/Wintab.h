// The tablet interface WinTab: its records, numbers and functions as drivers use them.
#pragma once

#include <cstddef>
#include <cstdint>

#include <windows.h>

namespace wintab {

using HContext = void*;

/// The range of a device's axis.
struct TAxis {
    int32_t nMin = 0;
    int32_t nMax = 0;
    uint32_t uUnits = 0;      ///< of the resolution
    uint32_t uResolution = 0; ///< 16.16, lines per unit
};

/// Azimuth, altitude and twist.
struct TOrientationAxes {
    TAxis azimuth;
    TAxis altitude;
    TAxis twist;
};

/// A context: where on the tablet its packets come from, and in which units they are given.
struct TLogContext {
    wchar_t szName[40] = {};
    uint32_t uOptions = 0; ///< CXO_ bits
    uint32_t uStatus = 0;
    uint32_t uLocks = 0;
    uint32_t uMsgBase = 0; ///< added to the numbers of the messages
    uint32_t uDevice = 0;
    uint32_t uPktRate = 0;  ///< packets in a second
    uint32_t uPktData = 0;  ///< PK_ bits: the fields of a packet
    uint32_t uPktMode = 0;  ///< PK_ bits: those that are relative
    uint32_t uMoveMask = 0; ///< PK_ bits: those whose change makes a packet
    uint32_t uBtnDnMask = 0;
    uint32_t uBtnUpMask = 0;
    int32_t nInOrgX = 0, nInOrgY = 0, nInOrgZ = 0; ///< the tablet's own units
    int32_t nInExtX = 0, nInExtY = 0, nInExtZ = 0;
    int32_t nOutOrgX = 0, nOutOrgY = 0, nOutOrgZ = 0; ///< the packets' units
    int32_t nOutExtX = 0, nOutExtY = 0, nOutExtZ = 0;
    uint32_t uSensX = 0, uSensY = 0, uSensZ = 0;
    int32_t bSysMode = 0;
    int32_t nSysOrgX = 0, nSysOrgY = 0; ///< pixels of the system cursor
    int32_t nSysExtX = 0, nSysExtY = 0;
    uint32_t uSysSensX = 0, uSysSensY = 0;
};

/// A packet with the fields of PACKET_DATA.
struct TPacket {
    uint32_t uStatus = 0; ///< TPS_ bits
    uint32_t uCursor = 0;
    uint32_t uButtons = 0; ///< relative: number in the low word, BUTTON_ state in the high word
    int32_t x = 0;
    int32_t y = 0;
    uint32_t uPressure = 0;
    int32_t nAzimuth = 0;
    int32_t nAltitude = 0;
    int32_t nTwist = 0;
};

static_assert(sizeof(TAxis) == 16 && sizeof(TOrientationAxes) == 48);
static_assert(sizeof(TLogContext) == 212 && alignof(TLogContext) == 4);
static_assert(offsetof(TLogContext, uOptions) == 80 && offsetof(TLogContext, uPktData) == 104);
static_assert(offsetof(TLogContext, nInOrgX) == 124 && offsetof(TLogContext, nOutOrgX) == 148);
static_assert(offsetof(TLogContext, uSensX) == 172 && offsetof(TLogContext, nSysOrgX) == 188);
static_assert(sizeof(TPacket) == 36 && offsetof(TPacket, uPressure) == 20);
static_assert(offsetof(TPacket, nAltitude) == 28);

// Categories and indices of WTInfo.
constexpr UINT WTI_DEFSYSCTX = 4;
constexpr UINT WTI_DEVICES = 100;
constexpr UINT DVC_NAME = 1;
constexpr UINT DVC_NPRESSURE = 15;
constexpr UINT DVC_ORIENTATION = 17;

constexpr uint32_t CXO_SYSTEM = 0x0001; ///< the context moves the system cursor
constexpr uint32_t CXO_MESSAGES = 0x0004;

constexpr uint32_t PK_STATUS = 0x0002;
constexpr uint32_t PK_CURSOR = 0x0020;
constexpr uint32_t PK_BUTTONS = 0x0040;
constexpr uint32_t PK_X = 0x0080;
constexpr uint32_t PK_Y = 0x0100;
constexpr uint32_t PK_NORMAL_PRESSURE = 0x0400;
constexpr uint32_t PK_ORIENTATION = 0x1000;
constexpr uint32_t PACKET_DATA =
    PK_STATUS | PK_CURSOR | PK_BUTTONS | PK_X | PK_Y | PK_NORMAL_PRESSURE | PK_ORIENTATION;
static_assert(PACKET_DATA == 0x15E2);

constexpr uint32_t TPS_INVERT = 0x0010; ///< the pen's other end

constexpr uint32_t BUTTON_UP = 1;
constexpr uint32_t BUTTON_DOWN = 2;

constexpr UINT WT_DEFBASE = 0x7FF0;
constexpr UINT WT_PACKET = WT_DEFBASE;         ///< serial number, context
constexpr UINT WT_CTXCLOSE = WT_DEFBASE + 2;   ///< context, status
constexpr UINT WT_PROXIMITY = WT_DEFBASE + 5;  ///< context; low word: the pen has entered
constexpr UINT WT_INFOCHANGE = WT_DEFBASE + 6; ///< tablets were plugged in or pulled out

/// The functions that are used, each with its ordinal.
struct TFunctions {
    UINT(WINAPI* pInfo)(UINT uCategory, UINT uIndex, void* pOutput) = nullptr;         // 1020
    HContext(WINAPI* pOpen)(HWND hWnd, TLogContext* pContext, BOOL bEnable) = nullptr; // 1021
    BOOL(WINAPI* pClose)(HContext hContext) = nullptr;                                 // 22
    int(WINAPI* pPacketsGet)(HContext hContext, int nMost, void* pPackets) = nullptr;  // 23
    BOOL(WINAPI* pEnable)(HContext hContext, BOOL bEnable) = nullptr;                  // 40
    BOOL(WINAPI* pOverlap)(HContext hContext, BOOL bToTop) = nullptr;                  // 41
    BOOL(WINAPI* pQueueSizeSet)(HContext hContext, int nPackets) = nullptr;            // 85
};

} // namespace wintab
