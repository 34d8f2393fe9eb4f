// device_sdk.h: the device SDK declarations the device toolchain does not ship, written from the platform's documentation.
//
// The NDIS user-mode I/O requests (nuiouser.h) have no header on either
// toolchain. The 802.11 OIDs and records (ntddndis.h) come from mingw-w64's
// header on a desktop; the device toolchain's copy is kernel-mode only, so
// the device build takes them from here. The connection manager's calls
// (connmgr.h) live in cellcore.dll with no declarations in the toolchain.
#pragma once

#include <windows.h>

#ifndef _WIN32_WCE
#include <ntddndis.h>
#else

// NDIS object identifiers and the 802.11 ones the wireless layer asks for.
typedef ULONG NDIS_OID, *PNDIS_OID;

#define OID_802_11_BSSID                 0x0D010101
#define OID_802_11_SSID                  0x0D010102
#define OID_802_11_NETWORK_TYPE_IN_USE   0x0D010204
#define OID_802_11_RSSI                  0x0D010206
#define OID_802_11_INFRASTRUCTURE_MODE   0x0D010108
#define OID_802_11_SUPPORTED_RATES       0x0D01020E
#define OID_802_11_CONFIGURATION         0x0D010211
#define OID_802_11_BSSID_LIST            0x0D010217
#define OID_802_11_AUTHENTICATION_MODE   0x0D010118
#define OID_802_11_BSSID_LIST_SCAN       0x0D01011A
#define OID_802_11_WEP_STATUS            0x0D01011B
#define OID_802_11_ENCRYPTION_STATUS     OID_802_11_WEP_STATUS

#define NDIS_802_11_LENGTH_SSID   32
#define NDIS_802_11_LENGTH_RATES  8

typedef UCHAR NDIS_802_11_MAC_ADDRESS[6];
typedef LONG NDIS_802_11_RSSI;
typedef UCHAR NDIS_802_11_RATES[NDIS_802_11_LENGTH_RATES];

typedef enum _NDIS_802_11_NETWORK_TYPE {
    Ndis802_11FH,
    Ndis802_11DS,
    Ndis802_11OFDM5,
    Ndis802_11OFDM24,
    Ndis802_11Automode,
    Ndis802_11NetworkTypeMax
} NDIS_802_11_NETWORK_TYPE, *PNDIS_802_11_NETWORK_TYPE;

typedef enum _NDIS_802_11_NETWORK_INFRASTRUCTURE {
    Ndis802_11IBSS,
    Ndis802_11Infrastructure,
    Ndis802_11AutoUnknown,
    Ndis802_11InfrastructureMax
} NDIS_802_11_NETWORK_INFRASTRUCTURE, *PNDIS_802_11_NETWORK_INFRASTRUCTURE;

typedef enum _NDIS_802_11_AUTHENTICATION_MODE {
    Ndis802_11AuthModeOpen,
    Ndis802_11AuthModeShared,
    Ndis802_11AuthModeAutoSwitch,
    Ndis802_11AuthModeWPA,
    Ndis802_11AuthModeWPAPSK,
    Ndis802_11AuthModeWPANone,
    Ndis802_11AuthModeWPA2,
    Ndis802_11AuthModeWPA2PSK,
    Ndis802_11AuthModeMax
} NDIS_802_11_AUTHENTICATION_MODE, *PNDIS_802_11_AUTHENTICATION_MODE;

typedef enum _NDIS_802_11_WEP_STATUS {
    Ndis802_11WEPEnabled,
    Ndis802_11Encryption1Enabled = Ndis802_11WEPEnabled,
    Ndis802_11WEPDisabled,
    Ndis802_11EncryptionDisabled = Ndis802_11WEPDisabled,
    Ndis802_11WEPKeyAbsent,
    Ndis802_11Encryption1KeyAbsent = Ndis802_11WEPKeyAbsent,
    Ndis802_11WEPNotSupported,
    Ndis802_11EncryptionNotSupported = Ndis802_11WEPNotSupported,
    Ndis802_11Encryption2Enabled,
    Ndis802_11Encryption2KeyAbsent,
    Ndis802_11Encryption3Enabled,
    Ndis802_11Encryption3KeyAbsent
} NDIS_802_11_WEP_STATUS, *PNDIS_802_11_WEP_STATUS, NDIS_802_11_ENCRYPTION_STATUS,
    *PNDIS_802_11_ENCRYPTION_STATUS;

