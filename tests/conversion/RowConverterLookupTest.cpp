// The lookup gives a converter for every step a conversion route takes, and for the alpha,
// depth and order steps that the step chooser derives from the format bits; and nothing for
// formats that are not neighbours.
#include <gtest/gtest.h>

#include "conversion/ConverterFamilies.h"
#include "frame/PixelFormat.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

struct Pair {
  OX_PixelFormat fFrom, fTo;
};

// Every (format in hand, format the step lands on) of the conversion routes.
constexpr Pair kRouteSteps[] = {
    {OX_PixelFormat_ARGB_4444_15u, OX_PixelFormat_ARGB_4444_32f},
    {OX_PixelFormat_ARGB_4444_15u, OX_PixelFormat_ARGB_4444_8u},
    {OX_PixelFormat_ARGB_4444_15u, OX_PixelFormat_BGRA_4444_15u},
    {OX_PixelFormat_ARGB_4444_15u, OX_PixelFormat_PRGB_4444_15u},
    {OX_PixelFormat_ARGB_4444_32f, OX_PixelFormat_ARGB_4444_15u},
    {OX_PixelFormat_ARGB_4444_32f, OX_PixelFormat_ARGB_4444_8u},
    {OX_PixelFormat_ARGB_4444_32f, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_ARGB_4444_32f, OX_PixelFormat_PRGB_4444_32f},
    {OX_PixelFormat_ARGB_4444_32f_Linear, OX_PixelFormat_BGRA_4444_32f_Linear},
    {OX_PixelFormat_ARGB_4444_32f_Linear, OX_PixelFormat_PRGB_4444_32f_Linear},
    {OX_PixelFormat_ARGB_4444_8u, OX_PixelFormat_ARGB_4444_15u},
    {OX_PixelFormat_ARGB_4444_8u, OX_PixelFormat_ARGB_4444_32f},
    {OX_PixelFormat_ARGB_4444_8u, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_ARGB_4444_8u, OX_PixelFormat_PRGB_4444_8u},
    {OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_ARGB_4444_15u},
    {OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_BGRP_4444_15u},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_ARGB_4444_32f},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_BGRA_4444_15u},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_BGRA_4444_32f_Linear},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_VUYA_4444_32f},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_VUYA_4444_32f_709},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_VUYA_4444_8u},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_VUYA_4444_8u_709},
    {OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_ARGB_4444_32f_Linear},
    {OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_BGRP_4444_32f_Linear},
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_ARGB_4444_8u},
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRA_4444_15u},
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRA_4444_32f_Linear},
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_VUYA_4444_8u},
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_VUYA_4444_8u_709},
    {OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_BGRA_4444_15u},
    {OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_BGRX_4444_15u},
    {OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_PRGB_4444_15u},
    {OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_RGB_444_10u},
    {OX_PixelFormat_BGRP_4444_32f, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_BGRP_4444_32f, OX_PixelFormat_BGRP_4444_15u},
    {OX_PixelFormat_BGRP_4444_32f, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_BGRP_4444_32f, OX_PixelFormat_BGRX_4444_32f},
    {OX_PixelFormat_BGRP_4444_32f, OX_PixelFormat_PRGB_4444_32f},
    {OX_PixelFormat_BGRP_4444_32f, OX_PixelFormat_RGB_444_10u},
    {OX_PixelFormat_BGRP_4444_32f, OX_PixelFormat_VUYP_4444_32f},
    {OX_PixelFormat_BGRP_4444_32f, OX_PixelFormat_VUYP_4444_32f_709},
    {OX_PixelFormat_BGRP_4444_32f_Linear, OX_PixelFormat_BGRA_4444_32f_Linear},
    {OX_PixelFormat_BGRP_4444_32f_Linear, OX_PixelFormat_BGRX_4444_32f_Linear},
    {OX_PixelFormat_BGRP_4444_32f_Linear, OX_PixelFormat_PRGB_4444_32f_Linear},
    {OX_PixelFormat_BGRP_4444_8u, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_BGRP_4444_8u, OX_PixelFormat_BGRP_4444_15u},
    {OX_PixelFormat_BGRP_4444_8u, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_BGRP_4444_8u, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_BGRP_4444_8u, OX_PixelFormat_PRGB_4444_8u},
    {OX_PixelFormat_BGRP_4444_8u, OX_PixelFormat_RGB_444_10u},
    {OX_PixelFormat_BGRP_4444_8u, OX_PixelFormat_VUYP_4444_8u},
    {OX_PixelFormat_BGRP_4444_8u, OX_PixelFormat_VUYP_4444_8u_709},
    {OX_PixelFormat_BGRX_4444_15u, OX_PixelFormat_BGRA_4444_15u},
    {OX_PixelFormat_BGRX_4444_15u, OX_PixelFormat_BGRP_4444_15u},
    {OX_PixelFormat_BGRX_4444_15u, OX_PixelFormat_BGRX_4444_32f},
    {OX_PixelFormat_BGRX_4444_15u, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_BGRX_4444_15u, OX_PixelFormat_RGB_444_10u},
    {OX_PixelFormat_BGRX_4444_15u, OX_PixelFormat_XRGB_4444_15u},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_BGRX_4444_15u},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_BGRX_4444_32f_Linear},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_RGB_444_10u},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_VUYX_4444_32f},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_VUYX_4444_32f_709},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_XRGB_4444_32f},
    {OX_PixelFormat_BGRX_4444_32f_Linear, OX_PixelFormat_BGRA_4444_32f_Linear},
    {OX_PixelFormat_BGRX_4444_32f_Linear, OX_PixelFormat_BGRP_4444_32f_Linear},
    {OX_PixelFormat_BGRX_4444_32f_Linear, OX_PixelFormat_BGRX_4444_32f},
    {OX_PixelFormat_BGRX_4444_32f_Linear, OX_PixelFormat_XRGB_4444_32f_Linear},
    {OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_BGRX_4444_15u},
    {OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_BGRX_4444_32f},
    {OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_VUYX_4444_8u},
    {OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_VUYX_4444_8u_709},
    {OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_XRGB_4444_8u},
    {OX_PixelFormat_PRGB_4444_15u, OX_PixelFormat_ARGB_4444_15u},
    {OX_PixelFormat_PRGB_4444_15u, OX_PixelFormat_BGRP_4444_15u},
    {OX_PixelFormat_PRGB_4444_15u, OX_PixelFormat_PRGB_4444_32f},
    {OX_PixelFormat_PRGB_4444_15u, OX_PixelFormat_PRGB_4444_8u},
    {OX_PixelFormat_PRGB_4444_15u, OX_PixelFormat_XRGB_4444_15u},
    {OX_PixelFormat_PRGB_4444_32f, OX_PixelFormat_ARGB_4444_32f},
    {OX_PixelFormat_PRGB_4444_32f, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_PRGB_4444_32f, OX_PixelFormat_PRGB_4444_15u},
    {OX_PixelFormat_PRGB_4444_32f, OX_PixelFormat_PRGB_4444_8u},
    {OX_PixelFormat_PRGB_4444_32f, OX_PixelFormat_XRGB_4444_32f},
    {OX_PixelFormat_PRGB_4444_32f_Linear, OX_PixelFormat_ARGB_4444_32f_Linear},
    {OX_PixelFormat_PRGB_4444_32f_Linear, OX_PixelFormat_BGRP_4444_32f_Linear},
    {OX_PixelFormat_PRGB_4444_32f_Linear, OX_PixelFormat_XRGB_4444_32f_Linear},
    {OX_PixelFormat_PRGB_4444_8u, OX_PixelFormat_ARGB_4444_8u},
    {OX_PixelFormat_PRGB_4444_8u, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_PRGB_4444_8u, OX_PixelFormat_PRGB_4444_15u},
    {OX_PixelFormat_PRGB_4444_8u, OX_PixelFormat_PRGB_4444_32f},
    {OX_PixelFormat_PRGB_4444_8u, OX_PixelFormat_XRGB_4444_8u},
    {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRA_4444_15u},
    {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRX_4444_32f},
    {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_UYVY_422_32f, OX_PixelFormat_UYVY_422_8u},
    {OX_PixelFormat_UYVY_422_32f, OX_PixelFormat_V210_422_10u},
    {OX_PixelFormat_UYVY_422_32f, OX_PixelFormat_VUYA_4444_32f},
    {OX_PixelFormat_UYVY_422_32f, OX_PixelFormat_VUYP_4444_32f},
    {OX_PixelFormat_UYVY_422_32f, OX_PixelFormat_VUYX_4444_32f},
    {OX_PixelFormat_UYVY_422_32f, OX_PixelFormat_YUYV_422_32f},
    {OX_PixelFormat_UYVY_422_32f_709, OX_PixelFormat_UYVY_422_8u_709},
    {OX_PixelFormat_UYVY_422_32f_709, OX_PixelFormat_V210_422_10u_709},
    {OX_PixelFormat_UYVY_422_32f_709, OX_PixelFormat_VUYA_4444_32f_709},
    {OX_PixelFormat_UYVY_422_32f_709, OX_PixelFormat_VUYP_4444_32f_709},
    {OX_PixelFormat_UYVY_422_32f_709, OX_PixelFormat_VUYX_4444_32f_709},
    {OX_PixelFormat_UYVY_422_32f_709, OX_PixelFormat_YUYV_422_32f_709},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_UYVY_422_32f},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_UYVY_422_8u_709},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_V210_422_10u},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_VUYA_4444_8u},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_VUYP_4444_8u},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_VUYX_4444_8u},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_YUYV_422_8u},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_UYVY_422_32f_709},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_UYVY_422_8u},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_V210_422_10u_709},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_VUYA_4444_8u_709},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_VUYP_4444_8u_709},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_VUYX_4444_8u_709},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_YUYV_422_8u_709},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_UYVY_422_32f},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_UYVY_422_8u},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_VUYA_4444_8u},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_VUYP_4444_8u},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_VUYX_4444_8u},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_UYVY_422_32f_709},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_UYVY_422_8u_709},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYA_4444_8u},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYA_4444_8u_709},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYP_4444_8u},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYP_4444_8u_709},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYX_4444_8u},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYX_4444_8u_709},
    {OX_PixelFormat_VUYA_4444_32f, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_VUYA_4444_32f, OX_PixelFormat_VUYA_4444_32f_709},
    {OX_PixelFormat_VUYA_4444_32f, OX_PixelFormat_VUYA_4444_8u},
    {OX_PixelFormat_VUYA_4444_32f, OX_PixelFormat_VUYP_4444_32f},
    {OX_PixelFormat_VUYA_4444_32f_709, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_VUYA_4444_32f_709, OX_PixelFormat_VUYA_4444_32f},
    {OX_PixelFormat_VUYA_4444_32f_709, OX_PixelFormat_VUYA_4444_8u_709},
    {OX_PixelFormat_VUYA_4444_32f_709, OX_PixelFormat_VUYP_4444_32f_709},
    {OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_VUYA_4444_32f},
    {OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_VUYA_4444_8u_709},
    {OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_VUYP_4444_32f},
    {OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_BGRA_4444_32f},
    {OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_VUYA_4444_32f_709},
    {OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_VUYA_4444_8u},
    {OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_VUYP_4444_32f_709},
    {OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_VUYP_4444_8u_709},
    {OX_PixelFormat_VUYP_4444_32f, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_VUYP_4444_32f, OX_PixelFormat_UYVY_422_32f},
    {OX_PixelFormat_VUYP_4444_32f, OX_PixelFormat_VUYA_4444_32f},
    {OX_PixelFormat_VUYP_4444_32f, OX_PixelFormat_VUYP_4444_32f_709},
    {OX_PixelFormat_VUYP_4444_32f, OX_PixelFormat_VUYP_4444_8u},
    {OX_PixelFormat_VUYP_4444_32f, OX_PixelFormat_VUYX_4444_32f},
    {OX_PixelFormat_VUYP_4444_32f_709, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_VUYP_4444_32f_709, OX_PixelFormat_UYVY_422_32f_709},
    {OX_PixelFormat_VUYP_4444_32f_709, OX_PixelFormat_VUYA_4444_32f_709},
    {OX_PixelFormat_VUYP_4444_32f_709, OX_PixelFormat_VUYP_4444_32f},
    {OX_PixelFormat_VUYP_4444_32f_709, OX_PixelFormat_VUYP_4444_8u_709},
    {OX_PixelFormat_VUYP_4444_32f_709, OX_PixelFormat_VUYX_4444_32f_709},
    {OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_UYVY_422_8u},
    {OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_VUYA_4444_8u},
    {OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_VUYP_4444_32f},
    {OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_VUYP_4444_8u_709},
    {OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_VUYX_4444_8u},
    {OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_BGRP_4444_32f},
    {OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_UYVY_422_8u_709},
    {OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_VUYA_4444_8u_709},
    {OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_VUYP_4444_32f_709},
    {OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_VUYP_4444_8u},
    {OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_VUYX_4444_8u_709},
    {OX_PixelFormat_VUYX_4444_32f, OX_PixelFormat_BGRX_4444_32f},
    {OX_PixelFormat_VUYX_4444_32f, OX_PixelFormat_UYVY_422_32f},
    {OX_PixelFormat_VUYX_4444_32f, OX_PixelFormat_VUYA_4444_32f},
    {OX_PixelFormat_VUYX_4444_32f, OX_PixelFormat_VUYP_4444_32f},
    {OX_PixelFormat_VUYX_4444_32f, OX_PixelFormat_VUYX_4444_32f_709},
    {OX_PixelFormat_VUYX_4444_32f, OX_PixelFormat_VUYX_4444_8u},
    {OX_PixelFormat_VUYX_4444_32f_709, OX_PixelFormat_BGRX_4444_32f},
    {OX_PixelFormat_VUYX_4444_32f_709, OX_PixelFormat_UYVY_422_32f_709},
    {OX_PixelFormat_VUYX_4444_32f_709, OX_PixelFormat_VUYA_4444_32f_709},
    {OX_PixelFormat_VUYX_4444_32f_709, OX_PixelFormat_VUYP_4444_32f_709},
    {OX_PixelFormat_VUYX_4444_32f_709, OX_PixelFormat_VUYX_4444_32f},
    {OX_PixelFormat_VUYX_4444_32f_709, OX_PixelFormat_VUYX_4444_8u_709},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRX_4444_32f},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_UYVY_422_8u},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_VUYA_4444_8u},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_VUYP_4444_8u},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_VUYP_4444_8u_709},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_VUYX_4444_32f},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_VUYX_4444_8u_709},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_BGRX_4444_32f},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_UYVY_422_8u_709},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_VUYA_4444_8u_709},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_VUYP_4444_8u},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_VUYP_4444_8u_709},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_VUYX_4444_32f_709},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_VUYX_4444_8u},
    {OX_PixelFormat_XRGB_4444_15u, OX_PixelFormat_ARGB_4444_15u},
    {OX_PixelFormat_XRGB_4444_15u, OX_PixelFormat_BGRX_4444_15u},
    {OX_PixelFormat_XRGB_4444_15u, OX_PixelFormat_PRGB_4444_15u},
    {OX_PixelFormat_XRGB_4444_15u, OX_PixelFormat_XRGB_4444_32f},
    {OX_PixelFormat_XRGB_4444_15u, OX_PixelFormat_XRGB_4444_8u},
    {OX_PixelFormat_XRGB_4444_32f, OX_PixelFormat_ARGB_4444_32f},
    {OX_PixelFormat_XRGB_4444_32f, OX_PixelFormat_BGRX_4444_32f},
    {OX_PixelFormat_XRGB_4444_32f, OX_PixelFormat_PRGB_4444_32f},
    {OX_PixelFormat_XRGB_4444_32f, OX_PixelFormat_XRGB_4444_15u},
    {OX_PixelFormat_XRGB_4444_32f, OX_PixelFormat_XRGB_4444_8u},
    {OX_PixelFormat_XRGB_4444_32f_Linear, OX_PixelFormat_ARGB_4444_32f_Linear},
    {OX_PixelFormat_XRGB_4444_32f_Linear, OX_PixelFormat_BGRX_4444_32f_Linear},
    {OX_PixelFormat_XRGB_4444_32f_Linear, OX_PixelFormat_PRGB_4444_32f_Linear},
    {OX_PixelFormat_XRGB_4444_8u, OX_PixelFormat_ARGB_4444_8u},
    {OX_PixelFormat_XRGB_4444_8u, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_XRGB_4444_8u, OX_PixelFormat_PRGB_4444_8u},
    {OX_PixelFormat_XRGB_4444_8u, OX_PixelFormat_XRGB_4444_15u},
    {OX_PixelFormat_XRGB_4444_8u, OX_PixelFormat_XRGB_4444_32f},
    {OX_PixelFormat_YUYV_422_32f, OX_PixelFormat_UYVY_422_32f},
    {OX_PixelFormat_YUYV_422_32f, OX_PixelFormat_YUYV_422_8u},
    {OX_PixelFormat_YUYV_422_32f_709, OX_PixelFormat_UYVY_422_32f_709},
    {OX_PixelFormat_YUYV_422_32f_709, OX_PixelFormat_YUYV_422_8u_709},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_UYVY_422_8u},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_VUYA_4444_8u},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_VUYP_4444_8u},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_VUYX_4444_8u},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_YUYV_422_32f},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_YUYV_422_8u_709},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_BGRA_4444_8u},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_BGRP_4444_8u},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_BGRX_4444_8u},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_UYVY_422_8u_709},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_VUYA_4444_8u_709},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_VUYP_4444_8u_709},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_VUYX_4444_8u_709},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_YUYV_422_32f_709},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_YUYV_422_8u},
};

