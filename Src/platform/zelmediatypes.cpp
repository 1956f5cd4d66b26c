// Caller-side format constants. Each is a tag word and a serial number: distinct by value, and
// unrelated to the library's own codes so that nothing can rely on their bits.
#include "platform/zelmediatypes.h"

namespace zelmediatypes {
namespace {
constexpr uint32_t kTag = 0x5A4D5446;  // arbitrary, shared by every constant
enum Serial : uint32_t {
#define ZEL_SERIAL(name) kSerial_##name,
#define ZEL_PLANAR_SERIAL(name, code) kSerial_##name,
  ZEL_PIXEL_FORMAT_LIST(ZEL_SERIAL) ZEL_PLANAR_FORMAT_LIST(ZEL_PLANAR_SERIAL) kSerial_YUYV_422_32f,
  kSerial_BGRX_4444_32f_Linear
#undef ZEL_SERIAL
#undef ZEL_PLANAR_SERIAL
};
}  // namespace

#define ZEL_DEFINE_CONSTANT(name) const PixelFormat kPixelFormat_##name = {kTag, 0x1000u + kSerial_##name};
#define ZEL_DEFINE_PLANAR_CONSTANT(name, code) const PixelFormat kPixelFormat_##name = {kTag, 0x1000u + kSerial_##name};
ZEL_PIXEL_FORMAT_LIST(ZEL_DEFINE_CONSTANT)
ZEL_PLANAR_FORMAT_LIST(ZEL_DEFINE_PLANAR_CONSTANT)
ZEL_DEFINE_CONSTANT(YUYV_422_32f)
ZEL_DEFINE_CONSTANT(BGRX_4444_32f_Linear)
#undef ZEL_DEFINE_CONSTANT
#undef ZEL_DEFINE_PLANAR_CONSTANT

}  // namespace zelmediatypes
