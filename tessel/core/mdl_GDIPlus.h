// The flat API as libgdiplus provides it, declared here and nowhere else. libgdiplus ships no
// headers; the declarations follow its ABI, which differs from the Windows one in places:
// WCHAR is UTF-16 (char16_t), the start-up token is 32 bits wide, BOOL is int.
//
// Only core/ and the resource wrappers call these functions, every status passes through
// Execute, and no code but a wrapper's own lifecycle calls a Gdip…Delete… function.
#pragma once

#include <tessel/core/enm_Draw_Status.h>

#include <cstdint>
#include <mutex>
#include <string>

namespace tessel::mdl_GDIPlus {

using GpStatus = enm_Draw_Status;
using ARGB = uint32_t;
using PixelFormat = int32_t;
using REAL = float;

struct GpGraphics;
struct GpImage;
struct GpBitmap;
struct GpBrush;
struct GpSolidFill;

struct GUID {
  uint32_t Data1;
  uint16_t Data2;
  uint16_t Data3;
  uint8_t Data4[8];
};

struct GdiplusStartupInput {
  uint32_t GdiplusVersion = 1;
  void* DebugEventCallback = nullptr;
  int SuppressBackgroundThread = 0;
  int SuppressExternalCodecs = 0;
};

struct ImageCodecInfo {
  GUID Clsid;
  GUID FormatID;
  const char16_t* CodecName;
  const char16_t* DllName;
  const char16_t* FormatDescription;
  const char16_t* FilenameExtension;
  const char16_t* MimeType;
  uint32_t Flags;
  uint32_t Version;
  uint32_t SigCount;
  uint32_t SigSize;
  const uint8_t* SigPattern;
  const uint8_t* SigMask;
};

inline constexpr PixelFormat PixelFormat32bppARGB = 0x0026200A;
inline constexpr PixelFormat PixelFormat32bppPARGB = 0x000E200B;
inline constexpr int SmoothingModeAntiAlias = 4;

extern "C" {
// Start-up. GdiplusShutdown is deliberately not declared: it tears libgdiplus down for every
// user in the process and aborts while fonts are alive.
GpStatus GdiplusStartup(uint32_t* token, const GdiplusStartupInput* input, void* output);

// Images and bitmaps.
GpStatus GdipCreateBitmapFromScan0(int width, int height, int stride, PixelFormat format, uint8_t* scan0,
                                   GpBitmap** bitmap);
GpStatus GdipDisposeImage(GpImage* image);
GpStatus GdipBitmapGetPixel(GpBitmap* bitmap, int x, int y, ARGB* color);
GpStatus GdipGetImageEncodersSize(uint32_t* numEncoders, uint32_t* size);
GpStatus GdipGetImageEncoders(uint32_t numEncoders, uint32_t size, ImageCodecInfo* encoders);
GpStatus GdipSaveImageToFile(GpImage* image, const char16_t* filename, const GUID* encoder, const void* params);

// Graphics.
GpStatus GdipGetImageGraphicsContext(GpImage* image, GpGraphics** graphics);
GpStatus GdipDeleteGraphics(GpGraphics* graphics);
GpStatus GdipGraphicsClear(GpGraphics* graphics, ARGB color);
GpStatus GdipSetSmoothingMode(GpGraphics* graphics, int mode);
GpStatus GdipFillRectangle(GpGraphics* graphics, GpBrush* brush, REAL x, REAL y, REAL width, REAL height);
GpStatus GdipFillEllipse(GpGraphics* graphics, GpBrush* brush, REAL x, REAL y, REAL width, REAL height);

// Brushes.
GpStatus GdipCreateSolidFill(ARGB color, GpSolidFill** brush);
GpStatus GdipDeleteBrush(GpBrush* brush);
}

// libgdiplus's font map is not thread-safe: every font and text call holds this lock.
std::recursive_mutex& TextLock();

// The class id of the image encoder for a MIME type ("image/png"), compared without regard to
// case. False when libgdiplus has no such encoder.
bool GetEncoderClsid(const std::u16string& mimeType, GUID& clsid);

}  // namespace tessel::mdl_GDIPlus