TEST(RowConverterLookup, EveryRouteStepHasAConverterAtEveryLevel) {
  test::ForEachLevel([](const test::Level&) {
    for (const Pair& p : kRouteSteps) {
      EXPECT_NE(FindRowConverter(p.fFrom, p.fTo, 0), nullptr) << std::hex << p.fFrom << " -> " << p.fTo;
      EXPECT_NE(FindRowConverter(p.fFrom, p.fTo, 5), nullptr) << std::hex << p.fFrom << " -> " << p.fTo;
    }
  });
}

// Alpha-only, depth-only and 8u/15u steps between raw four-channel formats.
TEST(RowConverterLookup, DerivedStepsExistForEveryRawFormat) {
  int alphaSteps = 0, depthSteps = 0;
  for (OX_PixelFormat from : kRawFormats) {
    if (SubsamplingOf(from) != kSub444 || AlphaOf(from) == kAlphaNone) continue;
    for (uint32_t alpha : {kAlphaStraight, kAlphaPremultiplied, kAlphaIgnored}) {
      const OX_PixelFormat to = WithAlpha(from, alpha);
      if (to == from) continue;
      const bool asked = AlphaOf(from) != kAlphaStraight || alpha == kAlphaPremultiplied;
      EXPECT_EQ(FindRowConverter(from, to, 0) != nullptr, asked) << std::hex << from << " -> " << to;
      alphaSteps += asked;
    }
    const uint32_t depth = DepthOf(from);
    if ((from & kLinearBit) == 0 && (depth == kDepth8u || depth == kDepth15u)) {
      EXPECT_NE(FindRowConverter(from, WithDepth(from, kDepth32f), 0), nullptr) << std::hex << from;
      EXPECT_NE(FindRowConverter(WithDepth(from, kDepth32f), from, 0), nullptr) << std::hex << from;
      depthSteps += 2;
    }
    if (!IsYUV(from) && depth == kDepth8u) {
      EXPECT_NE(FindRowConverter(from, WithDepth(from, kDepth15u), 0), nullptr) << std::hex << from;
      EXPECT_NE(FindRowConverter(WithDepth(from, kDepth15u), from, 0), nullptr) << std::hex << from;
    }
  }
  EXPECT_GT(alphaSteps, 40);
  EXPECT_GT(depthSteps, 20);
}

