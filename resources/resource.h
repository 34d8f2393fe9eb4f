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

// CSV export dialog (opened from the usage dialog).
#define IDD_EXPORT            171
#define IDC_EXPORT_FROM       1030
#define IDC_EXPORT_TO         1072
#define IDC_EXPORT_FILE       1073
#define IDC_EXPORT_KEYBOARD   1095
#define IDC_EXPORT_NO_CONTROL 1007   // asked for the focus, but not in this template

// Live traffic graph dialog (IDD_LIVEGRAPH above): its background image.
#define IDB_LIVEGRAPH         177

// Usage dialog (IDD_USAGE, IDD_USAGE_WIDE above): controls, header icons, chart and table images.
#define IDC_USAGE_TITLE          1065
#define IDC_USAGE_DATE           1031
#define IDC_USAGE_MODE           1007
#define IDI_USAGE_TABLE          122
#define IDI_USAGE_CHART          120
#define IDI_USAGE_EXPORT         158
#define IDI_USAGE_TABLE_HIRES    206
#define IDI_USAGE_CHART_HIRES    204
#define IDI_USAGE_EXPORT_HIRES   205
#define IDB_USAGE_CHART_DAILY    156
#define IDB_USAGE_CHART_HOURLY   157
#define IDB_USAGE_TABLE_DAILY    182
#define IDB_USAGE_TABLE_HOURLY   183
#define IDB_USAGE_PAGES          184

// Taskbar status icons by traffic state and signal band, lowest band first (see TaskbarIconId).
#define IDI_TASKBAR_BOTH0_HIRES  212
#define IDI_TASKBAR_BOTH1_HIRES  213
#define IDI_TASKBAR_BOTH2_HIRES  214
#define IDI_TASKBAR_BOTH3_HIRES  216
#define IDI_TASKBAR_BOTH4_HIRES  217
#define IDI_TASKBAR_IDLE0_HIRES  218
#define IDI_TASKBAR_IDLE1_HIRES  219
#define IDI_TASKBAR_IDLE2_HIRES  220
#define IDI_TASKBAR_IDLE3_HIRES  221
#define IDI_TASKBAR_IDLE4_HIRES  222
#define IDI_TASKBAR_RECV0_HIRES  223
#define IDI_TASKBAR_RECV1_HIRES  224
#define IDI_TASKBAR_RECV2_HIRES  225
#define IDI_TASKBAR_RECV3_HIRES  226
#define IDI_TASKBAR_RECV4_HIRES  227
#define IDI_TASKBAR_SEND0_HIRES  228
#define IDI_TASKBAR_SEND1_HIRES  229
#define IDI_TASKBAR_SEND2_HIRES  230
#define IDI_TASKBAR_SEND3_HIRES  231
#define IDI_TASKBAR_SEND4_HIRES  232
#define IDI_TASKBAR_BOTH0        233
#define IDI_TASKBAR_BOTH1        234
#define IDI_TASKBAR_BOTH2        235
#define IDI_TASKBAR_BOTH3        236
#define IDI_TASKBAR_BOTH4        237
#define IDI_TASKBAR_IDLE0        238
#define IDI_TASKBAR_IDLE1        239
#define IDI_TASKBAR_IDLE2        240
#define IDI_TASKBAR_IDLE3        241
#define IDI_TASKBAR_IDLE4        242
#define IDI_TASKBAR_RECV0        243
#define IDI_TASKBAR_RECV1        244
#define IDI_TASKBAR_RECV2        245
#define IDI_TASKBAR_RECV3        246
#define IDI_TASKBAR_RECV4        247
#define IDI_TASKBAR_SEND0        248
#define IDI_TASKBAR_SEND1        249
#define IDI_TASKBAR_SEND2        250
#define IDI_TASKBAR_SEND3        251
#define IDI_TASKBAR_SEND4        252

// Signal strength view (IDD_SIGNAL above): its graph background.
#define IDB_SIGNALGRAPH          178

