// intruder_dialog.cpp: the intruder detector: starts a scan, polls its table once a second, marks hosts safe.
#include "diagnostics/diagnostics.h"
#include "diagnostics/netbios.h"
#include "diagnostics/safelist.h"
#include "diagnostics/scan.h"
#include "item/item.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "resources/resource.h"

#include <commctrl.h>

namespace {

HIMAGELIST g_images = nullptr;

const int kImageIntruder = 0;
const int kImageSafe = 1;


HWND List(HWND dialog)
{
    return GetDlgItem(dialog, IDC_INTRUDER_LIST);
}

void SetProgress(HWND dialog, int percent)
{
    SendDlgItemMessageW(dialog, IDC_INTRUDER_PROGRESS, PBM_SETPOS, percent, 0);
}

void EnableExport(HWND dialog, bool enable)
{
    HWND button = GetDlgItem(dialog, IDC_INTRUDER_EXPORT);
    if ((IsWindowEnabled(button) != FALSE) != enable)
        EnableWindow(button, enable);
}

void SetCell(HWND list, int row, int column, const WCHAR *text)
{
    ListView_SetItemText(list, row, column, const_cast<WCHAR *>(text));
}

void OnInit(HWND dialog)
{
    // No caption bar; the title only names the window to the desktop.
    SetWindowTextW(dialog, L"Intruder Detector");
    PlaceToolDialog(dialog, IsLandscape());   // in landscape its top stays below the taskbar
    EnableExport(dialog, false);
    ScanStopRequested = 0;
    HWND list = List(dialog);
    // Default colour flags give a desktop a 16-colour list, which flattens
    // the badges' shading to the basic palette; 32 bits keep it everywhere.
    g_images = ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, 2, 0);
    if (g_images) {
        // Loaded at the list's size: the device's LoadIcon gives its 32-pixel
        // system size, which the list would only shrink again.
        const int badges[2] = {IDI_HOST_INTRUDER, IDI_HOST_SAFE};
        for (int i = 0; i < 2; i++) {
            HICON badge = static_cast<HICON>(platform::LoadImageW(g_item.instance, MAKEINTRESOURCEW(badges[i]),
                                                                  IMAGE_ICON, 16, 16, 0));
            ImageList_AddIcon(g_images, badge);
            if (badge)
                DestroyIcon(badge);
        }
        (void)ListView_SetImageList(list, g_images, LVSIL_SMALL);
    }
    static const WCHAR *const kHeadings[] = {L"Host", L"IP", L"Mac Address"};
    static const int kWidths[] = {80, 120, 160};
    for (int i = 0; i < 3; i++) {
        LVCOLUMNW column = {};
        column.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
        column.fmt = LVCFMT_LEFT;
        column.cx = kWidths[i];
        column.pszText = const_cast<WCHAR *>(kHeadings[i]);
        column.iSubItem = i;
        ListView_InsertColumn(list, i, &column);
    }
    SetProgress(dialog, 0);
}

void OnDetect(HWND dialog)
{
    EnableExport(dialog, false);
    SetProgress(dialog, 0);
    ScanStopRequested = 0;
    char text[20];
    BYTE mac[6];
    GetCurrentAdapterAddress(text, mac);
    if (!text[0]) {
        platform::MessageBoxW(dialog, L"Cannot get current IP address!", L"Error", MB_OK);
        return;
    }
    ListView_DeleteAllItems(List(dialog));
    if (!StartScan(dialog))
        return;
    SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    SetTimer(dialog, INTRUDER_TIMER_ID, 1000, nullptr);
}

void AddRow(HWND dialog, HostRecord &host)
{
    HWND list = List(dialog);
    WCHAR text[NETBIOS_NAME_SIZE + 8];
    FormatText(text, NETBIOS_NAME_SIZE + 8, L"%hs", host.name);
    platform::Sleep(100);
    bool isOwn = host.address == g_scan.ownAddress;
    host.safe = (host.macKnown && SafeListContains(host.mac)) || isOwn;
    const BYTE *a = reinterpret_cast<const BYTE *>(&host.address);
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
    item.iItem = 0;
    item.pszText = text;
    item.iImage = host.safe ? kImageSafe : kImageIntruder;
    item.lParam = a[3];
    if (ListView_InsertItem(list, &item) >= 0) {
        FormatText(text, 24, L"%d.%d.%d.%d", a[0], a[1], a[2], a[3]);
        SetCell(list, 0, 1, text);
        if (!host.macKnown && isOwn) {
            for (int i = 0; i < 6; i++)
                host.mac[i] = g_scan.ownMac[i];
            host.macKnown = 1;
        }
        if (host.macKnown) {
            const BYTE *m = host.mac;
            FormatText(text, 24, L"%02X:%02X:%02X:%02X:%02X:%02X", m[0], m[1], m[2], m[3], m[4], m[5]);
            SetCell(list, 0, 2, text);
        }
    }
    host.listed = 1;
    EnableExport(dialog, true);
}