TEST(RowConverterLookup, NoConverterForStrangersContainersAndSameFormat) {
  const Pair kNone[] = {
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRA_4444_8u},
      {OX_PixelFormat_NTSCDV25, OX_PixelFormat_BGRA_4444_8u},
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_YUV_420_MPEG2_FRAME},
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_UYVY_422_8u},
      {OX_PixelFormat_V210_422_10u, OX_PixelFormat_V210_422_10u_709},
      {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_VUYA_4444_8u},
      {OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_VUYA_4444_8u},
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRX_4444_8u},  // an A form goes through P
      {0x1234, OX_PixelFormat_BGRA_4444_8u},
  };
  for (const Pair& p : kNone) EXPECT_EQ(FindRowConverter(p.fFrom, p.fTo, 3), nullptr) << std::hex << p.fFrom << " -> " << p.fTo;
}

TEST(RowConverterLookup, ChoicesThatDependOnQualityAndDirection) {
  // 32f chroma up-sampling: repeat below quality 2, filter from 2 up.
  EXPECT_EQ(FindRowConverter(OX_PixelFormat_UYVY_422_32f, OX_PixelFormat_VUYA_4444_32f, 1),
            ChooseSubsample()[kUyvy32fToVuy32fRepeat]);
  EXPECT_EQ(FindRowConverter(OX_PixelFormat_UYVY_422_32f, OX_PixelFormat_VUYA_4444_32f, 2),
            ChooseSubsample()[kUyvy32fToVuy32fFilter]);
  // The fast VUYX step is its own converter with opaque alpha.
  EXPECT_EQ(FindRowConverter(OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRX_4444_8u, 0),
            ChooseMatrix8u()[kVuyx8uToBgr8u601]);
  // A to P is the premultiply, P to A the un-premultiply (the route toward RGB_444_10u asks for
  // the latter by its own pair).
  EXPECT_EQ(FindRowConverter(OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_BGRP_4444_15u, 0),
            ChoosePremul15u()[kPremul15uLast]);
  EXPECT_EQ(FindRowConverter(OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_BGRA_4444_15u, 0),
            ChooseAlpha()[kUnpremul15uLast]);
}

