// folder_win32.cpp: the item's log folder from its registry value on Windows; none elsewhere.
#include "tools/qvlog/files.h"

#ifdef _WIN32
#include <windows.h>
#include <shlobj.h>

static std::string Narrow(const WCHAR *wide)
{
    char text[MAX_PATH * 2];
    if (!WideCharToMultiByte(CP_ACP, 0, wide, -1, text, sizeof text, nullptr, nullptr))
        return std::string();
    return text;
}

bool ItemLogFolder(std::string *folder)
{
    HKEY key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Today\\Items\\Quorvane", 0, KEY_READ, &key) ==
        ERROR_SUCCESS) {
        // The item reads the value into 260 characters; so does this.
        WCHAR value[260] = L"";
        DWORD type = 0, size = sizeof value - sizeof(WCHAR);
        LONG result = RegQueryValueExW(key, L"InstallDir", nullptr, &type, (BYTE *)value, &size);
        RegCloseKey(key);
        if (result == ERROR_SUCCESS && type == REG_SZ && value[0]) {
            value[size / sizeof(WCHAR)] = 0;
            *folder = Narrow(value);
            return !folder->empty();
        }
    }
    // Without the value the item logs to Program Files\Ostrik\Quorvane.
    WCHAR base[MAX_PATH];
    if (!SHGetSpecialFolderPathW(nullptr, base, CSIDL_PROGRAM_FILES, FALSE))
        return false;
    std::string candidate = Narrow(base) + "\\Ostrik\\Quorvane";
    if (!IsFolder(candidate))
        return false;
    *folder = candidate;
    return true;
}
#else
bool ItemLogFolder(std::string *)
{
    return false;
}
#endif