typedef struct _NDIS_802_11_SSID {
    ULONG SsidLength;
    UCHAR Ssid[NDIS_802_11_LENGTH_SSID];
} NDIS_802_11_SSID, *PNDIS_802_11_SSID;

typedef struct _NDIS_802_11_CONFIGURATION_FH {
    ULONG Length;
    ULONG HopPattern;
    ULONG HopSet;
    ULONG DwellTime;
} NDIS_802_11_CONFIGURATION_FH, *PNDIS_802_11_CONFIGURATION_FH;

typedef struct _NDIS_802_11_CONFIGURATION {
    ULONG Length;
    ULONG BeaconPeriod;      // Kusec
    ULONG ATIMWindow;        // Kusec
    ULONG DSConfig;          // frequency in kHz
    NDIS_802_11_CONFIGURATION_FH FHConfig;
} NDIS_802_11_CONFIGURATION, *PNDIS_802_11_CONFIGURATION;

typedef struct _NDIS_WLAN_BSSID {
    ULONG Length;            // this record's bytes: the next one follows after them
    NDIS_802_11_MAC_ADDRESS MacAddress;
    UCHAR Reserved[2];
    NDIS_802_11_SSID Ssid;
    ULONG Privacy;
    NDIS_802_11_RSSI Rssi;
    NDIS_802_11_NETWORK_TYPE NetworkTypeInUse;
    NDIS_802_11_CONFIGURATION Configuration;
    NDIS_802_11_NETWORK_INFRASTRUCTURE InfrastructureMode;
    NDIS_802_11_RATES SupportedRates;
} NDIS_WLAN_BSSID, *PNDIS_WLAN_BSSID;

typedef struct _NDIS_802_11_BSSID_LIST {
    ULONG NumberOfItems;
    NDIS_WLAN_BSSID Bssid[1];
} NDIS_802_11_BSSID_LIST, *PNDIS_802_11_BSSID_LIST;

#endif // _WIN32_WCE

// The NDIS user-mode I/O driver's control codes: CTL_CODE(FILE_DEVICE_NETWORK,
// function, METHOD_BUFFERED, FILE_ANY_ACCESS) for functions 0x201, 0x203, 0x205.
#define IOCTL_NDISUIO_QUERY_OID_VALUE 0x00120804
#define IOCTL_NDISUIO_QUERY_BINDING   0x0012080C
#define IOCTL_NDISUIO_SET_OID_VALUE   0x00120814

typedef struct _NDISUIO_QUERY_BINDING {
    ULONG BindingIndex;
    ULONG DeviceNameOffset;     // bytes from the start of the record
    ULONG DeviceNameLength;     // bytes of UTF-16 text
    ULONG DeviceDescrOffset;
    ULONG DeviceDescrLength;
} NDISUIO_QUERY_BINDING, *PNDISUIO_QUERY_BINDING;

typedef struct _NDISUIO_QUERY_OID {
    NDIS_OID Oid;
    PTCHAR ptcDeviceName;
    UCHAR Data[sizeof(ULONG)];  // the value runs on to the end of the buffer
} NDISUIO_QUERY_OID, *PNDISUIO_QUERY_OID, NDISUIO_SET_OID, *PNDISUIO_SET_OID;

// ---- Connection manager (cellcore.dll) ----
// The records are the program's too (platform/connmgr.h); the calls are the device's alone.
#ifdef _WIN32_WCE
#include "platform/connmgr.h"

extern "C" {
HRESULT WINAPI ConnMgrEstablishConnection(CONNMGR_CONNECTIONINFO *pConnInfo, HANDLE *phConnection);
HRESULT WINAPI ConnMgrConnectionStatus(HANDLE hConnection, DWORD *pdwStatus);
HRESULT WINAPI ConnMgrReleaseConnection(HANDLE hConnection, LONG lCache);
HRESULT WINAPI ConnMgrProviderMessage(HANDLE hConnection, const GUID *pguidProvider, DWORD *pdwIndex,
                                      DWORD dwMsg1, DWORD dwMsg2, PBYTE pParams, ULONG cbParamSize);
}
#endif