// Which family member a pair gets: matrices by direction and matrix, alpha steps by alpha place,
// depth steps by model and subsampling.
struct Expected {
  OX_PixelFormat fFrom, fTo;
  const RowConverter* (*fChoose)();
  int fMember;
};
const Expected kExpected[] = {
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_VUYA_4444_8u, &ChooseMatrix8u, kBgr8uToVuy8u601},
    {OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_VUYX_4444_8u_709, &ChooseMatrix8u, kBgr8uToVuy8u709},
    {OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_BGRP_4444_8u, &ChooseMatrix8u, kVuy8uToBgr8u709},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_BGRA_4444_8u, &ChooseMatrix8u, kVuyx8uToBgr8u709},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRX_4444_32f, &ChooseMatrix8u, kVuy8uToBgr32f601},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_VUYA_4444_8u_709, &ChooseMatrix8u, kBgr32fToVuy8u709},
    {OX_PixelFormat_VUYP_4444_32f_709, OX_PixelFormat_BGRP_4444_32f, &ChooseMatrix32f, kYuv709ToRgb32f},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_VUYX_4444_32f, &ChooseMatrix32f, kRgbToYuv601_32f},
    {OX_PixelFormat_VUYA_4444_32f_709, OX_PixelFormat_VUYA_4444_32f, &ChooseMatrix32f, kYuv709To601_32f},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_VUYP_4444_8u_709, &ChooseYuv709_8u, kVuy601To709_8u},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_YUYV_422_8u, &ChooseYuv709_8u, kYuyv709To601_8u},
    {OX_PixelFormat_ARGB_4444_8u, OX_PixelFormat_PRGB_4444_8u, &ChooseAlpha, kPremul8uRgbFirst},
    {OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_VUYP_4444_8u_709, &ChooseAlpha, kPremul8uYuv},
    {OX_PixelFormat_PRGB_4444_8u, OX_PixelFormat_ARGB_4444_8u, &ChooseAlpha, kUnpremul8uRgbFirst},
    {OX_PixelFormat_XRGB_4444_15u, OX_PixelFormat_ARGB_4444_15u, &ChooseAlpha, kOpaque15uFirst},
    {OX_PixelFormat_BGRP_4444_32f_Linear, OX_PixelFormat_BGRX_4444_32f_Linear, &ChooseAlpha, kOpaque32fLast},
    {OX_PixelFormat_BGRP_4444_32f_Linear, OX_PixelFormat_BGRA_4444_32f_Linear, &ChooseUnpremul32f, kUnpremul32fRcp},
    {OX_PixelFormat_PRGB_4444_32f, OX_PixelFormat_ARGB_4444_32f, &ChooseUnpremul32f, kUnpremul32fDiv},
    {OX_PixelFormat_ARGB_4444_15u, OX_PixelFormat_PRGB_4444_15u, &ChoosePremul15u, kPremul15uFirst},
    {OX_PixelFormat_YUYV_422_32f, OX_PixelFormat_YUYV_422_8u, &ChooseRange8u32f, kYuyv32fTo8u},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_UYVY_422_32f_709, &ChooseRange8u32f, kUyvy8uTo32f},
    {OX_PixelFormat_VUYP_4444_32f, OX_PixelFormat_VUYP_4444_8u, &ChooseRange8u32f, kVuy32fTo8u},
    {OX_PixelFormat_XRGB_4444_8u, OX_PixelFormat_XRGB_4444_32f, &ChooseRange8u32f, kRgb8uTo32f},
    {OX_PixelFormat_PRGB_4444_15u, OX_PixelFormat_PRGB_4444_8u, &ChooseDepth15u, k15uTo8u},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_BGRX_4444_15u, &ChooseDepth15u, k32fTo15u},
    {OX_PixelFormat_PRGB_4444_15u, OX_PixelFormat_BGRP_4444_15u, &ChooseOrder, kReverse15u},
    {OX_PixelFormat_YUYV_422_32f, OX_PixelFormat_UYVY_422_32f, &ChooseOrder, kSwap422_32f},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_UYVY_422_8u_709, &ChooseSubsample, kVuy8uToUyvy8u},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_VUYX_4444_8u, &ChooseSubsample, kYuyv8uToVuy8u},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_BGRP_4444_8u, &ChooseSubsample, kYuyv8uToBgr8u709},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYP_4444_8u, &ChooseV210, kV210_709ToVuy8u601},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYP_4444_8u_709, &ChooseV210, kV210ToVuy8u},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_BGRX_4444_8u, &ChooseV210, kV210ToBgr8u601},
    {OX_PixelFormat_UYVY_422_32f_709, OX_PixelFormat_V210_422_10u_709, &ChooseV210, kUyvy32fToV210},
    {OX_PixelFormat_BGRX_4444_32f_Linear, OX_PixelFormat_BGRX_4444_32f, &ChooseLinear, kLinearToGamma32f},
    {OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_BGRA_4444_8u, &ChooseLinear, kLinear32fToBgra8u},
    {OX_PixelFormat_BGRX_4444_15u, OX_PixelFormat_RGB_444_10u, &ChooseRgb10u, kBgr15uTo10u},
    {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRP_4444_32f, &ChooseRgb10u, k10uToBgr32f},
};

TEST(RowConverterLookup, PairsGetTheirFamilyMember) {
  test::ForEachLevel([](const test::Level&) {
    for (const Expected& e : kExpected)
      EXPECT_EQ(FindRowConverter(e.fFrom, e.fTo, 0), e.fChoose()[e.fMember]) << std::hex << e.fFrom << " -> " << e.fTo;
  });
}

}  // namespace
}  // namespace OX
