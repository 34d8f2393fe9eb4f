// resource.h: every resource id of quorvane.dll, grouped by where it is used.
#pragma once

// Strip: graph backgrounds.
#define IDB_GRAPH          113
#define IDB_GRAPH_HIRES    203

// Strip: signal icons, lowest band first (normal, hi-res).
#define IDI_SIGNAL0        159
#define IDI_SIGNAL1        160
#define IDI_SIGNAL2        161
#define IDI_SIGNAL3        162
#define IDI_SIGNAL4        163
#define IDI_SIGNAL0_HIRES  196
#define IDI_SIGNAL1_HIRES  197
#define IDI_SIGNAL2_HIRES  198
#define IDI_SIGNAL3_HIRES  199
#define IDI_SIGNAL4_HIRES  200

// Strip: tool icons (normal, hi-res).
#define IDI_TOOL_USAGE        103
#define IDI_TOOL_DHCP         101
#define IDI_TOOL_PING         104
#define IDI_TOOL_ADAPTER      102
#define IDI_TOOL_SCANNER      125
#define IDI_TOOL_CARD         126
#define IDI_TOOL_INTRUDER     188
#define IDI_TOOL_APPLET17     106
#define IDI_TOOL_APPLET19     105
#define IDI_TOOL_USAGE_HIRES     192
#define IDI_TOOL_DHCP_HIRES      189
#define IDI_TOOL_PING_HIRES      193
#define IDI_TOOL_ADAPTER_HIRES   191
#define IDI_TOOL_SCANNER_HIRES   201
#define IDI_TOOL_CARD_HIRES      202
#define IDI_TOOL_INTRUDER_HIRES  190
#define IDI_TOOL_APPLET17_HIRES  195
#define IDI_TOOL_APPLET19_HIRES  194

// Taskbar status icons: 212..252, see TaskbarIconId (215 is never used).
#define IDI_TASKBAR_FIRST  212
#define IDI_TASKBAR_LAST   252

// Tool dialogs opened from the strip (portrait, landscape).
#define IDD_ADAPTER        114
#define IDD_ADAPTER_WIDE   503
#define IDD_DHCP           111
#define IDD_PING           115
#define IDD_PING_WIDE      501
#define IDD_USAGE          116
#define IDD_USAGE_WIDE     504
#define IDD_SCANNER        123
#define IDD_SCANNER_WIDE   502
#define IDD_CARD           124
#define IDD_SIGNAL         164
#define IDD_LIVEGRAPH      176
#define IDD_INTRUDER       185

// Options sheet pages.
#define IDD_OPT_ADAPTER    112
#define IDD_OPT_OPTIONS    107
#define IDD_OPT_ABOUT      108