// Never negative: the rows end up by their number within the /24 all the same.
int CALLBACK CompareRows(LPARAM first, LPARAM second, LPARAM)
{
    return first > second ? 1 : 0;
}

void OnPoll(HWND dialog)
{
    KillTimer(dialog, INTRUDER_TIMER_ID);
    HostTable *table = g_scan.table;
    if (!table)
        return;
    int finished = 0;
    bool complete = true;
    for (int i = 0; i < g_scan.hostCount; i++) {
        HostRecord &host = table->hosts[i];
        LONG status = host.status;
        if (status == 0) {
            complete = false;
        } else {
            finished++;
            if (status == 1 && !host.listed)
                AddRow(dialog, host);
        }
    }
    if (!ScanStopRequested) {
        SetProgress(dialog, finished * 100 / SCAN_HOST_COUNT);
        if (!complete) {
            SetTimer(dialog, INTRUDER_TIMER_ID, 1000, nullptr);
            return;
        }
    } else {
        SetProgress(dialog, 100);
        ScanStopRequested = 0;
    }
    SetCursor(nullptr);
    ListView_SortItems(List(dialog), CompareRows, 0);
    ReleaseScanTable();
}

void OnRowTap(HWND dialog, const NMLISTVIEW *tap)
{
    if (tap->iItem < 0)
        return;
    HWND list = List(dialog);
    WCHAR text[128] = L"";
    ListView_GetItemText(list, tap->iItem, 2, text, 40);
    BYTE mac[6];
    bool hasMac = ParseMacText(text, mac);
    // The device itself is never added to or removed from the list, and a
    // row without a MAC has nothing to add.
    if (!hasMac || MacEquals(mac, g_scan.ownMac))
        return;
    WCHAR label[128] = L"";
    ListView_GetItemText(list, tap->iItem, 0, label, 128);
    if (!label[0])
        ListView_GetItemText(list, tap->iItem, 1, label, 128);
    bool listed = hasMac && SafeListContains(mac);
    WCHAR question[192];
    FormatText(question, 192, listed ? L"Delete %ls from safe list?" : L"Add %ls to safe list?", label);
    if (platform::MessageBoxW(dialog, question, L"Question", MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) != IDYES)
        return;
    LVITEMW item = {};
    item.mask = LVIF_IMAGE;
    item.iItem = tap->iItem;
    if (!listed && SafeListAdd(mac)) {
        item.iImage = kImageSafe;
        ListView_SetItem(list, &item);
    } else if (listed && SafeListRemove(dialog, mac)) {
        item.iImage = kImageIntruder;
        ListView_SetItem(list, &item);
    }
}

void OnClose(HWND dialog, int id)
{
    ScanStopRequested = 1;
    KillTimer(dialog, INTRUDER_TIMER_ID);
    // Running workers finish on their own; the last one frees the table.
    ReleaseScanTable();
    if (g_images) {
        ImageList_Destroy(g_images);
        g_images = nullptr;
    }
    SetCursor(nullptr);
    EndDialog(dialog, id);
}

} // namespace

INT_PTR CALLBACK IntruderDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        OnInit(dialog);
        return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_INTRUDER_DETECT:
            OnDetect(dialog);
            return TRUE;
        case IDC_INTRUDER_EXPORT:
            ExportIntruderReport(dialog, g_scan.ownMac);
            return TRUE;
        case IDOK:
        case IDCANCEL:
            OnClose(dialog, LOWORD(wParam));
            return TRUE;
        }
        break;
    case WM_NOTIFY: {
        const NMHDR *header = reinterpret_cast<const NMHDR *>(lParam);
        if (header->idFrom == (UINT_PTR)IDC_INTRUDER_LIST && header->code == (UINT)NM_CLICK)
            OnRowTap(dialog, reinterpret_cast<const NMLISTVIEW *>(lParam));
        return FALSE;
    }
    case WM_TIMER:
        if (wParam == INTRUDER_TIMER_ID)
            OnPoll(dialog);
        return TRUE;
    }
    return FALSE;
}
