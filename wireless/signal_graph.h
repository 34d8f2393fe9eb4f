// signal_graph.h: the signal view's graph geometry, shared by its painter and its background image.
#pragma once

#define SIGNALGRAPH_WIDTH        168
#define SIGNALGRAPH_HEIGHT       72
#define SIGNALGRAPH_READINGS     40
#define SIGNALGRAPH_FIRST_X      45     // reading i stands at x = 45 + 3i
#define SIGNALGRAPH_STEP         3
#define SIGNALGRAPH_PEN_WIDTH    3
#define SIGNALGRAPH_BOTTOM       68
// A reading r above -90 dBm rises to y = (34 - min(r + 90, 32)) * 2.
#define SIGNALGRAPH_TOP_BASE     34
#define SIGNALGRAPH_MAX_RISE     32
#define SIGNALGRAPH_Y_SCALE      2
