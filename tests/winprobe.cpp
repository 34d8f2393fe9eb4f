// winprobe.cpp: reads another Wine program's windows from outside, for end-to-end tests that drive dialogs.
//
//   winprobe.exe wait "TITLE" SECONDS   a visible top-level window whose title contains TITLE: "hwnd x y w h"
//   winprobe.exe client "TITLE"         where its client area starts on the screen: "x y"
//   winprobe.exe list "TITLE"           its child controls: "id<TAB>class<TAB>x y w h<TAB>text"
//   winprobe.exe text "TITLE" ID        the text of one control
//   winprobe.exe items "TITLE" ID       the rows of a list view (columns joined by TAB), list box or combo box
//   winprobe.exe close "TITLE"          asks the window to close (WM_CLOSE), as the system does at shut-down
//
// TITLE "class:NAME" finds the window by its class instead ("class:#32770"
// for a dialog, since the tools' dialogs have no title).
//
// Rectangles are screen pixels, which under Xvfb are the X screen's, so a
// test clicks them with xdotool as a user would. Exit status: 0 found, 1 not
// found (or time-out), 2 bad arguments.
#include <windows.h>
#include <commctrl.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

const UINT kTimeoutMs = 2000;

void Print(const std::wstring &text)
{
    int n = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), (int)text.size(), nullptr, 0, nullptr, nullptr);
    std::string bytes(n, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), (int)text.size(), &bytes[0], n, nullptr, nullptr);
    bytes += '\n';
    DWORD written;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(), (DWORD)bytes.size(), &written, nullptr);
}

std::wstring Widen(const char *text)
{
    int n = MultiByteToWideChar(CP_UTF8, 0, text, -1, nullptr, 0);
    std::wstring wide(n > 0 ? n - 1 : 0, L'\0');
    if (n > 1)
        MultiByteToWideChar(CP_UTF8, 0, text, -1, &wide[0], n);
    return wide;
}

std::wstring WindowText(HWND window)
{
    DWORD_PTR length = 0;
    if (!SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, kTimeoutMs, &length))
        return L"";
    std::vector<WCHAR> text(length + 2, 0);
    DWORD_PTR got = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), (LPARAM)text.data(), SMTO_ABORTIFHUNG, kTimeoutMs, &got);
    return text.data();
}

struct Search {
    std::wstring title;
    HWND found;
};

BOOL CALLBACK FindTop(HWND window, LPARAM param)
{
    Search *search = reinterpret_cast<Search *>(param);
    if (!IsWindowVisible(window))
        return TRUE;
    // "class:NAME" names the window class instead: tool dialogs have no title.
    bool match;
    if (search->title.compare(0, 6, L"class:") == 0) {
        WCHAR className[64] = L"";
        GetClassNameW(window, className, 64);
        match = search->title.substr(6) == className;
    } else {
        match = WindowText(window).find(search->title) != std::wstring::npos;
    }
    if (match) {
        search->found = window;
        return FALSE;
    }
    return TRUE;
}

