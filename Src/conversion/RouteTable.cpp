// The route table as data, one row per step, in the group notation of its design: `?` stands for
// the three alpha forms A, P and X at that place of the name, `UYVY+YUYV` for both 4:2:2 orders and
// ` (+709)` for the name and its `_709` form. The rows are expanded once into a lookup of
// 47 x 47 landing formats; RouteTableCheck() reports whether every ordered pair of distinct raw
// formats is named exactly once.
#include "conversion/RouteTable.h"

#include <cstdint>
#include <cstring>

namespace OX {
namespace {

struct RouteRow {
  const char* fInHand;
  const char* fLandsOn;
  const char* fDestinations;  // comma-separated items of the group notation
};

// clang-format off
constexpr RouteRow kRouteRows[] = {
    {"VUYA_4444_8u", "VUYP_4444_8u", "UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUYP_4444_8u, VUYX_4444_8u"},
    {"VUYA_4444_8u", "VUYA_4444_8u_709", "VUY?_4444_8u_709"},
    {"VUYA_4444_8u", "VUYA_4444_32f", "VUY?_4444_32f_709, VUYA_4444_32f, VUYX_4444_32f"},
    {"VUYA_4444_8u", "VUYP_4444_32f", "VUYP_4444_32f"},
    {"VUYA_4444_8u", "BGRA_4444_8u", "?RGB_4444_8u, BGR?_4444_8u"},
    {"VUYA_4444_8u", "BGRA_4444_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, RGB_444_10u"},
    {"VUYP_4444_8u", "VUYA_4444_8u", "VUYA_4444_8u"},
    {"VUYP_4444_8u", "VUYX_4444_8u", "VUYX_4444_8u"},
    {"VUYP_4444_8u", "VUYP_4444_32f", "VUY?_4444_32f (+709), VUYA_4444_8u_709, VUYX_4444_8u_709"},
    {"VUYP_4444_8u", "VUYP_4444_8u_709", "VUYP_4444_8u_709"},
    {"VUYP_4444_8u", "BGRP_4444_8u", "?RGB_4444_8u, BGR?_4444_8u"},
    {"VUYP_4444_8u", "BGRP_4444_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, RGB_444_10u"},
    {"VUYP_4444_8u", "UYVY_422_8u", "UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709)"},
    {"VUYX_4444_8u", "VUYA_4444_8u", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"VUYX_4444_8u", "VUYP_4444_8u", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"VUYX_4444_8u", "VUYX_4444_8u_709", "VUYX_4444_32f_709, VUYX_4444_8u_709"},
    {"VUYX_4444_8u", "VUYX_4444_32f", "VUYX_4444_32f"},
    {"VUYX_4444_8u", "BGRA_4444_8u", "BGRA_4444_8u"},
    {"VUYX_4444_8u", "BGRX_4444_8u", "BGRX_4444_8u, XRGB_4444_8u"},
    {"VUYX_4444_8u", "BGRX_4444_32f", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, RGB_444_10u, XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_32f_Linear"},
    {"VUYX_4444_8u", "UYVY_422_8u", "UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u"},
    {"VUYX_4444_8u", "VUYP_4444_8u_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709"},
    {"VUYA_4444_8u_709", "VUYA_4444_8u", "VUY?_4444_32f, VUY?_4444_8u"},
    {"VUYA_4444_8u_709", "VUYP_4444_8u_709", "UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUYP_4444_8u_709, VUYX_4444_8u_709"},
    {"VUYA_4444_8u_709", "VUYA_4444_32f_709", "VUYA_4444_32f_709, VUYX_4444_32f_709"},
    {"VUYA_4444_8u_709", "VUYP_4444_32f_709", "VUYP_4444_32f_709"},
    {"VUYA_4444_8u_709", "BGRA_4444_8u", "?RGB_4444_8u, BGR?_4444_8u"},
    {"VUYA_4444_8u_709", "BGRA_4444_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, RGB_444_10u"},
    {"VUYP_4444_8u_709", "VUYP_4444_32f_709", "VUY?_4444_32f (+709), VUYA_4444_8u, VUYX_4444_8u"},
    {"VUYP_4444_8u_709", "VUYP_4444_8u", "VUYP_4444_8u"},
    {"VUYP_4444_8u_709", "VUYA_4444_8u_709", "VUYA_4444_8u_709"},
    {"VUYP_4444_8u_709", "VUYX_4444_8u_709", "VUYX_4444_8u_709"},
    {"VUYP_4444_8u_709", "BGRP_4444_8u", "?RGB_4444_8u, BGR?_4444_8u"},
    {"VUYP_4444_8u_709", "BGRP_4444_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, RGB_444_10u"},
    {"VUYP_4444_8u_709", "UYVY_422_8u_709", "UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709)"},
    {"VUYX_4444_8u_709", "VUYA_4444_8u_709", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"VUYX_4444_8u_709", "VUYP_4444_8u_709", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"VUYX_4444_8u_709", "VUYX_4444_8u", "VUYX_4444_32f, VUYX_4444_8u"},
    {"VUYX_4444_8u_709", "VUYX_4444_32f_709", "VUYX_4444_32f_709"},
    {"VUYX_4444_8u_709", "BGRA_4444_8u", "BGRA_4444_8u"},
    {"VUYX_4444_8u_709", "BGRX_4444_8u", "BGRX_4444_8u, XRGB_4444_8u"},
    {"VUYX_4444_8u_709", "BGRX_4444_32f", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, RGB_444_10u, XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_32f_Linear"},
    {"VUYX_4444_8u_709", "VUYP_4444_8u", "UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u"},
    {"VUYX_4444_8u_709", "UYVY_422_8u_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709"},
    {"VUYA_4444_32f", "VUYA_4444_8u", "VUYA_4444_8u"},
    {"VUYA_4444_32f", "VUYP_4444_32f", "UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUYP_4444_32f, VUYP_4444_8u, VUYX_4444_32f, VUYX_4444_8u"},
    {"VUYA_4444_32f", "VUYA_4444_32f_709", "VUY?_4444_32f_709, VUY?_4444_8u_709"},
    {"VUYA_4444_32f", "BGRA_4444_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u"},
    {"VUYP_4444_32f", "VUYA_4444_32f", "VUYA_4444_32f, VUYA_4444_8u"},
    {"VUYP_4444_32f", "VUYP_4444_8u", "UYVY+YUYV_422_8u, VUYP_4444_8u"},
    {"VUYP_4444_32f", "VUYX_4444_32f", "VUYX_4444_32f, VUYX_4444_8u"},
    {"VUYP_4444_32f", "VUYP_4444_32f_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709, VUY?_4444_32f_709, VUY?_4444_8u_709"},
    {"VUYP_4444_32f", "BGRP_4444_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u"},
    {"VUYP_4444_32f", "UYVY_422_32f", "UYVY+YUYV_422_32f, V210_422_10u"},
    {"VUYX_4444_32f", "VUYA_4444_32f", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, BGRA_4444_8u, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"VUYX_4444_32f", "VUYP_4444_32f", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"VUYX_4444_32f", "VUYX_4444_8u", "VUYX_4444_8u"},
    {"VUYX_4444_32f", "VUYX_4444_32f_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709, VUYX_4444_32f_709, VUYX_4444_8u_709"},
    {"VUYX_4444_32f", "BGRX_4444_32f", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, BGRX_4444_8u, RGB_444_10u, XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_32f_Linear, XRGB_4444_8u"},
    {"VUYX_4444_32f", "UYVY_422_32f", "UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u"},
    {"VUYA_4444_32f_709", "VUYA_4444_32f", "UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u, VUY?_4444_32f, VUY?_4444_8u"},
    {"VUYA_4444_32f_709", "VUYA_4444_8u_709", "VUYA_4444_8u_709"},
    {"VUYA_4444_32f_709", "VUYP_4444_32f_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709, VUYP_4444_32f_709, VUYP_4444_8u_709, VUYX_4444_32f_709, VUYX_4444_8u_709"},
    {"VUYA_4444_32f_709", "BGRA_4444_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u"},
    {"VUYP_4444_32f_709", "VUYP_4444_32f", "UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u, VUY?_4444_32f, VUY?_4444_8u"},
    {"VUYP_4444_32f_709", "VUYA_4444_32f_709", "VUYA_4444_32f_709, VUYA_4444_8u_709"},
    {"VUYP_4444_32f_709", "VUYP_4444_8u_709", "VUYP_4444_8u_709"},
    {"VUYP_4444_32f_709", "VUYX_4444_32f_709", "VUYX_4444_32f_709, VUYX_4444_8u_709"},
    {"VUYP_4444_32f_709", "BGRP_4444_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u"},
    {"VUYP_4444_32f_709", "UYVY_422_32f_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709"},
    {"VUYX_4444_32f_709", "VUYA_4444_32f_709", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, BGRA_4444_8u, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"VUYX_4444_32f_709", "VUYP_4444_32f_709", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"VUYX_4444_32f_709", "VUYX_4444_32f", "UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u, VUYX_4444_32f, VUYX_4444_8u"},
    {"VUYX_4444_32f_709", "VUYX_4444_8u_709", "VUYX_4444_8u_709"},
    {"VUYX_4444_32f_709", "BGRX_4444_32f", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, BGRX_4444_8u, RGB_444_10u, XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_32f_Linear, XRGB_4444_8u"},
    {"VUYX_4444_32f_709", "UYVY_422_32f_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709"},
    {"BGRA_4444_8u", "VUYA_4444_8u", "UYVY+YUYV_422_8u, VUY?_4444_8u"},
    {"BGRA_4444_8u", "VUYA_4444_8u_709", "UYVY+YUYV_422_8u_709, VUY?_4444_8u_709"},
    {"BGRA_4444_8u", "BGRA_4444_32f", "?RGB_4444_32f, ?RGB_4444_32f_Linear, BGRA_4444_32f, BGRP_4444_15u, BGRP_4444_32f_Linear, BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, PRGB_4444_15u, RGB_444_10u, UYVY+YUYV_422_32f (+709), V210_422_10u (+709), VUY?_4444_32f (+709), XRGB_4444_15u"},
    {"BGRA_4444_8u", "BGRP_4444_8u", "BGRP_4444_8u, BGRX_4444_8u"},
    {"BGRA_4444_8u", "BGRP_4444_32f", "BGRP_4444_32f"},
    {"BGRA_4444_8u", "ARGB_4444_8u", "?RGB_4444_8u"},
    {"BGRA_4444_8u", "BGRA_4444_15u", "ARGB_4444_15u, BGRA_4444_15u"},
    {"BGRA_4444_8u", "BGRA_4444_32f_Linear", "BGRA_4444_32f_Linear"},
    {"BGRP_4444_8u", "BGRA_4444_8u", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, BGRA_4444_8u, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"BGRP_4444_8u", "VUYP_4444_8u", "VUYP_4444_8u"},
    {"BGRP_4444_8u", "BGRX_4444_8u", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, BGRX_4444_8u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUYX_4444_32f (+709), VUYX_4444_8u (+709), XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_32f_Linear"},
    {"BGRP_4444_8u", "VUYP_4444_8u_709", "VUYP_4444_8u_709"},
    {"BGRP_4444_8u", "BGRP_4444_32f", "BGRP_4444_32f, BGRP_4444_32f_Linear, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, VUYP_4444_32f (+709)"},
    {"BGRP_4444_8u", "PRGB_4444_8u", "?RGB_4444_8u"},
    {"BGRP_4444_8u", "BGRP_4444_15u", "BGRP_4444_15u"},
    {"BGRP_4444_8u", "RGB_444_10u", "RGB_444_10u"},
    {"BGRX_4444_8u", "BGRA_4444_8u", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, BGRA_4444_8u, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"BGRX_4444_8u", "BGRP_4444_8u", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"BGRX_4444_8u", "VUYX_4444_8u", "UYVY+YUYV_422_8u, VUYX_4444_8u"},
    {"BGRX_4444_8u", "VUYX_4444_8u_709", "UYVY+YUYV_422_8u_709, VUYX_4444_8u_709"},
    {"BGRX_4444_8u", "BGRX_4444_32f", "BGRX_4444_32f, BGRX_4444_32f_Linear, RGB_444_10u, UYVY+YUYV_422_32f (+709), V210_422_10u (+709), VUYX_4444_32f (+709), XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_32f_Linear"},
    {"BGRX_4444_8u", "XRGB_4444_8u", "?RGB_4444_8u"},
    {"BGRX_4444_8u", "BGRX_4444_15u", "BGRX_4444_15u"},
    {"BGRA_4444_32f", "VUYA_4444_8u", "VUYA_4444_8u"},
    {"BGRA_4444_32f", "VUYA_4444_32f", "UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u, VUY?_4444_32f, VUYP_4444_8u, VUYX_4444_8u"},
    {"BGRA_4444_32f", "VUYA_4444_8u_709", "VUYA_4444_8u_709"},
    {"BGRA_4444_32f", "VUYA_4444_32f_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709, VUY?_4444_32f_709, VUYP_4444_8u_709, VUYX_4444_8u_709"},
    {"BGRA_4444_32f", "BGRA_4444_8u", "ARGB_4444_8u, BGRA_4444_8u"},
    {"BGRA_4444_32f", "BGRP_4444_32f", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_8u, BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_8u, PRGB_4444_15u, PRGB_4444_8u, RGB_444_10u, XRGB_4444_15u, XRGB_4444_8u"},
    {"BGRA_4444_32f", "ARGB_4444_32f", "?RGB_4444_32f"},
    {"BGRA_4444_32f", "BGRA_4444_15u", "ARGB_4444_15u, BGRA_4444_15u"},
    {"BGRA_4444_32f", "BGRA_4444_32f_Linear", "?RGB_4444_32f_Linear, BGR?_4444_32f_Linear"},
    {"BGRP_4444_32f", "VUYP_4444_32f", "UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u, VUY?_4444_32f, VUY?_4444_8u"},
    {"BGRP_4444_32f", "VUYP_4444_32f_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709, VUY?_4444_32f_709, VUY?_4444_8u_709"},
    {"BGRP_4444_32f", "BGRA_4444_32f", "?RGB_4444_32f_Linear, ARGB_4444_15u, ARGB_4444_8u, BGR?_4444_32f_Linear, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_8u"},
    {"BGRP_4444_32f", "BGRP_4444_8u", "BGRP_4444_8u, PRGB_4444_8u"},
    {"BGRP_4444_32f", "BGRX_4444_32f", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_8u, XRGB_4444_15u, XRGB_4444_8u"},
    {"BGRP_4444_32f", "PRGB_4444_32f", "?RGB_4444_32f"},
    {"BGRP_4444_32f", "BGRP_4444_15u", "BGRP_4444_15u, PRGB_4444_15u"},
    {"BGRP_4444_32f", "RGB_444_10u", "RGB_444_10u"},
    {"BGRX_4444_32f", "BGRA_4444_32f", "ARGB_4444_15u, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, BGRA_4444_8u, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"BGRX_4444_32f", "BGRP_4444_32f", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"BGRX_4444_32f", "VUYX_4444_32f", "UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u, VUYX_4444_32f, VUYX_4444_8u"},
    {"BGRX_4444_32f", "VUYX_4444_32f_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709, VUYX_4444_32f_709, VUYX_4444_8u_709"},
    {"BGRX_4444_32f", "BGRX_4444_8u", "BGRX_4444_8u, XRGB_4444_8u"},
    {"BGRX_4444_32f", "XRGB_4444_32f", "?RGB_4444_32f"},
    {"BGRX_4444_32f", "BGRX_4444_15u", "BGRX_4444_15u, XRGB_4444_15u"},
    {"BGRX_4444_32f", "BGRX_4444_32f_Linear", "BGRX_4444_32f_Linear, XRGB_4444_32f_Linear"},
    {"BGRX_4444_32f", "RGB_444_10u", "RGB_444_10u"},
    {"ARGB_4444_8u", "BGRA_4444_8u", "?RGB_4444_32f_Linear, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, PRGB_4444_15u, PRGB_4444_32f, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709), XRGB_4444_15u, XRGB_4444_32f"},
    {"ARGB_4444_8u", "PRGB_4444_8u", "PRGB_4444_8u, XRGB_4444_8u"},
    {"ARGB_4444_8u", "ARGB_4444_32f", "ARGB_4444_32f"},
    {"ARGB_4444_8u", "ARGB_4444_15u", "ARGB_4444_15u"},
    {"PRGB_4444_8u", "BGRP_4444_8u", "?RGB_4444_32f_Linear, ARGB_4444_15u, ARGB_4444_32f, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709), XRGB_4444_15u, XRGB_4444_32f"},
    {"PRGB_4444_8u", "ARGB_4444_8u", "ARGB_4444_8u"},
    {"PRGB_4444_8u", "XRGB_4444_8u", "XRGB_4444_8u"},
    {"PRGB_4444_8u", "PRGB_4444_32f", "PRGB_4444_32f"},
    {"PRGB_4444_8u", "PRGB_4444_15u", "PRGB_4444_15u"},
    {"XRGB_4444_8u", "ARGB_4444_8u", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"XRGB_4444_8u", "PRGB_4444_8u", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"XRGB_4444_8u", "BGRX_4444_8u", "BGR?_4444_8u, BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUYX_4444_32f (+709), VUYX_4444_8u (+709), XRGB_4444_32f_Linear"},
    {"XRGB_4444_8u", "XRGB_4444_32f", "XRGB_4444_32f"},
    {"XRGB_4444_8u", "XRGB_4444_15u", "XRGB_4444_15u"},
    {"ARGB_4444_32f", "BGRA_4444_32f", "?RGB_4444_32f_Linear, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, PRGB_4444_15u, PRGB_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709), XRGB_4444_15u, XRGB_4444_8u"},
    {"ARGB_4444_32f", "ARGB_4444_8u", "ARGB_4444_8u"},
    {"ARGB_4444_32f", "PRGB_4444_32f", "PRGB_4444_32f, XRGB_4444_32f"},
    {"ARGB_4444_32f", "ARGB_4444_15u", "ARGB_4444_15u"},
    {"PRGB_4444_32f", "BGRP_4444_32f", "?RGB_4444_32f_Linear, ARGB_4444_15u, ARGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709), XRGB_4444_15u, XRGB_4444_8u"},
    {"PRGB_4444_32f", "PRGB_4444_8u", "PRGB_4444_8u"},
    {"PRGB_4444_32f", "ARGB_4444_32f", "ARGB_4444_32f"},
    {"PRGB_4444_32f", "XRGB_4444_32f", "XRGB_4444_32f"},
    {"PRGB_4444_32f", "PRGB_4444_15u", "PRGB_4444_15u"},
    {"XRGB_4444_32f", "ARGB_4444_32f", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f_Linear, BGRA_4444_8u, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"XRGB_4444_32f", "PRGB_4444_32f", "BGRP_4444_15u, BGRP_4444_32f_Linear, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"XRGB_4444_32f", "BGRX_4444_32f", "BGR?_4444_32f, BGRX_4444_15u, BGRX_4444_32f_Linear, BGRX_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUYX_4444_32f (+709), VUYX_4444_8u (+709), XRGB_4444_32f_Linear"},
    {"XRGB_4444_32f", "XRGB_4444_8u", "XRGB_4444_8u"},
    {"XRGB_4444_32f", "XRGB_4444_15u", "XRGB_4444_15u"},
    {"UYVY_422_8u", "VUYA_4444_8u", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, VUYA_4444_32f, VUYA_4444_8u"},
    {"UYVY_422_8u", "VUYP_4444_8u", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f, VUYP_4444_8u"},
    {"UYVY_422_8u", "VUYX_4444_8u", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, RGB_444_10u, VUYX_4444_32f, VUYX_4444_8u, XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_32f_Linear, XRGB_4444_8u"},
    {"UYVY_422_8u", "UYVY_422_8u_709", "UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709, VUY?_4444_32f_709, VUY?_4444_8u_709"},
    {"UYVY_422_8u", "BGRA_4444_8u", "BGRA_4444_8u"},
    {"UYVY_422_8u", "BGRP_4444_8u", "BGRP_4444_8u"},
    {"UYVY_422_8u", "BGRX_4444_8u", "BGRX_4444_8u"},
    {"UYVY_422_8u", "YUYV_422_8u", "YUYV_422_32f, YUYV_422_8u"},
    {"UYVY_422_8u", "UYVY_422_32f", "UYVY_422_32f"},
    {"UYVY_422_8u", "V210_422_10u", "V210_422_10u"},
    {"UYVY_422_8u_709", "UYVY_422_8u", "UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u, VUY?_4444_32f, VUY?_4444_8u"},
    {"UYVY_422_8u_709", "VUYA_4444_8u_709", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, VUYA_4444_32f_709, VUYA_4444_8u_709"},
    {"UYVY_422_8u_709", "VUYP_4444_8u_709", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f_709, VUYP_4444_8u_709"},
    {"UYVY_422_8u_709", "VUYX_4444_8u_709", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, RGB_444_10u, VUYX_4444_32f_709, VUYX_4444_8u_709, XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_32f_Linear, XRGB_4444_8u"},
    {"UYVY_422_8u_709", "BGRA_4444_8u", "BGRA_4444_8u"},
    {"UYVY_422_8u_709", "BGRP_4444_8u", "BGRP_4444_8u"},
    {"UYVY_422_8u_709", "BGRX_4444_8u", "BGRX_4444_8u"},
    {"UYVY_422_8u_709", "YUYV_422_8u_709", "YUYV_422_32f_709, YUYV_422_8u_709"},
    {"UYVY_422_8u_709", "UYVY_422_32f_709", "UYVY_422_32f_709"},
    {"UYVY_422_8u_709", "V210_422_10u_709", "V210_422_10u_709"},
    {"YUYV_422_8u", "VUYA_4444_8u", "VUYA_4444_8u"},
    {"YUYV_422_8u", "VUYP_4444_8u", "VUYP_4444_8u"},
    {"YUYV_422_8u", "VUYX_4444_8u", "VUYX_4444_8u"},
    {"YUYV_422_8u", "UYVY_422_8u", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, RGB_444_10u, UYVY_422_32f, UYVY_422_8u (+709), UYVY+YUYV_422_32f_709, V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u_709"},
    {"YUYV_422_8u", "BGRA_4444_8u", "BGRA_4444_8u"},
    {"YUYV_422_8u", "BGRP_4444_8u", "BGRP_4444_8u"},
    {"YUYV_422_8u", "BGRX_4444_8u", "BGRX_4444_8u"},
    {"YUYV_422_8u", "YUYV_422_8u_709", "YUYV_422_8u_709"},
    {"YUYV_422_8u", "YUYV_422_32f", "YUYV_422_32f"},
    {"YUYV_422_8u_709", "UYVY_422_8u_709", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, RGB_444_10u, UYVY_422_32f_709, UYVY_422_8u (+709), UYVY+YUYV_422_32f, V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u"},
    {"YUYV_422_8u_709", "VUYA_4444_8u_709", "VUYA_4444_8u_709"},
    {"YUYV_422_8u_709", "VUYP_4444_8u_709", "VUYP_4444_8u_709"},
    {"YUYV_422_8u_709", "VUYX_4444_8u_709", "VUYX_4444_8u_709"},
    {"YUYV_422_8u_709", "BGRA_4444_8u", "BGRA_4444_8u"},
    {"YUYV_422_8u_709", "BGRP_4444_8u", "BGRP_4444_8u"},
    {"YUYV_422_8u_709", "BGRX_4444_8u", "BGRX_4444_8u"},
    {"YUYV_422_8u_709", "YUYV_422_8u", "YUYV_422_8u"},
    {"YUYV_422_8u_709", "YUYV_422_32f_709", "YUYV_422_32f_709"},
    {"UYVY_422_32f", "VUYA_4444_32f", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, BGRA_4444_8u, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"UYVY_422_32f", "VUYP_4444_32f", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"UYVY_422_32f", "VUYX_4444_32f", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, BGRX_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u_709, VUYX_4444_32f (+709), VUYX_4444_8u (+709), XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_32f_Linear, XRGB_4444_8u"},
    {"UYVY_422_32f", "UYVY_422_8u", "UYVY+YUYV_422_8u"},
    {"UYVY_422_32f", "YUYV_422_32f", "YUYV_422_32f"},
    {"UYVY_422_32f", "V210_422_10u", "V210_422_10u"},
    {"UYVY_422_32f_709", "VUYA_4444_32f_709", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, BGRA_4444_8u, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"UYVY_422_32f_709", "VUYP_4444_32f_709", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"UYVY_422_32f_709", "VUYX_4444_32f_709", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_32f_Linear, BGRX_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u, VUYX_4444_32f (+709), VUYX_4444_8u (+709), XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_32f_Linear, XRGB_4444_8u"},
    {"UYVY_422_32f_709", "UYVY_422_8u_709", "UYVY+YUYV_422_8u_709"},
    {"UYVY_422_32f_709", "YUYV_422_32f_709", "YUYV_422_32f_709"},
    {"UYVY_422_32f_709", "V210_422_10u_709", "V210_422_10u_709"},
    {"YUYV_422_32f", "UYVY_422_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u, UYVY_422_32f, UYVY_422_8u, UYVY+YUYV_422_32f_709, UYVY+YUYV_422_8u_709, V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709)"},
    {"YUYV_422_32f", "YUYV_422_8u", "YUYV_422_8u"},
    {"YUYV_422_32f_709", "UYVY_422_32f_709", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u, UYVY_422_32f_709, UYVY_422_8u_709, UYVY+YUYV_422_32f, UYVY+YUYV_422_8u, V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709)"},
    {"YUYV_422_32f_709", "YUYV_422_8u_709", "YUYV_422_8u_709"},
    {"V210_422_10u", "VUYA_4444_8u", "VUYA_4444_8u"},
    {"V210_422_10u", "VUYP_4444_8u", "VUYP_4444_8u"},
    {"V210_422_10u", "VUYX_4444_8u", "VUYX_4444_8u"},
    {"V210_422_10u", "UYVY_422_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u_709, V210_422_10u_709, VUY?_4444_32f (+709), VUY?_4444_8u_709, YUYV_422_8u"},
    {"V210_422_10u", "BGRA_4444_8u", "BGRA_4444_8u"},
    {"V210_422_10u", "BGRP_4444_8u", "BGRP_4444_8u"},
    {"V210_422_10u", "BGRX_4444_8u", "BGRX_4444_8u"},
    {"V210_422_10u", "UYVY_422_8u", "UYVY_422_8u"},
    {"V210_422_10u_709", "VUYA_4444_8u", "VUYA_4444_8u"},
    {"V210_422_10u_709", "VUYP_4444_8u", "VUYP_4444_8u"},
    {"V210_422_10u_709", "VUYX_4444_8u", "VUYX_4444_8u"},
    {"V210_422_10u_709", "VUYA_4444_8u_709", "VUYA_4444_8u_709"},
    {"V210_422_10u_709", "VUYP_4444_8u_709", "VUYP_4444_8u_709"},
    {"V210_422_10u_709", "VUYX_4444_8u_709", "VUYX_4444_8u_709"},
    {"V210_422_10u_709", "UYVY_422_32f_709", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_32f_Linear, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, RGB_444_10u, UYVY+YUYV_422_32f (+709), V210_422_10u, VUY?_4444_32f (+709), YUYV_422_8u (+709)"},
    {"V210_422_10u_709", "BGRA_4444_8u", "BGRA_4444_8u"},
    {"V210_422_10u_709", "BGRP_4444_8u", "BGRP_4444_8u"},
    {"V210_422_10u_709", "BGRX_4444_8u", "BGRX_4444_8u"},
    {"V210_422_10u_709", "UYVY_422_8u_709", "UYVY_422_8u (+709)"},
    {"BGRA_4444_15u", "BGRA_4444_8u", "?RGB_4444_8u, BGR?_4444_8u, UYVY+YUYV_422_8u (+709), VUY?_4444_8u (+709)"},
    {"BGRA_4444_15u", "BGRA_4444_32f", "?RGB_4444_32f, ?RGB_4444_32f_Linear, BGR?_4444_32f, BGR?_4444_32f_Linear, UYVY+YUYV_422_32f (+709), V210_422_10u (+709), VUY?_4444_32f (+709)"},
    {"BGRA_4444_15u", "BGRP_4444_15u", "BGRP_4444_15u, BGRX_4444_15u, RGB_444_10u"},
    {"BGRA_4444_15u", "ARGB_4444_15u", "?RGB_4444_15u"},
    {"BGRP_4444_15u", "BGRP_4444_8u", "?RGB_4444_8u, BGR?_4444_8u, UYVY+YUYV_422_8u (+709), VUY?_4444_8u (+709)"},
    {"BGRP_4444_15u", "BGRP_4444_32f", "?RGB_4444_32f, ?RGB_4444_32f_Linear, BGR?_4444_32f, BGR?_4444_32f_Linear, UYVY+YUYV_422_32f (+709), V210_422_10u (+709), VUY?_4444_32f (+709)"},
    {"BGRP_4444_15u", "BGRA_4444_15u", "BGRA_4444_15u"},
    {"BGRP_4444_15u", "BGRX_4444_15u", "BGRX_4444_15u"},
    {"BGRP_4444_15u", "PRGB_4444_15u", "?RGB_4444_15u"},
    {"BGRP_4444_15u", "RGB_444_10u", "RGB_444_10u"},
    {"BGRX_4444_15u", "BGRX_4444_8u", "?RGB_4444_8u, BGR?_4444_8u, UYVY+YUYV_422_8u (+709), VUY?_4444_8u (+709)"},
    {"BGRX_4444_15u", "BGRX_4444_32f", "?RGB_4444_32f, ?RGB_4444_32f_Linear, BGR?_4444_32f, BGR?_4444_32f_Linear, UYVY+YUYV_422_32f (+709), V210_422_10u (+709), VUY?_4444_32f (+709)"},
    {"BGRX_4444_15u", "BGRA_4444_15u", "BGRA_4444_15u"},
    {"BGRX_4444_15u", "BGRP_4444_15u", "BGRP_4444_15u"},
    {"BGRX_4444_15u", "XRGB_4444_15u", "?RGB_4444_15u"},
    {"BGRX_4444_15u", "RGB_444_10u", "RGB_444_10u"},
    {"ARGB_4444_15u", "BGRA_4444_15u", "?RGB_4444_32f_Linear, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, PRGB_4444_32f, PRGB_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709), XRGB_4444_32f, XRGB_4444_8u"},
    {"ARGB_4444_15u", "ARGB_4444_8u", "ARGB_4444_8u"},
    {"ARGB_4444_15u", "ARGB_4444_32f", "ARGB_4444_32f"},
    {"ARGB_4444_15u", "PRGB_4444_15u", "PRGB_4444_15u, XRGB_4444_15u"},
    {"PRGB_4444_15u", "BGRP_4444_15u", "?RGB_4444_32f_Linear, ARGB_4444_32f, ARGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709), XRGB_4444_32f, XRGB_4444_8u"},
    {"PRGB_4444_15u", "PRGB_4444_8u", "PRGB_4444_8u"},
    {"PRGB_4444_15u", "PRGB_4444_32f", "PRGB_4444_32f"},
    {"PRGB_4444_15u", "ARGB_4444_15u", "ARGB_4444_15u"},
    {"PRGB_4444_15u", "XRGB_4444_15u", "XRGB_4444_15u"},
    {"XRGB_4444_15u", "BGRX_4444_15u", "?RGB_4444_32f_Linear, ARGB_4444_32f, ARGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, PRGB_4444_32f, PRGB_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709)"},
    {"XRGB_4444_15u", "XRGB_4444_8u", "XRGB_4444_8u"},
    {"XRGB_4444_15u", "XRGB_4444_32f", "XRGB_4444_32f"},
    {"XRGB_4444_15u", "ARGB_4444_15u", "ARGB_4444_15u"},
    {"XRGB_4444_15u", "PRGB_4444_15u", "PRGB_4444_15u"},
    {"BGRA_4444_32f_Linear", "BGRA_4444_32f", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGRP_4444_8u, BGRX_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709)"},
    {"BGRA_4444_32f_Linear", "BGRA_4444_8u", "BGRA_4444_8u"},
    {"BGRA_4444_32f_Linear", "BGRP_4444_32f_Linear", "BGRP_4444_32f_Linear, BGRX_4444_32f_Linear"},
    {"BGRA_4444_32f_Linear", "ARGB_4444_32f_Linear", "?RGB_4444_32f_Linear"},
    {"BGRP_4444_32f_Linear", "BGRA_4444_32f_Linear", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_8u, BGRA_4444_32f_Linear, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709)"},
    {"BGRP_4444_32f_Linear", "BGRX_4444_32f_Linear", "BGRX_4444_32f_Linear"},
    {"BGRP_4444_32f_Linear", "PRGB_4444_32f_Linear", "?RGB_4444_32f_Linear"},
    {"BGRX_4444_32f_Linear", "BGRA_4444_32f_Linear", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_32f_Linear, BGRA_4444_8u, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"BGRX_4444_32f_Linear", "BGRP_4444_32f_Linear", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_32f_Linear, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"BGRX_4444_32f_Linear", "BGRX_4444_32f", "BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUYX_4444_32f (+709), VUYX_4444_8u (+709), XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_8u"},
    {"BGRX_4444_32f_Linear", "XRGB_4444_32f_Linear", "?RGB_4444_32f_Linear"},
    {"ARGB_4444_32f_Linear", "BGRA_4444_32f_Linear", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709)"},
    {"ARGB_4444_32f_Linear", "PRGB_4444_32f_Linear", "PRGB_4444_32f_Linear, XRGB_4444_32f_Linear"},
    {"PRGB_4444_32f_Linear", "BGRP_4444_32f_Linear", "?RGB_4444_15u, ?RGB_4444_32f, ?RGB_4444_8u, BGR?_4444_15u, BGR?_4444_32f, BGR?_4444_32f_Linear, BGR?_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUY?_4444_32f (+709), VUY?_4444_8u (+709)"},
    {"PRGB_4444_32f_Linear", "ARGB_4444_32f_Linear", "ARGB_4444_32f_Linear"},
    {"PRGB_4444_32f_Linear", "XRGB_4444_32f_Linear", "XRGB_4444_32f_Linear"},
    {"XRGB_4444_32f_Linear", "ARGB_4444_32f_Linear", "ARGB_4444_15u, ARGB_4444_32f, ARGB_4444_32f_Linear, ARGB_4444_8u, BGRA_4444_15u, BGRA_4444_32f, BGRA_4444_8u, VUYA_4444_32f (+709), VUYA_4444_8u (+709)"},
    {"XRGB_4444_32f_Linear", "PRGB_4444_32f_Linear", "BGRP_4444_15u, BGRP_4444_32f, BGRP_4444_8u, PRGB_4444_15u, PRGB_4444_32f, PRGB_4444_32f_Linear, PRGB_4444_8u, VUYP_4444_32f (+709), VUYP_4444_8u (+709)"},
    {"XRGB_4444_32f_Linear", "BGRX_4444_32f_Linear", "BGR?_4444_32f_Linear, BGRX_4444_15u, BGRX_4444_32f, BGRX_4444_8u, RGB_444_10u, UYVY+YUYV_422_32f (+709), UYVY+YUYV_422_8u (+709), V210_422_10u (+709), VUYX_4444_32f (+709), VUYX_4444_8u (+709), XRGB_4444_15u, XRGB_4444_32f, XRGB_4444_8u"},
    {"RGB_444_10u", "BGRA_4444_8u", "ARGB_4444_8u, BGRA_4444_8u, VUYA_4444_8u (+709)"},
    {"RGB_444_10u", "BGRP_4444_8u", "BGRP_4444_8u, PRGB_4444_8u, VUYP_4444_8u (+709)"},
    {"RGB_444_10u", "BGRX_4444_8u", "BGRX_4444_8u, UYVY+YUYV_422_8u (+709), VUYX_4444_8u (+709), XRGB_4444_8u"},
    {"RGB_444_10u", "BGRA_4444_32f", "ARGB_4444_32f, ARGB_4444_32f_Linear, BGRA_4444_32f, BGRA_4444_32f_Linear, VUYA_4444_32f (+709)"},
    {"RGB_444_10u", "BGRP_4444_32f", "BGRP_4444_32f, BGRP_4444_32f_Linear, PRGB_4444_32f, PRGB_4444_32f_Linear, VUYP_4444_32f (+709)"},
    {"RGB_444_10u", "BGRX_4444_32f", "BGRX_4444_32f, BGRX_4444_32f_Linear, UYVY+YUYV_422_32f (+709), V210_422_10u (+709), VUYX_4444_32f (+709), XRGB_4444_32f, XRGB_4444_32f_Linear"},
    {"RGB_444_10u", "BGRA_4444_15u", "ARGB_4444_15u, BGRA_4444_15u"},
    {"RGB_444_10u", "BGRP_4444_15u", "BGRP_4444_15u, PRGB_4444_15u"},
    {"RGB_444_10u", "BGRX_4444_15u", "BGRX_4444_15u, XRGB_4444_15u"},
};
// clang-format on

std::vector<std::string> SplitItems(const char* list) {
  std::vector<std::string> items;
  std::string current;
  for (const char* p = list;; ++p) {
    if (*p == ',' || *p == 0) {
      size_t b = current.find_first_not_of(' ');
      size_t e = current.find_last_not_of(' ');
      if (b != std::string::npos) items.push_back(current.substr(b, e - b + 1));
      current.clear();
      if (*p == 0) break;
    } else {
      current += *p;
    }
  }
  return items;
}

struct RouteLookup {
  // Landing format index + 1 for each (in hand, destination) pair; 0 where no row names it.
  uint8_t fLandsOn[kRawFormatCount][kRawFormatCount] = {};
  RouteTableReport fReport{};
};

RouteLookup BuildLookup() {
  RouteLookup lookup;
  RouteTableReport& report = lookup.fReport;
  report.fRowCount = int(sizeof(kRouteRows) / sizeof(kRouteRows[0]));
  for (const RouteRow& row : kRouteRows) {
    const int from = RawFormatIndex(RawFormatByName(row.fInHand));
    const int to = RawFormatIndex(RawFormatByName(row.fLandsOn));
    if (from < 0 || to < 0) {
      report.fProblems.push_back(std::string("row ") + row.fInHand + " -> " + row.fLandsOn + ": not a raw format");
      continue;
    }
    for (const std::string& item : SplitItems(row.fDestinations)) {
      for (const std::string& name : ExpandRouteGroup(item)) {
        const int d = RawFormatIndex(RawFormatByName(name));
        if (d < 0) {
          report.fProblems.push_back(std::string("row ") + row.fInHand + " -> " + row.fLandsOn + ": unknown name " +
                                     name);
          continue;
        }
        if (d == from) {
          report.fProblems.push_back(std::string("row ") + row.fInHand + " names itself as a destination");
          continue;
        }
        ++report.fCoverage[from][d];
        lookup.fLandsOn[from][d] = uint8_t(to + 1);
      }
    }
  }
  return lookup;
}

const RouteLookup& Lookup() {
  static const RouteLookup lookup = BuildLookup();
  return lookup;
}

}  // namespace

int RawFormatIndex(OX_PixelFormat format) {
  for (int i = 0; i < kRawFormatCount; ++i)
    if (kRawFormats[i] == format) return i;
  return -1;
}

OX_PixelFormat RawFormatByName(const std::string& name) {
  // RGB_444_10u is the one raw format without a record in the name table.
  if (name == "RGB_444_10u") return OX_PixelFormat_RGB_444_10u;
  if (name == "Invalid") return 0;
  for (const FormatNameRecord& r : kFormatNameTable)
    if (IsRawFormat(r.fCode) && name == r.fName) return r.fCode;
  return 0;
}

const char* RouteFormatName(OX_PixelFormat format) {
  return format == OX_PixelFormat_RGB_444_10u ? "RGB_444_10u" : PixelFormatName(format);
}

std::vector<std::string> ExpandRouteGroup(const std::string& item) {
  std::string base = item;
  bool with709 = false;
  const std::string kPlus709 = " (+709)";
  if (base.size() > kPlus709.size() && base.compare(base.size() - kPlus709.size(), kPlus709.size(), kPlus709) == 0) {
    with709 = true;
    base.resize(base.size() - kPlus709.size());
  }
  std::vector<std::string> names{base};
  const std::string kBothOrders = "UYVY+YUYV";
  if (base.compare(0, kBothOrders.size(), kBothOrders) == 0) {
    const std::string rest = base.substr(kBothOrders.size());
    names = {"UYVY" + rest, "YUYV" + rest};
  }
  std::vector<std::string> alphaForms;
  for (const std::string& n : names) {
    const size_t q = n.find('?');
    if (q == std::string::npos) {
      alphaForms.push_back(n);
      continue;
    }
    for (char a : {'A', 'P', 'X'}) {
      std::string s = n;
      s[q] = a;
      alphaForms.push_back(s);
    }
  }
  std::vector<std::string> out;
  for (const std::string& n : alphaForms) {
    out.push_back(n);
    if (with709) out.push_back(n + "_709");
  }
  return out;
}

OX_PixelFormat RouteLandsOn(OX_PixelFormat current, OX_PixelFormat destination) {
  const int from = RawFormatIndex(current);
  const int to = RawFormatIndex(destination);
  if (from < 0 || to < 0) return 0;
  const uint8_t landing = Lookup().fLandsOn[from][to];
  return landing ? kRawFormats[landing - 1] : 0;
}

const RouteTableReport& RouteTableCheck() { return Lookup().fReport; }

}  // namespace OX
