// The route table between raw formats: for a format in hand and a wanted destination, the
// neighbouring format that the next conversion step lands on.
#pragma once

#include <string>
#include <vector>

#include "Ombrix.h"
#include "frame/PixelFormat.h"

namespace OX {

// Position of a raw format in kRawFormats, or -1 for any other code.
int RawFormatIndex(OX_PixelFormat format);

// The format the next step from `current` towards `destination` lands on, or 0 when the table has
// no row for the pair (equal formats, containers, codes that are not raw formats).
OX_PixelFormat RouteLandsOn(OX_PixelFormat current, OX_PixelFormat destination);

// What the table's rows say once their group notation is expanded, for the completeness checks.
struct RouteTableReport {
  // How many rows name each (in hand, destination) pair, by raw format index.
  int fCoverage[kRawFormatCount][kRawFormatCount];
  // Unknown names, landing formats that are no raw format, a destination equal to the format in
  // hand; empty when the table is sound.
  std::vector<std::string> fProblems;
  int fRowCount;
};
const RouteTableReport& RouteTableCheck();

// Expands one destination item of the table's notation ("UYVY+YUYV_422_32f (+709)",
// "VUY?_4444_8u") into the names it stands for, in a fixed order.
std::vector<std::string> ExpandRouteGroup(const std::string& item);

// The code of a raw format's name, or 0 when the name is not one.
OX_PixelFormat RawFormatByName(const std::string& name);
// The name of a format for routes and tools: as the name table gives it, and also for
// RGB_444_10u, which has no record there.
const char* RouteFormatName(OX_PixelFormat format);

}  // namespace OX