HWND FindTopWindow(const std::wstring &title)
{
    Search search = {title, nullptr};
    EnumWindows(FindTop, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::wstring Rect(HWND window)
{
    RECT rc;
    GetWindowRect(window, &rc);
    WCHAR text[64];
    swprintf(text, 64, L"%ld %ld %ld %ld", rc.left, rc.top, rc.right - rc.left, rc.bottom - rc.top);
    return text;
}

BOOL CALLBACK ListChild(HWND child, LPARAM)
{
    WCHAR className[64] = L"";
    GetClassNameW(child, className, 64);
    WCHAR id[16];
    swprintf(id, 16, L"%d", GetDlgCtrlID(child));
    Print(std::wstring(id) + L"\t" + className + L"\t" + Rect(child) + L"\t" + WindowText(child));
    return TRUE;
}

struct ChildSearch {
    int id;
    HWND found;
};

BOOL CALLBACK FindChild(HWND child, LPARAM param)
{
    ChildSearch *search = reinterpret_cast<ChildSearch *>(param);
    if (GetDlgCtrlID(child) == search->id) {
        search->found = child;
        return FALSE;
    }
    return TRUE;
}

HWND FindControl(HWND top, int id)
{
    ChildSearch search = {id, nullptr};
    EnumChildWindows(top, FindChild, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

// A list view answers only with pointers into its own process: the request
// and the text buffer are placed there.
void ListViewRows(HWND list)
{
    DWORD pid = 0;
    GetWindowThreadProcessId(list, &pid);
    HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, pid);
    if (!process)
        return;
    const SIZE_T textChars = 512;
    BYTE *remote = static_cast<BYTE *>(
        VirtualAllocEx(process, nullptr, sizeof(LVITEMW) + textChars * sizeof(WCHAR), MEM_COMMIT, PAGE_READWRITE));
    if (!remote) {
        CloseHandle(process);
        return;
    }
    DWORD_PTR rows = 0, columns = 0;
    SendMessageTimeoutW(list, LVM_GETITEMCOUNT, 0, 0, SMTO_ABORTIFHUNG, kTimeoutMs, &rows);
    DWORD_PTR header = 0;
    SendMessageTimeoutW(list, LVM_GETHEADER, 0, 0, SMTO_ABORTIFHUNG, kTimeoutMs, &header);
    if (header)
        SendMessageTimeoutW((HWND)header, HDM_GETITEMCOUNT, 0, 0, SMTO_ABORTIFHUNG, kTimeoutMs, &columns);
    if ((LONG_PTR)columns <= 0)
        columns = 1;
    for (DWORD_PTR row = 0; row < rows; row++) {
        std::wstring line;
        for (DWORD_PTR column = 0; column < columns; column++) {
            LVITEMW item = {};
            item.iSubItem = (int)column;
            item.pszText = reinterpret_cast<LPWSTR>(remote + sizeof(LVITEMW));
            item.cchTextMax = (int)textChars;
            WCHAR text[textChars] = L"";
            SIZE_T moved = 0;
            DWORD_PTR got = 0;
            WriteProcessMemory(process, remote, &item, sizeof item, &moved);
            WriteProcessMemory(process, remote + sizeof(LVITEMW), text, sizeof(WCHAR), &moved);
            SendMessageTimeoutW(list, LVM_GETITEMTEXTW, row, (LPARAM)remote, SMTO_ABORTIFHUNG, kTimeoutMs, &got);
            ReadProcessMemory(process, remote + sizeof(LVITEMW), text, sizeof text, &moved);
            text[textChars - 1] = 0;
            if (column)
                line += L"\t";
            line += text;
        }
        Print(line);
    }
    VirtualFreeEx(process, remote, 0, MEM_RELEASE);
    CloseHandle(process);
}

void StringRows(HWND control, UINT countMessage, UINT lengthMessage, UINT textMessage)
{
    DWORD_PTR rows = 0;
    SendMessageTimeoutW(control, countMessage, 0, 0, SMTO_ABORTIFHUNG, kTimeoutMs, &rows);
    for (DWORD_PTR row = 0; row < rows && (LONG_PTR)rows > 0; row++) {
        DWORD_PTR length = 0;
        SendMessageTimeoutW(control, lengthMessage, row, 0, SMTO_ABORTIFHUNG, kTimeoutMs, &length);
        std::vector<WCHAR> text(length + 2, 0);
        DWORD_PTR got = 0;
        SendMessageTimeoutW(control, textMessage, row, (LPARAM)text.data(), SMTO_ABORTIFHUNG, kTimeoutMs, &got);
        Print(text.data());
    }
}

int Usage()
{
    fprintf(stderr, "usage: winprobe wait TITLE SECONDS | list TITLE | text TITLE ID | items TITLE ID | client TITLE | close TITLE\n");
    return 2;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return Usage();
    std::string command = argv[1];
    std::wstring title = Widen(argv[2]);

    if (command == "wait") {
        if (argc < 4)
            return Usage();
        DWORD limit = (DWORD)(atof(argv[3]) * 1000);
        DWORD start = GetTickCount();
        for (;;) {
            HWND top = FindTopWindow(title);
            if (top) {
                WCHAR handle[32];
                swprintf(handle, 32, L"%llu ", (unsigned long long)(ULONG_PTR)top);
                Print(handle + Rect(top));
                return 0;
            }
            if (GetTickCount() - start >= limit)
                return 1;
            Sleep(100);
        }
    }

    HWND top = FindTopWindow(title);
    if (!top) {
        fprintf(stderr, "winprobe: no window titled \"%s\"\n", argv[2]);
        return 1;
    }
    if (command == "client") {
        POINT origin = {0, 0};
        ClientToScreen(top, &origin);
        WCHAR text[32];
        swprintf(text, 32, L"%ld %ld", origin.x, origin.y);
        Print(text);
        return 0;
    }
    if (command == "close")
        return PostMessageW(top, WM_CLOSE, 0, 0) ? 0 : 1;
    if (command == "list") {
        EnumChildWindows(top, ListChild, 0);
        return 0;
    }
    if (argc < 4)
        return Usage();
    HWND control = FindControl(top, atoi(argv[3]));
    if (!control) {
        fprintf(stderr, "winprobe: no control %s in \"%s\"\n", argv[3], argv[2]);
        return 1;
    }
    if (command == "text") {
        Print(WindowText(control));
        return 0;
    }
    if (command == "items") {
        WCHAR className[64] = L"";
        GetClassNameW(control, className, 64);
        if (lstrcmpiW(className, WC_LISTVIEWW) == 0)
            ListViewRows(control);
        else if (lstrcmpiW(className, L"ListBox") == 0)
            StringRows(control, LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT);
        else if (lstrcmpiW(className, L"ComboBox") == 0)
            StringRows(control, CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT);
        else
            return 1;
        return 0;
    }
    return Usage();
}
