// device_sdk.h: device calls whose declarations the device toolchain lacks, written from the platform's documentation.
#pragma once

#ifdef _WIN32_WCE
#include <windows.h>

// ---- Connection manager (CellCore) ----
#include "platform/connmgr.h"

extern "C" {
HRESULT WINAPI ConnMgrEstablishConnection(CONNMGR_CONNECTIONINFO *pConnInfo, HANDLE *phConnection);
HRESULT WINAPI ConnMgrConnectionStatus(HANDLE hConnection, DWORD *pdwStatus);
HRESULT WINAPI ConnMgrReleaseConnection(HANDLE hConnection, LONG lCache);
HRESULT WINAPI ConnMgrProviderMessage(HANDLE hConnection, const GUID *pguidProvider, DWORD *pdwIndex,
                                      DWORD dwMsg1, DWORD dwMsg2, PBYTE pParams, ULONG cbParamSize);
}
#endif