// 802.11 scanner (IDD_SCANNER above): list icons, open and encrypted per signal band.
#define IDI_SCAN_OPEN0           146
#define IDI_SCAN_LOCKED0         147
#define IDI_SCAN_OPEN1           148
#define IDI_SCAN_LOCKED1         149
#define IDI_SCAN_OPEN2           150
#define IDI_SCAN_LOCKED2         151
#define IDI_SCAN_OPEN3           152
#define IDI_SCAN_LOCKED3         153
#define IDI_SCAN_OPEN4           154
#define IDI_SCAN_LOCKED4         155

// Intruder detector (IDD_INTRUDER above): row icons.
#define IDI_HOST_INTRUDER        186
#define IDI_HOST_SAFE            187

// Adapter details (IDD_ADAPTER, IDD_ADAPTER_WIDE above) and DHCP (IDD_DHCP above): their controls.
#define IDC_ADAPTER_TITLE        1014
#define IDC_ADAPTER_MAC          1015
#define IDC_ADAPTER_TYPE         1016
#define IDC_ADAPTER_SPEED        1017
#define IDC_ADAPTER_IP           1018
#define IDC_ADAPTER_MASK         1019
#define IDC_ADAPTER_GATEWAY      1020
#define IDC_ADAPTER_DNS1         1021
#define IDC_ADAPTER_DNS2         1036   // portrait only
#define IDC_ADAPTER_WINS1        1022
#define IDC_ADAPTER_WINS2        1035   // portrait only
#define IDC_DHCP_TITLE           1001
#define IDC_DHCP_IP              1023
#define IDC_DHCP_REAL_IP         1083
#define IDC_DHCP_DETECT          1084
#define IDC_DHCP_SERVER          1002
#define IDC_DHCP_OBTAINED        1003
#define IDC_DHCP_EXPIRES         1004
#define IDC_DHCP_RELEASE         1005
#define IDC_DHCP_RENEW           1006
// Ping (IDD_PING, IDD_PING_WIDE above) and the intruder detector (IDD_INTRUDER above): controls.
#define IDC_PING_HOST            1007
#define IDC_PING_GO              1024
#define IDC_PING_DELETE          1027
#define IDC_PING_KEYBOARD        1028
#define IDC_PING_STATUS          1025
#define IDC_PING_TIME            1026
#define IDC_PING_MAC             1038
#define IDC_INTRUDER_LIST        1089
#define IDC_INTRUDER_PROGRESS    1091
#define IDC_INTRUDER_EXPORT      1090
#define IDC_INTRUDER_DETECT      1085

// Options sheet (IDD_OPT_ADAPTER, IDD_OPT_OPTIONS, IDD_OPT_ABOUT above): page controls.
#define IDC_OPT_HEADER         1000
#define IDC_OPT_TASKBAR_ICON   1074
#define IDC_OPT_XLOCATION      1081
#define IDC_OPT_XSPIN          1032
#define IDC_OPT_AMPM           1075
#define IDC_OPT_MILITARY       1076
#define IDC_OPT_LOGS           1080
#define IDC_OPT_DELETE_ALL     1077
#define IDC_OPT_DELETE         1079
#define IDC_OPT_ADAPTER        1007
#define IDC_OPT_ADAPTER_ROWS   1011

// Wireless tools (IDD_CARD, IDD_SIGNAL, IDD_SCANNER, IDD_SCANNER_WIDE above): their controls.
#define IDC_CARD_BEACON          1049
#define IDC_CARD_ATIM            1050
#define IDC_CARD_FREQUENCY       1051
#define IDC_CARD_CHANNEL         1057
#define IDC_CARD_AUTH            1052
#define IDC_CARD_NETTYPE         1053
#define IDC_CARD_MODE            1055
#define IDC_CARD_WEP             1056
#define IDC_SIGNAL_STRENGTH      1067
#define IDC_SIGNAL_STATUS        1068
#define IDC_SCAN_SSID            1039
#define IDC_SCAN_BSSID           1040
#define IDC_SCAN_LIST            1059
#define IDC_SCAN_SIGNAL          1045
#define IDC_SCAN_WEP             1044
#define IDC_SCAN_AP_BSSID        1042
#define IDC_SCAN_CHANNEL         1043
#define IDC_SCAN_MODE            1046
#define IDC_SCAN_TYPE            1047
#define IDC_SCAN_RATES           1048
#define IDC_SCAN_OTHER_LIST      1041   // the secondary details path's list: in neither template
