// settings.cpp: the item's registry values under HKLM\Software\Microsoft\Today\Items\Quorvane.
#include "item/item.h"

ItemSettings g_settings;

bool ReadSettingString(LPCWSTR name, LPWSTR value, DWORD bytes)
{
    HKEY key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, QUORVANE_KEY, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    DWORD type = 0, size = bytes;
    LONG rc = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE *>(value), &size);
    RegCloseKey(key);
    if (rc != ERROR_SUCCESS || type != REG_SZ)
        return false;
    // The stored text may lack its terminator; never hand out an open string.
    DWORD chars = bytes / sizeof(WCHAR);
    if (chars == 0)
        return false;
    DWORD end = size / sizeof(WCHAR);
    value[end < chars ? end : chars - 1] = 0;
    return true;
}

bool ReadSettingDword(LPCWSTR name, DWORD *value)
{
    HKEY key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, QUORVANE_KEY, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    DWORD type = 0, size = sizeof(DWORD), v = 0;
    LONG rc = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE *>(&v), &size);
    RegCloseKey(key);
    if (rc != ERROR_SUCCESS || type != REG_DWORD)
        return false;
    *value = v;
    return true;
}

static bool WriteSetting(LPCWSTR name, DWORD type, const void *data, DWORD bytes)
{
    HKEY key;
    DWORD disposition;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, QUORVANE_KEY, 0, nullptr, 0, KEY_WRITE, nullptr,
                        &key, &disposition) != ERROR_SUCCESS)
        return false;
    LONG rc = RegSetValueExW(key, name, 0, type, static_cast<const BYTE *>(data), bytes);
    RegCloseKey(key);
    return rc == ERROR_SUCCESS;
}

bool WriteSettingString(LPCWSTR name, LPCWSTR value)
{
    return WriteSetting(name, REG_SZ, value, (DWORD)((lstrlenW(value) + 1) * sizeof(WCHAR)));
}

bool WriteSettingDword(LPCWSTR name, DWORD value)
{
    return WriteSetting(name, REG_DWORD, &value, sizeof value);
}
